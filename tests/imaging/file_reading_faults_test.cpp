// SPDX-License-Identifier: GPL-3.0-or-later

// Flushing, reading and holding files when system calls fail or transfer less than requested.
#include "tests/imaging/file_faults_fixture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

namespace complexion {
namespace {

constexpr std::int64_t kMaxBytes = std::int64_t{2} << 30;

// Flushing.

TEST_F(FileFaults, FlushingFailsIfTheFileOrItsFolderCannotBeFlushed) {
    EXPECT_TRUE(flushToDisk(m_path));
    for (const int skipped : {0, 1}) {
        const FailingCalls failing(SystemCall::Fsync, EIO, 1, skipped);
        EXPECT_FALSE(flushToDisk(m_path));
        EXPECT_EQ(failing.failedCount(), 1);
    }
    EXPECT_FALSE(flushToDisk(m_folder.path() / "none" / "photo"));
}

TEST_F(FileFaults, FlushingTheFileSystemReplacesFlushingAFolderOnlyWithoutReadPermission) {
    {
        const FailingCalls failing(SystemCall::Open, EACCES, 1, 1);
        EXPECT_TRUE(flushToDisk(m_path));
        EXPECT_EQ(failing.failedCount(), 1);
    }
    {
        const FailingCalls failing(SystemCall::Open, EMFILE, 1, 1);
        EXPECT_FALSE(flushToDisk(m_path));
    }
    const FailingCalls first(SystemCall::Open, EACCES, 1, 1);
    const FailingCalls second(SystemCall::Syncfs, EIO);
    EXPECT_FALSE(flushToDisk(m_path));
    EXPECT_EQ(second.failedCount(), 1);
}

// Reading.

TEST_F(FileFaults, ShortReadsAreCompleted) {
    ASSERT_TRUE(write());
    for (const std::size_t max : {1U, 7U, 1000U}) {
        const ShortTransfers transfers(max);
        EXPECT_EQ(*readFile(m_path), manyParts().joined());
        EXPECT_EQ(*readFile(m_path, [](ByteView) { return true; }), manyParts().joined());
    }
}

TEST_F(FileFaults, AnInterruptedReadIsRepeated) {
    ASSERT_TRUE(write());
    const ShortTransfers transfers(700);
    const FailingCalls failing(SystemCall::Read, EINTR, 3, 1);
    EXPECT_EQ(*readFile(m_path), manyParts().joined());
    EXPECT_EQ(failing.failedCount(), 3);
}

TEST_F(FileFaults, AFailedReadReportsItsCause) {
    for (const int skipped : {0, 1}) {
        const FailingCalls failing(SystemCall::Read, EIO, 1, skipped);
        const ShortTransfers transfers(10);
        const Result<Bytes> file = readFile(m_path);
        ASSERT_FALSE(file);
        EXPECT_EQ(file.error().message, std::strerror(EIO));
    }
    // While reading the first bytes, and the rest.
    ASSERT_TRUE(write());
    for (const int skipped : {0, 1}) {
        const FailingCalls failing(SystemCall::Read, EIO, 1, skipped);
        const Result<Bytes> file = readFile(m_path, [](ByteView) { return true; });
        ASSERT_FALSE(file);
        EXPECT_EQ(file.error().message, std::strerror(EIO));
    }
}

TEST_F(FileFaults, LackOfMemoryIsAKindOfItsOwn) {
    for (const auto& [error, kind] :
         {std::pair{ENOMEM, ErrorKind::OutOfMemory}, std::pair{EIO, ErrorKind::CannotRead}}) {
        const FailingCalls failing(SystemCall::Read, error);
        const Result<Bytes> file = readFile(m_path);
        ASSERT_FALSE(file);
        EXPECT_EQ(file.error().kind, kind);
    }
}

TEST_F(FileFaults, AFileThatShrinksMeanwhileIsReadToItsEnd) {
    const ShortTransfers transfers(0);
    const Result<Bytes> file = readFile(m_path);
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->empty());
}

TEST_F(FileFaults, AFileIsAcceptedByItsFirst64Bytes) {
    static std::size_t seen;
    const auto isWanted = [](ByteView start) {
        seen = start.size();
        return start.empty() || start[0] != 'x';
    };
    for (const std::size_t length : {0U, 1U, 63U, 64U, 65U, 5000U}) {
        writeFile(m_path, std::string(length, 's'));
        const Result<Bytes> file = readFile(m_path, isWanted);
        ASSERT_TRUE(file);
        EXPECT_EQ(*file, Bytes(length, 's'));
        EXPECT_EQ(seen, std::min<std::size_t>(length, 64));
    }
    writeFile(m_path, std::string(100, 'x'));
    EXPECT_FALSE(readFile(m_path, isWanted));
}

TEST_F(FileFaults, AFileOfTheMaximumLengthIsReadButNotALongerOne) {
    const auto isWanted = [](ByteView) { return false; };
    ASSERT_EQ(::truncate(m_path.c_str(), kMaxBytes), 0);
    const Result<Bytes> longest = readFile(m_path, isWanted);
    ASSERT_FALSE(longest);
    EXPECT_EQ(longest.error().message, "a file of another kind");
    ASSERT_EQ(::truncate(m_path.c_str(), kMaxBytes + 1), 0);
    const Result<Bytes> longer = readFile(m_path, isWanted);
    ASSERT_FALSE(longer);
    EXPECT_EQ(longer.error().message, "a file of impossible length");
}

TEST_F(FileFaults, WhatIsNotARegularFileIsReported) {
    EXPECT_EQ(readFile(m_folder.path()).error().message, "not a regular file");
    EXPECT_EQ(readFile(m_folder.path() / "missing").error().message, std::strerror(ENOENT));
}

// Holding.

TEST_F(FileFaults, AHeldFileCanBeReadAfterItWasReplacedOrDeleted) {
    const std::size_t before = openFileCount();
    {
        const HeldFile held(m_path);
        writeFile(m_folder.path() / "other", "another file");
        std::filesystem::rename(m_folder.path() / "other", m_path);
        EXPECT_EQ(contentsOf(held.path()), "an older file");
        std::filesystem::remove(m_path);
        EXPECT_EQ(contentsOf(held.path()), "an older file");
    }
    EXPECT_EQ(openFileCount(), before);
}

TEST_F(FileFaults, AFileThatCannotBeHeldKeepsItsPath) {
    const HeldFile held(m_folder.path() / "missing");
    EXPECT_EQ(held.path(), m_folder.path() / "missing");
}

} // namespace
} // namespace complexion

// SPDX-License-Identifier: GPL-3.0-or-later

// The journal's file: whose it is, and what a failing disk does to it.
#include "editor/journal_file.h"

#include "tests/fakes/pictures.h"
#include "tests/fakes/system_calls.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string_view>

namespace complexion {

namespace {

ByteView bytesOfText(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

class JournalFiles : public testing::Test {
protected:
    std::shared_ptr<JournalFile> create() const { return JournalFile::create(folder); }
    std::shared_ptr<JournalFile> open(const std::string& name) const {
        return JournalFile::open(folder, name);
    }
    void makeFolder() const {
        std::filesystem::create_directories(folder);
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    }
    std::vector<std::string> names() const { return JournalFile::namesIn(folder); }

    TemporaryFolder home;
    std::filesystem::path folder = home.path() / "state/complexion";
};

TEST_F(JournalFiles, HaveNamesInTheFolderUntilTheyAreRemoved) {
    EXPECT_TRUE(names().empty()) << "the folder does not exist";
    const auto file = create();
    ASSERT_TRUE(file);
    EXPECT_EQ(names().size(), 1U);
    file->remove();
    EXPECT_TRUE(names().empty());
}

TEST_F(JournalFiles, AreListedLatestFirst) {
    makeFolder();
    for (const char* name : {"a.journal", "b.journal", "c.journal"})
        writeFile(folder / name, name);
    const auto time = std::filesystem::last_write_time(folder / "a.journal");
    std::filesystem::last_write_time(folder / "b.journal", time + std::chrono::hours(1));
    std::filesystem::last_write_time(folder / "c.journal", time - std::chrono::hours(1));
    EXPECT_EQ(names(), (std::vector<std::string>{"b.journal", "a.journal", "c.journal"}));
}

TEST_F(JournalFiles, OfTheSameMillisecondHaveDifferentNames) {
    const auto file = create();
    const auto other = create();
    const auto third = create();
    ASSERT_TRUE(file && other && third);
    EXPECT_EQ(names().size(), 3U);
}

TEST_F(JournalFiles, KeepOpenFoldersAndFilesFromOtherProcesses) {
    const CountedCalls counted;
    const auto file = create();
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->append(bytesOfText("steps")));
    file->sync();
    EXPECT_EQ(counted.inheritable(), 0);
    EXPECT_EQ(counted.invalidCloses(), 0);
}

TEST_F(JournalFiles, AreNotCreatedInAFolderThatCannotBeExamined) {
    makeFolder();
    for (const SystemCall call : {SystemCall::Fstat, SystemCall::Open}) {
        const FailingCalls failing(call, EIO, 2); // as found, and again after trying to create it
        EXPECT_EQ(create(), nullptr);
    }
    EXPECT_TRUE(names().empty());
    EXPECT_NE(create(), nullptr);
}

TEST_F(JournalFiles, AreNotCreatedInAFolderThatOthersCanReadAndThatCannotBeProtected) {
    makeFolder();
    std::filesystem::permissions(folder, std::filesystem::perms(0755));
    {
        const FailingCalls failing(SystemCall::Fchmod, EPERM, 2);
        EXPECT_EQ(create(), nullptr);
    }
    EXPECT_TRUE(names().empty());
    EXPECT_NE(create(), nullptr);
    EXPECT_EQ(std::filesystem::status(folder).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(JournalFiles, AreNotCreatedInAFolderOfAnotherUser) {
    makeFolder();
    if (::chown(folder.c_str(), 65534, 65534) != 0)
        GTEST_SKIP() << "only root can give a folder away";
    EXPECT_EQ(create(), nullptr);
    EXPECT_EQ(open("any.journal"), nullptr);
    EXPECT_TRUE(filesIn(folder).empty());
}

TEST_F(JournalFiles, AreNotCreatedWhereNoFolderCanBe) {
    {
        const FailingCalls failing(SystemCall::Mkdir, EROFS);
        EXPECT_EQ(create(), nullptr);
        EXPECT_EQ(failing.failedCount(), 1);
    }
    {
        // The parent is created, and then the disk is full.
        const FailingCalls failing(SystemCall::Mkdir, ENOSPC, 1, 2);
        EXPECT_EQ(create(), nullptr);
        EXPECT_EQ(failing.failedCount(), 1);
    }
    EXPECT_TRUE(filesIn(home.path()).empty()) << "no empty folder remains";
    EXPECT_NE(create(), nullptr);
}

TEST_F(JournalFiles, TryFurtherNamesOnlyIfOneIsTaken) {
    makeFolder();
    {
        const FailingCalls taken(SystemCall::Openat, EEXIST, 3);
        EXPECT_NE(create(), nullptr);
        EXPECT_EQ(taken.failedCount(), 3);
    }
    for (const int error : {EACCES, ENOSPC, EROFS, EMFILE}) {
        const FailingCalls failing(SystemCall::Openat, error, 3);
        EXPECT_EQ(create(), nullptr);
        EXPECT_EQ(failing.failedCount(), 1);
    }
    {
        const FailingCalls taken(SystemCall::Openat, EEXIST, 1000);
        EXPECT_EQ(create(), nullptr) << "after a limited number of tries";
        EXPECT_GT(taken.failedCount(), 10);
    }
    EXPECT_EQ(names().size(), 1U) << "the first one";
}

// Another process that looks for abandoned journals may lock a new file first, and remove it.
TEST_F(JournalFiles, TryAnotherNameIfTheNewFileIsLockedOrRemovedAtOnce) {
    makeFolder();
    for (const auto& [call, error] :
         {std::pair(SystemCall::Flock, EWOULDBLOCK), std::pair(SystemCall::Fstatat, ENOENT)}) {
        const FailingCalls failing(call, error);
        const auto file = create();
        ASSERT_TRUE(file);
        EXPECT_EQ(failing.failedCount(), 1);
        EXPECT_TRUE(file->append(bytesOfText("steps")));
    }
}

TEST_F(JournalFiles, AreOpenedByOneProcessAtATime) {
    const auto file = create();
    ASSERT_TRUE(file);
    EXPECT_EQ(open(names().at(0)), nullptr);
}

TEST_F(JournalFiles, AreRegularFilesOfThisUser) {
    makeFolder();
    std::filesystem::create_directory(folder / "folder.journal");
    ASSERT_EQ(::mkfifo((folder / "pipe.journal").c_str(), 0600), 0);
    writeFile(folder / "real.journal", "steps");
    std::filesystem::create_symlink("real.journal", folder / "link.journal");
    for (const char* name : {"folder.journal", "pipe.journal", "link.journal", "missing.journal"})
        EXPECT_EQ(open(name), nullptr) << name;
    if (::chown((folder / "real.journal").c_str(), 65534, 65534) == 0) {
        EXPECT_EQ(open("real.journal"), nullptr) << "it belongs to somebody else";
    }
}

TEST_F(JournalFiles, AreNotOpenedOnceTheirNameIsGone) {
    makeFolder();
    writeFile(folder / "a.journal", "steps");
    for (const SystemCall call : {SystemCall::Fstat, SystemCall::Fstatat}) {
        // The first examination with fstat is that of the folder.
        const FailingCalls failing(call, EIO, 1, call == SystemCall::Fstat ? 1 : 0);
        EXPECT_EQ(open("a.journal"), nullptr);
        EXPECT_EQ(failing.failedCount(), 1);
    }
    EXPECT_NE(open("a.journal"), nullptr);
}

TEST_F(JournalFiles, AreNotOpenedInAMissingFolder) {
    EXPECT_EQ(open("a.journal"), nullptr);
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(JournalFiles, AreReadInSpiteOfInterruptionsAndShortReads) {
    makeFolder();
    writeFile(folder / "a.journal", "the steps of a work");
    const auto file = open("a.journal");
    ASSERT_TRUE(file);
    const ShortTransfers shortReads(5);
    const FailingCalls interrupted(SystemCall::Pread, EINTR, 2, 1);
    const std::optional<Bytes> bytes = file->read();
    ASSERT_TRUE(bytes);
    EXPECT_EQ(std::string(bytes->begin(), bytes->end()), "the steps of a work");
    EXPECT_EQ(interrupted.failedCount(), 2);
}

TEST_F(JournalFiles, AreReadCompletelyOrNotAtAll) {
    makeFolder();
    writeFile(folder / "a.journal", "the steps of a work");
    const auto file = open("a.journal");
    ASSERT_TRUE(file);
    {
        const ShortTransfers shortReads(5);
        const FailingCalls failing(SystemCall::Pread, EIO, 1, 2);
        EXPECT_FALSE(file->read());
    }
    {
        const ShortTransfers nothing(0); // as for a file that was truncated since its length was read
        EXPECT_FALSE(file->read());
    }
    {
        const FailingCalls failing(SystemCall::Fstat, EIO);
        EXPECT_FALSE(file->read());
    }
    EXPECT_TRUE(file->read());
}

TEST_F(JournalFiles, AreReadUpTo64MiB) {
    makeFolder();
    writeFile(folder / "a.journal", "the steps of a work");
    constexpr std::uintmax_t kMaxSize = std::uintmax_t{64} << 20;
    std::filesystem::resize_file(folder / "a.journal", kMaxSize);
    const auto file = open("a.journal");
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->read());
    std::filesystem::resize_file(folder / "a.journal", kMaxSize + 1);
    EXPECT_FALSE(file->read());
}

TEST_F(JournalFiles, AreWrittenInSpiteOfInterruptionsAndShortWrites) {
    const auto file = create();
    ASSERT_TRUE(file);
    {
        const ShortTransfers shortWrites(3);
        const FailingCalls interrupted(SystemCall::Pwrite, EINTR, 2, 1);
        EXPECT_TRUE(file->append(bytesOfText("the first step, ")));
        EXPECT_EQ(interrupted.failedCount(), 2);
    }
    EXPECT_TRUE(file->append(bytesOfText("the second")));
    EXPECT_EQ(contentsOf(folder / names().at(0)), "the first step, the second");
}

TEST_F(JournalFiles, HaveNothingOfARecordThatCouldNotBeWritten) {
    const auto file = create();
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->append(bytesOfText("the first step, ")));
    {
        const ShortTransfers shortWrites(3);
        const FailingCalls failing(SystemCall::Pwrite, ENOSPC, 1, 2);
        EXPECT_FALSE(file->append(bytesOfText("a lost step")));
    }
    EXPECT_EQ(contentsOf(folder / names().at(0)), "the first step, ");
    {
        const ShortTransfers nothing(0);
        EXPECT_FALSE(file->append(bytesOfText("another one")));
    }
    EXPECT_TRUE(file->append(bytesOfText("the second")));
    EXPECT_EQ(contentsOf(folder / names().at(0)), "the first step, the second");
}

// The file's name is flushed once.
TEST_F(JournalFiles, FlushTheirFolderWithTheFirstStep) {
    const auto file = create();
    ASSERT_TRUE(file);
    const FailingCalls counted(SystemCall::Fsync, EIO, 2);
    file->sync();
    EXPECT_EQ(counted.failedCount(), 1);
    file->sync();
    EXPECT_EQ(counted.failedCount(), 1);
}

} // namespace

} // namespace complexion

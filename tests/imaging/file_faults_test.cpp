// SPDX-License-Identifier: GPL-3.0-or-later

// Writing files when system calls fail, are interrupted, or transfer less than requested.
#include "tests/imaging/file_faults_fixture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <set>
#include <string>

namespace complexion {
namespace {

TEST_F(FileFaults, ShortWritesAreCompleted) {
    for (const std::size_t max : {1U, 3U, 6U, 7U, 100U}) {
        const ShortTransfers transfers(max);
        EXPECT_TRUE(write());
    }
    expectWritten();
}

TEST_F(FileFaults, AnInterruptedWriteIsRepeated) {
    const ShortTransfers transfers(400);
    const FailingCalls failing(SystemCall::Writev, EINTR, 3, 1);
    EXPECT_TRUE(write());
    EXPECT_EQ(failing.failedCount(), 3);
    expectWritten();
}

TEST_F(FileFaults, AFailedWriteKeepsTheOldFile) {
    expectFailureWith(SystemCall::Writev, ENOSPC);
    const ShortTransfers transfers(400);
    expectFailureWith(SystemCall::Writev, EIO, 2);
}

TEST_F(FileFaults, AWriteOfZeroBytesFails) {
    {
        const ShortTransfers transfers(0);
        EXPECT_FALSE(write());
    }
    expectUnchanged();
}

TEST_F(FileFaults, MissingSpaceIsDetectedBeforeWriting) {
    expectFailureWith(SystemCall::PosixFallocate, ENOSPC);
    expectFailureWith(SystemCall::PosixFallocate, EFBIG);
}

TEST_F(FileFaults, AFileSystemThatCannotReserveSpaceIsNotAnError) {
    const FailingCalls failing(SystemCall::PosixFallocate, EOPNOTSUPP);
    EXPECT_TRUE(write());
    EXPECT_EQ(failing.failedCount(), 1);
    expectWritten();
}

TEST_F(FileFaults, SpaceIsReservedUnlessTheFileIsEmpty) {
    const FailingCalls failing(SystemCall::PosixFallocate, ENOSPC);
    EXPECT_TRUE(writeFileAtomically(m_path, {}));
    EXPECT_EQ(failing.failedCount(), 0);
    EXPECT_EQ(contentsOf(m_path), "");
    FileContents one;
    one.append({'1'});
    EXPECT_FALSE(writeFileAtomically(m_path, one));
    EXPECT_EQ(failing.failedCount(), 1);
    EXPECT_TRUE(writeFileAtomically(m_path, one));
    EXPECT_EQ(contentsOf(m_path), "1");
    EXPECT_EQ(std::filesystem::file_size(m_path), 1U); // and for no more than its length
}

TEST_F(FileFaults, FailsIfThePermissionsCannotBeSet) {
    expectFailureWith(SystemCall::Fchmod, EPERM);
}

TEST_F(FileFaults, FailsIfTheGroupOfTheNewFileIsUnknown) {
    const std::optional<Readers> readers = readersOf(m_path);
    ASSERT_TRUE(readers);
    {
        const FailingCalls failing(SystemCall::Fstat, EIO);
        EXPECT_FALSE(writeFileAtomically(m_path, manyParts(), readers));
        EXPECT_EQ(failing.failedCount(), 1);
    }
    expectUnchanged();
}

TEST_F(FileFaults, ATakenTemporaryNameIsReplacedByAnother) {
    const FailingCalls failing(SystemCall::Linkat, EEXIST, 4);
    EXPECT_TRUE(write());
    EXPECT_EQ(failing.failedCount(), 4);
    expectWritten();
}

TEST_F(FileFaults, FailsIfTheFileCannotBeNamed) {
    expectFailureWith(SystemCall::Linkat, EACCES);
}

TEST_F(FileFaults, AFailedRenameLeavesNoTemporaryFile) {
    expectFailureWith(SystemCall::Rename, EIO);
}

TEST_F(FileFaults, TemporaryNamesAreShortAndRandom) {
    std::set<char> letters;
    std::set<std::string> names;
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(write());
        const std::string name = std::filesystem::path(lastRenamed()).filename();
        EXPECT_EQ(std::filesystem::path(lastRenamed()).parent_path(), m_folder.path());
        ASSERT_EQ(name.size(), 10U);
        EXPECT_TRUE(name.starts_with(".cx-"));
        letters.insert(name.begin() + 4, name.end());
        names.insert(name);
    }
    EXPECT_GT(names.size(), 90U);
    // Among 600 random letters, one is missing once in some hundred million runs.
    EXPECT_EQ(std::string(letters.begin(), letters.end()), "abcdefghijklmnopqrstuvwxyz");
}

TEST_F(FileFaults, WithoutProcANamedTemporaryFileIsUsed) {
    const mode_t before = ::umask(0027);
    const std::size_t open = openFileCount();
    {
        const FailingCalls failing(SystemCall::Access, ENOENT);
        EXPECT_TRUE(write());
        EXPECT_EQ(failing.failedCount(), 1);
    }
    ::umask(before);
    expectWritten();
    EXPECT_EQ(openFileCount(), open);
    EXPECT_EQ(std::filesystem::path(lastRenamed()).filename().string().size(), 10U);
    struct stat status = {};
    ASSERT_EQ(::stat(m_path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST_F(FileFaults, ANamedTemporaryFileIsDeletedOnFailure) {
    for (const SystemCall call :
         {SystemCall::Writev, SystemCall::Fchmod, SystemCall::Rename, SystemCall::Close}) {
        const FailingCalls named(SystemCall::Access, ENOENT);
        const FailingCalls failing(call, EIO);
        EXPECT_FALSE(write());
        EXPECT_EQ(failing.failedCount(), 1);
        expectUnchanged();
    }
}

TEST_F(FileFaults, RespectsAndKeepsTheUmask) {
    const mode_t before = ::umask(0);
    EXPECT_TRUE(write());
    EXPECT_EQ(::umask(0123), 0U);
    struct stat status = {};
    ASSERT_EQ(::stat(m_path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0666U);
    EXPECT_TRUE(write());
    EXPECT_EQ(::umask(before), 0123U);
}

TEST_F(FileFaults, LeavesNoDescriptorOpen) {
    const std::size_t before = openFileCount();
    EXPECT_TRUE(write());
    EXPECT_TRUE(readFile(m_path));
    EXPECT_FALSE(readFile(m_folder.path()));
    EXPECT_TRUE(flushToDisk(m_path));
    EXPECT_EQ(openFileCount(), before);
}

TEST_F(FileFaults, ATargetWithoutAFolderIsInTheCurrentFolder) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.path());
    EXPECT_TRUE(writeFileAtomically("photo", manyParts()));
    EXPECT_TRUE(flushToDisk("photo"));
    std::filesystem::current_path(before);
    expectWritten();
}

TEST_F(FileFaults, EmptyPartsGiveAnEmptyFile) {
    FileContents contents;
    contents.append({});
    contents.append({});
    EXPECT_TRUE(writeFileAtomically(m_path, contents));
    EXPECT_EQ(contentsOf(m_path), "");
}

TEST_F(FileFaults, AStaleErrnoIsNotTakenForAnInterruption) {
    const ShortTransfers transfers(0);
    errno = EINTR;
    EXPECT_FALSE(write());
    errno = EINTR;
    EXPECT_TRUE(readFile(m_path));
}

TEST_F(FileFaults, AFileNamedLikeTheTemplateIsKept) {
    writeFile(m_folder.path() / ".cx-XXXXXX", "somebody's");
    {
        const FailingCalls failing(SystemCall::Writev, EIO);
        EXPECT_FALSE(write());
    }
    EXPECT_TRUE(write());
    EXPECT_EQ(contentsOf(m_folder.path() / ".cx-XXXXXX"), "somebody's");
}

TEST_F(FileFaults, DescriptorZeroIsValid) {
    const int input = ::dup(0);
    ::close(0);
    const std::size_t before = openFileCount();
    EXPECT_TRUE(write());
    EXPECT_TRUE(readFile(m_path));
    EXPECT_TRUE(flushToDisk(m_path));
    {
        const FailingCalls named(SystemCall::Access, ENOENT);
        EXPECT_TRUE(write());
    }
    {
        const HeldFile held(m_path);
        EXPECT_EQ(held.path(), "/proc/self/fd/0");
        EXPECT_EQ(openFileCount(), before + 1);
    }
    EXPECT_EQ(openFileCount(), before);
    ::dup2(input, 0);
    ::close(input);
    expectWritten();
}

TEST_F(FileFaults, ClosesEachDescriptorOnceAndLetsNoneBeInherited) {
    const CountedCalls counted;
    EXPECT_TRUE(write());
    EXPECT_TRUE(readFile(m_path));
    EXPECT_TRUE(flushToDisk(m_path));
    EXPECT_FALSE(readFile(m_folder.path() / "missing"));
    EXPECT_FALSE(flushToDisk(m_folder.path() / "missing"));
    {
        const FailingCalls named(SystemCall::Access, ENOENT);
        EXPECT_TRUE(write());
    }
    {
        const HeldFile missing(m_folder.path() / "missing");
    }
    const HeldFile held(m_path);
    const int descriptor = std::stoi(held.path().filename());
    EXPECT_NE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(counted.invalidCloses(), 0);
    EXPECT_EQ(counted.invalidUnlinks(), 0);
    EXPECT_EQ(counted.inheritable(), 0);
}

TEST_F(FileFaults, ANamedPipeDoesNotBlock) {
    const std::filesystem::path pipe = m_folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(flushToDisk(pipe));
    const HeldFile held(pipe);
}

// Moving without replacing.

TEST_F(FileFaults, MovesWhereTheFileSystemCannotRefuseToReplace) {
    for (const int error : {EINVAL, ENOSYS}) {
        const std::filesystem::path to = m_folder.path() / "free";
        const FailingCalls failing(SystemCall::Renameat2, error);
        EXPECT_TRUE(moveWithoutReplacing(m_path, to));
        EXPECT_EQ(failing.failedCount(), 1);
        EXPECT_EQ(filesIn(m_folder.path()), std::vector<std::string>{"free"});
        EXPECT_EQ(contentsOf(to), "an older file");
        std::filesystem::rename(to, m_path);
    }
}

TEST_F(FileFaults, ReplacesNothingWhereTheFileSystemCannotRefuseTo) {
    const std::filesystem::path to = m_folder.path() / "taken";
    writeFile(to, "another file");
    const FailingCalls failing(SystemCall::Renameat2, EINVAL);
    EXPECT_FALSE(moveWithoutReplacing(m_path, to));
    EXPECT_EQ(errno, EEXIST);
    EXPECT_EQ(contentsOf(m_path), "an older file");
    EXPECT_EQ(contentsOf(to), "another file");
}

TEST_F(FileFaults, AMoveThatFailsLeavesTheFileAndNoPlaceholder) {
    {
        const FailingCalls failing(SystemCall::Renameat2, EPERM);
        EXPECT_FALSE(moveWithoutReplacing(m_path, m_folder.path() / "free"));
        EXPECT_EQ(errno, EPERM);
        expectUnchanged();
    }
    const FailingCalls first(SystemCall::Renameat2, EINVAL);
    const FailingCalls second(SystemCall::Rename, EIO);
    EXPECT_FALSE(moveWithoutReplacing(m_path, m_folder.path() / "free"));
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(second.failedCount(), 1);
    expectUnchanged();
}

TEST_F(FileFaults, AMoveReportsItsOwnFailureAlsoIfThePlaceholderCannotBeDeleted) {
    const FailingCalls first(SystemCall::Renameat2, EINVAL);
    const FailingCalls second(SystemCall::Rename, EIO);
    const FailingCalls third(SystemCall::Unlink, EBUSY);
    EXPECT_FALSE(moveWithoutReplacing(m_path, m_folder.path() / "free"));
    EXPECT_EQ(errno, EIO);
}

TEST(FileContents, HaveTheSizeOfTheirParts) {
    FileContents contents;
    EXPECT_EQ(contents.size(), 0U);
    EXPECT_TRUE(contents.joined().empty());
    contents.append({1, 2, 3});
    contents.append({});
    contents.append({4});
    EXPECT_EQ(contents.size(), 4U);
    EXPECT_EQ(contents.joined(), (Bytes{1, 2, 3, 4}));
}

} // namespace
} // namespace complexion

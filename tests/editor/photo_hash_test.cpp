// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/photo_hash.h"

#include "tests/fakes/pictures.h"
#include "tests/fakes/system_calls.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace complexion {

namespace {

class PhotoHashes : public testing::Test {
protected:
    PhotoHashes() { writeFile(file, "the bytes of a photo"); }

    static std::optional<PhotoHash> hashOf(const std::filesystem::path& path) {
        PhotoHasher hasher(path);
        while (hasher.readOn()) {
        }
        return hasher.result();
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "face.jpg";
};

TEST_F(PhotoHashes, AreOfAllBytes) {
    const std::optional<PhotoHash> hash = hashOf(file);
    ASSERT_TRUE(hash);
    const std::filesystem::path other = folder.path() / "other.jpg";
    writeFile(other, "the bytes of a photo");
    EXPECT_EQ(hashOf(other), hash);
    // Longer than what is read at once.
    std::string bytes(3 << 20, 'x');
    writeFile(other, bytes);
    const std::optional<PhotoHash> longHash = hashOf(other);
    bytes.back() = 'y';
    writeFile(other, bytes);
    EXPECT_NE(hashOf(other), longHash);
}

TEST_F(PhotoHashes, AreNotChangedByInterruptionsAndShortReads) {
    const std::optional<PhotoHash> hash = hashOf(file);
    const ShortTransfers shortReads(3);
    const FailingCalls interrupted(SystemCall::Read, EINTR, 2, 1);
    EXPECT_EQ(hashOf(file), hash);
    EXPECT_EQ(interrupted.failedCount(), 2);
}

TEST_F(PhotoHashes, OfUnreadableFilesDoNotExist) {
    EXPECT_EQ(hashOf(folder.path() / "missing.jpg"), std::nullopt);
    const ShortTransfers shortReads(3);
    const FailingCalls failing(SystemCall::Read, EIO, 1, 1);
    PhotoHasher hasher(file);
    EXPECT_TRUE(hasher.readOn());
    EXPECT_FALSE(hasher.readOn());
    EXPECT_FALSE(hasher.readOn()) << "even though the disk works again";
    EXPECT_EQ(hasher.result(), std::nullopt);
}

TEST_F(PhotoHashes, OfFilesThatChangeMeanwhileDoNotExist) {
    PhotoHasher hasher(file);
    while (hasher.readOn()) {
    }
    EXPECT_TRUE(hasher.result());
    std::filesystem::resize_file(file, 1);
    EXPECT_EQ(hasher.result(), std::nullopt);
}

TEST_F(PhotoHashes, OfFilesThatCannotBeIdentifiedDoNotExist) {
    PhotoHasher hasher(file);
    while (hasher.readOn()) {
    }
    const FailingCalls failing(SystemCall::Fstat, EIO);
    EXPECT_EQ(hasher.result(), std::nullopt);
    EXPECT_EQ(failing.failedCount(), 1);
}

} // namespace

} // namespace complexion

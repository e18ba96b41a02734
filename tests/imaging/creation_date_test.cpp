// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/creation_date.h"

#include "imaging/image_tools.h"
#include "imaging/photo_file_steps.h"
#include "tests/fakes/captured_output.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <string>

namespace complexion {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

// 2016-11-16 06:14:51.123456 UTC.
constexpr CreationDate kDate{std::chrono::microseconds(1479276891123456)};
const std::string kDateAsAttribute = "\x00\xaf\x9e\xfd\x64\x41\x05\x00"s;

/// A temporary file with access to its extended attributes.
class DatedFile {
public:
    explicit DatedFile(const std::filesystem::path& folder) : m_path(folder / "dated") {
        writeFile(m_path, "photo");
    }
    DatedFile(const DatedFile&) = delete;
    DatedFile& operator=(const DatedFile&) = delete;
    ~DatedFile() { std::filesystem::remove(m_path); }

    const std::filesystem::path& path() const { return m_path; }

    bool set(const char* name, const std::string& value) const {
        return ::setxattr(m_path.c_str(), name, value.data(), value.size(), 0) == 0;
    }

    std::string get(const char* name) const {
        std::string value(64, '\0');
        const ssize_t length = ::getxattr(m_path.c_str(), name, value.data(), value.size());
        return length < 0 ? "none" : value.substr(0, static_cast<std::size_t>(length));
    }

    /// The birth time from the file system, or the modification time if it has none.
    CreationDate birth() const {
        struct statx status = {};
        EXPECT_EQ(::statx(AT_FDCWD, m_path.c_str(), 0, STATX_BTIME | STATX_MTIME, &status), 0);
        const auto& time = (status.stx_mask & STATX_BTIME) != 0 ? status.stx_btime : status.stx_mtime;
        return CreationDate(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
    }

private:
    std::filesystem::path m_path;
};

class CreationDates : public testing::Test {
protected:
    void SetUp() override {
        if (!file.set("user.probe", "1"))
            GTEST_SKIP() << "the temporary folder's file system has no extended attributes";
    }

    TemporaryFolder folder;
    DatedFile file{folder.path()};
};

TEST_F(CreationDates, AreReadAsTheyWereSet) {
    ASSERT_TRUE(setCreationDate(file.path(), kDate));
    EXPECT_EQ(creationDate(file.path()), kDate);
    EXPECT_EQ(ImageTools::ImageCreationDate(file.path()), kDate);
}

TEST_F(CreationDates, AreLittleEndianMicrosecondsInTheAttribute) {
    ASSERT_TRUE(setCreationDate(file.path(), kDate));
    EXPECT_EQ(file.get("user.crtime_usec"), kDateAsAttribute);
}

TEST_F(CreationDates, Before1970AreSupported) {
    const CreationDate old = CreationDate{} - 1234567890s;
    ASSERT_TRUE(setCreationDate(file.path(), old));
    EXPECT_EQ(creationDate(file.path()), old);
}

TEST_F(CreationDates, AreTheBirthTimeWithoutAnAttribute) {
    EXPECT_EQ(creationDate(file.path()), file.birth());
}

TEST_F(CreationDates, AreTheBirthTimeIfTheAttributeIsInvalid) {
    ASSERT_TRUE(file.set("user.crtime_usec", "1234567"));
    EXPECT_EQ(creationDate(file.path()), file.birth());
    ASSERT_TRUE(file.set("user.crtime_usec", "123456789"));
    EXPECT_EQ(creationDate(file.path()), file.birth());
}

TEST_F(CreationDates, AreClampedToTheClocksRange) {
    ASSERT_TRUE(file.set("user.crtime_usec", "\xff\xff\xff\xff\xff\xff\xff\x7f"));
    EXPECT_GT(*creationDate(file.path()), CreationDate::max() - 1ms);
}

TEST_F(CreationDates, OfNetworkSharesAreIgnoredOnOtherFileSystems) {
    ASSERT_TRUE(file.set("user.smb3.creationtime", "12345678"));
    EXPECT_EQ(creationDate(file.path()), file.birth());
    ASSERT_TRUE(setCreationDate(file.path(), kDate));
    EXPECT_EQ(file.get("user.smb3.creationtime"), "12345678");
}

TEST_F(CreationDates, DoNotChangeTheModificationTime) {
    const auto before = std::filesystem::last_write_time(file.path());
    ASSERT_TRUE(setCreationDate(file.path(), kDate));
    EXPECT_EQ(std::filesystem::last_write_time(file.path()), before);
}

TEST(CreationDate, OfAMissingFileIsNow) {
    const TemporaryFolder folder;
    const auto before = std::chrono::system_clock::now();
    const CreationDate date = ImageTools::ImageCreationDate(folder.path() / "missing");
    EXPECT_GE(date, before);
    EXPECT_LE(date, std::chrono::system_clock::now());
    EXPECT_FALSE(creationDate(folder.path() / "missing"));
}

TEST(CreationDate, CannotBeSetOnAMissingFile) {
    const TemporaryFolder folder;
    EXPECT_FALSE(setCreationDate(folder.path() / "missing", kDate));
}

TEST(CreationDate, AFailureToCarryItIsPrinted) {
    const TemporaryFolder folder;
    testing::internal::CaptureStderr();
    EXPECT_EQ(printedBy([&] { carryCreationDate(folder.path() / "missing", kDate); }), "ERROR\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(CreationDates, AreCarriedSilently) {
    EXPECT_EQ(printedBy([&] { carryCreationDate(file.path(), kDate); }), "");
    EXPECT_EQ(creationDate(file.path()), kDate);
}

TEST(CreationDate, IsSupportedOnTmpfs) {
    const std::filesystem::path shared = "/dev/shm";
    struct statfs status = {};
    constexpr auto kTypeTmpfs = 0x01021994;
    if (::statfs(shared.c_str(), &status) != 0 || status.f_type != kTypeTmpfs ||
        ::access(shared.c_str(), W_OK) != 0)
        GTEST_SKIP() << "there is no writable tmpfs";
    const DatedFile file(shared);
    if (!file.set("user.probe", "1")) {
        EXPECT_FALSE(setCreationDate(file.path(), kDate));
        EXPECT_EQ(creationDate(file.path()), file.birth());
        return;
    }
    ASSERT_TRUE(setCreationDate(file.path(), kDate));
    EXPECT_EQ(creationDate(file.path()), kDate);
}

} // namespace
} // namespace complexion

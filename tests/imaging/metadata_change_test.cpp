// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/image_tools.h"
#include "imaging/metadata/creation_date.h"
#include "imaging/metadata/jpeg_metadata.h"
#include "tests/fakes/captured_output.h"
#include "tests/fakes/metadata_samples.h"
#include "tests/fakes/pictures.h"
#include "tests/fakes/temporary_folder.h"

#include <gtest/gtest.h>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace complexion {
namespace {

using namespace std::string_literals;

constexpr CreationDate kDate{std::chrono::seconds(1234567890)};

class ChangeImageExif : public testing::Test {
protected:
    void SetUp() override {
        writeFile(source, withSegments(encodedAs(kJpegCodec, shaded({16, 16})),
                                       jpegSegmentOf(0xe1, "Exif\0\0"s + cameraExif(6).bytes())));
        writeFile(written, plain);
    }

    bool canKeepDates() const { return setCreationDate(source, kDate); }

    TemporaryFolder folder;
    std::filesystem::path source = folder.path() / "photo.jpg";
    std::filesystem::path written = folder.path() / "result.jpg";
    std::string plain = encodedAs(kJpegCodec, filled({16, 16}, grey(90)));
};

TEST_F(ChangeImageExif, CarriesMetadataAndOrientationValue) {
    ImageTools::ChangeImageExif(source, written);
    const std::string result = contentsOf(written);
    EXPECT_TRUE(contains(result, cameraExif(6).bytes()));
    EXPECT_TRUE(scansOf(result) == scansOf(plain));
    EXPECT_EQ(ImageTools::CarriedOrientation(source, "jpg"), Orientation::RightTop);
    EXPECT_EQ(ImageTools::CarriedOrientation(source, "gif"), Orientation::TopLeft);
}

TEST_F(ChangeImageExif, CarriesTheCreationDate) {
    if (!canKeepDates())
        GTEST_SKIP() << "the temporary folder's file system has no place for a creation date";
    EXPECT_EQ(printedBy([&] { ImageTools::ChangeImageExif(source, written); }), "");
    EXPECT_EQ(ImageTools::ImageCreationDate(written), kDate);
}

TEST_F(ChangeImageExif, CarriesTheDateOfASourceWithoutMetadata) {
    writeFile(source, plain);
    if (!canKeepDates())
        GTEST_SKIP() << "the temporary folder's file system has no place for a creation date";
    ImageTools::ChangeImageExif(source, written);
    EXPECT_EQ(ImageTools::ImageCreationDate(written), kDate);
    EXPECT_TRUE(contentsOf(written) == plain);
}

TEST_F(ChangeImageExif, DetectsFormatsByContentNotByName) {
    const std::filesystem::path png = folder.path() / "called.jpg";
    writeFile(png, encodedAs(kPngCodec, noise({9, 7})));
    ImageTools::ChangeImageExif(source, png);
    EXPECT_TRUE(contains(contentsOf(png), pngChunkOf("eXIf", cameraExif(6).bytes())));
}

TEST_F(ChangeImageExif, AMissingSourceChangesNothingAndPrintsNothing) {
    EXPECT_EQ(printedBy([&] { ImageTools::ChangeImageExif(folder.path() / "missing.jpg", written); }), "");
    EXPECT_TRUE(contentsOf(written) == plain);
    EXPECT_EQ(ImageTools::CarriedOrientation(folder.path() / "missing.jpg", "jpg"), Orientation::TopLeft);
}

TEST_F(ChangeImageExif, ASourceThatIsNotAPictureChangesNothing) {
    writeFile(source, "not a picture");
    const auto before = ImageTools::ImageCreationDate(written);
    EXPECT_EQ(printedBy([&] { ImageTools::ChangeImageExif(source, written); }), "");
    EXPECT_TRUE(contentsOf(written) == plain);
    EXPECT_EQ(ImageTools::ImageCreationDate(written), before);
}

TEST_F(ChangeImageExif, AMissingTargetIsNotCreated) {
    std::filesystem::remove(written);
    EXPECT_EQ(printedBy([&] { ImageTools::ChangeImageExif(source, written); }), "");
    EXPECT_FALSE(std::filesystem::exists(written));
}

TEST_F(ChangeImageExif, ATargetThatIsNotAPictureIsUnchanged) {
    writeFile(written, "not a picture");
    EXPECT_EQ(printedBy([&] { ImageTools::ChangeImageExif(source, written); }), "");
    EXPECT_EQ(contentsOf(written), "not a picture");
}

TEST_F(ChangeImageExif, ATargetThatCannotBeReplacedKeepsItsBytesAndItsDate) {
    if (!canKeepDates())
        GTEST_SKIP() << "the temporary folder's file system has no place for a creation date";
    const auto before = ImageTools::ImageCreationDate(written);
    const ReadOnly locked(folder.path());
    EXPECT_EQ(printedBy([&] { ImageTools::ChangeImageExif(source, written); }), "");
    EXPECT_TRUE(contentsOf(written) == plain);
    EXPECT_EQ(ImageTools::ImageCreationDate(written), before);
}

/// Makes setxattr fail in this process from now on, as on a file system without extended attributes.
void refuseExtendedAttributes() {
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_setxattr, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program = {std::size(filter), filter};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        std::_Exit(2);
}

using ChangeImageExifDeathTest = ChangeImageExif;

TEST_F(ChangeImageExifDeathTest, PrintsErrorAndKeepsTheFileIfTheDateCannotBeSet) {
    const auto change = [&] {
        refuseExtendedAttributes();
        ::dup2(STDERR_FILENO, STDOUT_FILENO); // EXPECT_EXIT matches standard error
        ImageTools::ChangeImageExif(source, written);
        std::_Exit(contains(contentsOf(written), cameraExif(6).bytes()) ? 0 : 1);
    };
    EXPECT_EXIT(change(), testing::ExitedWithCode(0), "^ERROR\n$");
}

} // namespace
} // namespace complexion

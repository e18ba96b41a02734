// SPDX-License-Identifier: GPL-3.0-or-later

// The notices about a photo that is opened, and about a file that cannot be opened.
#include "editor/notices.h"

#include "imaging/containers/other_formats.h"
#include "imaging/image_tools.h"
#include "tests/editor/opening_fixture.h"

#include <gtest/gtest.h>

namespace complexion {
namespace {

using Kind = SavingLoss::Kind;

std::string about(const std::vector<SavingLoss>& losses) {
    return noticeAbout({.image = filled({4, 4}, kSkin), .losses = losses}, "tiff").toStdString();
}

std::string failure(ErrorKind kind, const std::string& message = "") {
    return noticeOfFailure("/photos/face.jpg", {message, kind}).toStdString();
}

TEST(Notices, ThereIsNoneAboutAPhotoThatIsSavedAsItIs) {
    EXPECT_EQ(about({}), "");
}

TEST(Notices, EachLossIsTold) {
    EXPECT_EQ(about({{Kind::Depth, 16}}), "In the saved copy: 16 bits per channel become 8.");
    EXPECT_EQ(about({{Kind::Cmyk}}), "In the saved copy: CMYK becomes RGB.");
    EXPECT_EQ(about({{Kind::Lab}}), "In the saved copy: Lab becomes RGB.");
    EXPECT_EQ(about({{Kind::Pages, 4}}), "In the saved copy: only page 1 of 4.");
    EXPECT_EQ(about({{Kind::Frames, 46}}), "In the saved copy: only the first of 46 frames.");
    EXPECT_EQ(about({{Kind::Layers}}), "In the saved copy: the layers are merged.");
    EXPECT_EQ(about({{Kind::Movie}}), "In the saved copy: the moving picture is left out.");
    EXPECT_EQ(about({{Kind::Preview}}), "In the saved copy: the embedded preview is left out.");
}

TEST(Notices, SeveralLossesAreOneSentence) {
    EXPECT_EQ(about({{Kind::Cmyk}, {Kind::Pages, 2}, {Kind::Layers}}),
              "In the saved copy: CMYK becomes RGB, only page 1 of 2, the layers are merged.");
}

TEST(Notices, DamageIsToldFirst) {
    EXPECT_EQ(noticeAbout({.image = filled({4, 4}, kSkin),
                           .damage = Error{"pixels are missing"},
                           .losses = {{Kind::Movie}}},
                          "jpg")
                  .toStdString(),
              "The file is damaged: part of the picture is missing. "
              "In the saved copy: the moving picture is left out.");
}

TEST(Notices, APhotoTooLargeForItsFormatIsTold) {
    const auto notice = [](int width, int height, const char* format) {
        return noticeAbout({.image = filled({width, height}, kSkin)}, format).toStdString();
    };
    EXPECT_EQ(notice(65500, 1, "jpg"), "");
    EXPECT_EQ(notice(65501, 1, "jpeg"), "The photo cannot be saved: JPEG cannot hold pictures this large.");
    EXPECT_EQ(notice(1, 65501, "jpg"), "The photo cannot be saved: JPEG cannot hold pictures this large.");
    EXPECT_EQ(notice(65535, 1, "gif"), "");
    EXPECT_EQ(notice(65536, 1, "gif"), "The photo cannot be saved: GIF cannot hold pictures this large.");
    EXPECT_EQ(notice(65536, 1, "png"), "");
}

TEST(Notices, AFailureNamesTheFileAndTheReason) {
    EXPECT_EQ(failure(ErrorKind::NotAPicture),
              "“face.jpg” is not a picture. Complexion opens JPEG, PNG, TIFF, GIF and BMP.");
    EXPECT_EQ(failure(ErrorKind::Damaged),
              "“face.jpg” is damaged, or of a kind that Complexion does not know.");
    EXPECT_EQ(failure(ErrorKind::TooLarge), "“face.jpg” is too large to be opened.");
    EXPECT_EQ(failure(ErrorKind::OutOfMemory), "There is not enough memory to open “face.jpg”.");
    EXPECT_EQ(failure(ErrorKind::CannotRead),
              "“face.jpg” cannot be read. It may have been moved, or you may not have permission.");
}

TEST(Notices, AFailureForAnotherFormatSaysWhatHelps) {
    EXPECT_EQ(failure(ErrorKind::NotAPicture, "HEIC"),
              "“face.jpg” has the format HEIC. Complexion opens JPEG, PNG, TIFF, GIF and BMP. "
              "Export a JPEG or TIFF from the program that opens it.");
    EXPECT_EQ(failure(ErrorKind::NotAPicture, std::string(kCameraRaw)),
              "“face.jpg” is a camera’s raw file. Complexion opens JPEG, PNG, TIFF, GIF and BMP. "
              "Export a JPEG or TIFF from your raw developer.");
    EXPECT_EQ(failure(ErrorKind::NotAPicture, std::string(kMovie)),
              "“face.jpg” is not a still picture. Complexion opens JPEG, PNG, TIFF, GIF and BMP.");
}

TEST(Notices, ALongFileNameIsElided) {
    const QString notice = noticeOfFailure(std::string(200, 'a') + "z.jpg", {"", ErrorKind::TooLarge});
    EXPECT_EQ(notice, QString::fromUtf8("“") + QString(20, u'a') + u'…' + QString(14, u'a') +
                          QString::fromUtf8("z.jpg” is too large to be opened."));
}

class OpeningNotices : public Opening {
protected:
    OpeningNotices() {
        QObject::connect(&*controller, &ViewController::noticed,
                         [this](const QString& text) { notices.push_back(text.toStdString()); });
    }

    std::vector<std::string> notices;
};

TEST_F(OpeningNotices, APhotoWithNothingToTellEndsTheNoticeBefore) {
    openThroughPanel(makePhoto());
    EXPECT_EQ(notices, std::vector<std::string>{""});
}

TEST_F(OpeningNotices, DamageIsToldAtOpeningAndReloading) {
    const std::filesystem::path path = makePhoto("cut.bmp");
    const std::string whole = contentsOf(path);
    writeFile(path, whole.substr(0, whole.size() / 2));
    const std::string damaged = "The file is damaged: part of the picture is missing.";
    openThroughPanel(path);
    EXPECT_EQ(notices, std::vector<std::string>{damaged});
    reload();
    EXPECT_EQ(notices, (std::vector<std::string>{damaged, damaged}));
    writeFile(path, whole);
    reload();
    EXPECT_EQ(notices.back(), "");
}

TEST_F(OpeningNotices, AFailureIsToldBesideItsAlert) {
    dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
    std::vector<std::string> meanwhile;
    dialogs.whileItIsShown([&] { meanwhile = notices; });
    controller->OpenFile(undecodable("letter.png"));
    EXPECT_EQ(meanwhile,
              std::vector<std::string>{
                  "“letter.png” is not a picture. Complexion opens JPEG, PNG, TIFF, GIF and BMP."});
}

TEST_F(OpeningNotices, ARefusedDropIsToldWithoutAnAlert) {
    const auto noticeOf = [this](const std::filesystem::path& path) {
        notices.clear();
        EXPECT_FALSE(drop(path));
        return notices.size() == 1 ? notices[0] : "";
    };
    const std::filesystem::path folder = platform.photos();
    const std::string readable = " Complexion opens JPEG, PNG, TIFF, GIF and BMP.";
    EXPECT_EQ(noticeOf(undecodable("letter.png")), "“letter.png” is not a picture." + readable);
    EXPECT_EQ(noticeOf(undecodable("letter.txt")), "“letter.txt” is not a picture." + readable);
    writeFile(folder / "face.heic", std::string("\0\0\0\x18"
                                                "ftypheic\0\0\0\0mif1heic",
                                                24));
    EXPECT_EQ(noticeOf(folder / "face.heic"), "“face.heic” has the format HEIC." + readable +
                                                  " Export a JPEG or TIFF from the program that opens it.");
    std::filesystem::create_directory(folder / "album.png");
    EXPECT_EQ(noticeOf(folder / "album.png"), "“album.png” is not a picture." + readable);
    EXPECT_EQ(noticeOf(folder / "gone.png"),
              "“gone.png” cannot be read. It may have been moved, or you may not have permission.");
    std::filesystem::copy(makePhoto(), folder / "face");
    EXPECT_EQ(noticeOf(folder / "face"),
              "“face” needs a name that ends with .jpg, .png, .tiff, .gif or .bmp.");
    const std::string whole = contentsOf(makePhoto());
    writeFile(folder / "header.png", whole.substr(0, 40));
    EXPECT_EQ(noticeOf(folder / "header.png"),
              "“header.png” is damaged, or of a kind that Complexion does not know.");
}

TEST_F(OpeningNotices, ASaveThatWritesNoFileSaysWhy) {
    const std::filesystem::path path = platform.photos() / "wide.jpg";
    ASSERT_TRUE(ImageTools::SaveImage(filled({65501, 2}, kSkin), path, "png"));
    controller->OpenFile(path);
    const std::string unsavable = "The photo cannot be saved: JPEG cannot hold pictures this large.";
    EXPECT_EQ(notices, std::vector<std::string>{unsavable});
    notices.clear();
    dialogs.expectSavePanel({{"jpg"}, "wide_retouched.jpg"}, chosen(platform.photos() / "out.jpg"));
    dialogs.expectAlert(kSaveSuccess, AlertStyle::Informational);
    controller->OnSaveImage(nullptr);
    EXPECT_EQ(notices, std::vector<std::string>{unsavable});
}

} // namespace
} // namespace complexion

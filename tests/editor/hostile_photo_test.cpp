// SPDX-License-Identifier: GPL-3.0-or-later

// A photo that takes its decoder over is a photo that could not be loaded.
#include "tests/editor/opening_fixture.h"
#include "tests/fakes/hostile_reader.h"
#include "tests/fakes/installed_reader.h"

#include <chrono>

namespace complexion {
namespace {

TEST_F(Opening, APhotoThatTakesItsDecoderOverShowsTheLoadFailureAndLeavesEverything) {
    editPhoto();
    const InstalledReader reader(doAsTheFileSays);
    for (const std::string_view deed :
         {kReachForFiles, kCrash, kExitSilently, kEndlessPictures, kTooLongAnswer}) {
        const std::filesystem::path path = platform.photos() / "hostile.jpg";
        writeFile(path, hostileFile(deed));
        expectUnchangedBy([&] {
            dialogs.expectQuestion(kSelectQuestion, kFirstButton);
            dialogs.expectOpenPanel(chosen(path));
            dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
            controller->OnSelectImage(nullptr);
        });
    }
}

TEST_F(Opening, APhotoThatOpensForLongShowsProgressAndCanBeCancelled) {
    editPhoto();
    const InstalledReader reader(doAsTheFileSays);
    const std::filesystem::path path = platform.photos() / "endless.jpg";
    writeFile(path, hostileFile(kHang));
    int reports = 0;
    QObject::connect(controller.get(), &ViewController::longWorkProgressed, controller.get(), [&](double) {
        if (++reports == 3)
            controller->CancelLongWork();
    });
    const auto begin = std::chrono::steady_clock::now();
    expectUnchangedBy([&] { controller->OpenFile(path); });
    EXPECT_EQ(reports, 3);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

TEST_F(Opening, APhotoThatIsCancelledAfterItsPreviewLeavesEverything) {
    editPhoto();
    const InstalledReader reader(doAsTheFileSays);
    const std::filesystem::path path = platform.photos() / "previewed.jpg";
    writeFile(path, hostileFile(kPreviewAndHang));
    expectPreviewUntilCancelled([&] { controller->OpenFile(path); });
}

TEST_F(Opening, TheHintComesBackWhenThePhotoAfterAPreviewDoesNotOpen) {
    const InstalledReader reader(doAsTheFileSays);
    const std::filesystem::path path = platform.photos() / "previewed.jpg";
    writeFile(path, hostileFile(kPreviewTwice));
    QObject::connect(controller.get(), &ViewController::previewShown, controller.get(), [&] {
        EXPECT_TRUE(controller->boxHint->isHidden() && controller->boxHelp->isHidden());
    });
    dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
    controller->OpenFile(path);
    EXPECT_FALSE(imageView->isShowingPreview());
    EXPECT_FALSE(controller->boxHint->isHidden() || controller->boxHelp->isHidden());
    EXPECT_FALSE(controller->hasImage());
}

TEST_F(Opening, APhotoIsRetouchedThatWasReadInAnotherProcess) {
    const InstalledReader reader;
    const std::filesystem::path path = makePhoto("photo.jpg");
    openThroughPanel(path);
    const Image opened = controller->originalImage();
    EXPECT_TRUE(samePixels(opened, decoded(path)));
    retouch(0);
    EXPECT_FALSE(samePixels(controller->originalImage(), opened));
    controller->OnUndo(nullptr);
    EXPECT_TRUE(samePixels(controller->originalImage(), opened));
}

} // namespace
} // namespace complexion

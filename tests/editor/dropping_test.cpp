// SPDX-License-Identifier: GPL-3.0-or-later

// Photos that are dropped on the window or passed by the system.
#include "tests/editor/opening_fixture.h"

namespace complexion {

namespace {

TEST_F(Opening, TheControllerLoadsADroppedPhotoWithoutAQuestion) {
    const std::filesystem::path path = makePhoto();
    controller->DragPerformed(dropped(path));
    expectFreshlyOpened(path, photo());

    editPhoto();
    const Image other = filled({40, 30}, grey(90));
    const std::filesystem::path second = makePhoto("second.png", other);
    controller->DragPerformed(dropped(second));
    expectFreshlyOpened(second, other);
}

TEST_F(Opening, APhotoDroppedOnTheViewIsOpenBeforeTheDropEnds) {
    const std::filesystem::path path = makePhoto();
    EXPECT_TRUE(drop(path));
    expectFreshlyOpened(path, photo());
}

TEST_F(Opening, ADropOnAnOpenPhotoAsksOnce) {
    openThroughPanel(makePhoto("first.png"));
    const int before = dialogs.shownCount();
    const std::filesystem::path path = makePhoto("second.png");
    EXPECT_TRUE(drop(path));
    EXPECT_EQ(dialogs.shownCount(), before + 1);
    expectFreshlyOpened(path, photo());
}

TEST_F(Opening, AnUndecodableDropIsRefusedSilentlyAndChangesNothing) {
    editPhoto();
    const std::filesystem::path path = undecodable();
    expectUnchangedBy([&] { EXPECT_FALSE(drop(path)); });
}

TEST_F(Opening, AFileThatBecomesUndecodableAfterItsDropShowsTheLoadFailure) {
    editPhoto();
    const std::filesystem::path path = undecodable();
    expectUnchangedBy([&] {
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->DragPerformed(dropped(path));
    });
}

TEST_F(Opening, ANotificationWithoutAPathShowsTheLoadFailure) {
    editPhoto();
    expectUnchangedBy([this] {
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->DragPerformed({kDragPerformed, UserInfo{{"file", "photo.png"}}});
    });
}

TEST_F(Opening, ANotificationWithoutUserInformationIsFatal) {
    EXPECT_DEATH(controller->DragPerformed({kDragPerformed, std::nullopt}), "");
}

TEST_F(Opening, ADropAfterTheControllersDestructionIsIgnored) {
    const std::filesystem::path path = makePhoto();
    controller.reset();
    NotificationCenter::defaultCenter().post(dropped(path));
    EXPECT_FALSE(imageView->image().has_value());
}

TEST_F(Opening, APathMayHaveAnyBytes) {
    const std::filesystem::path path = platform.photos() / "caf\xE9.png"; // Latin-1, not UTF-8
    writeFile(path, contentsOf(makePhoto()));
    controller->DragPerformed(dropped(path));
    expectFreshlyOpened(path, photo());
    EXPECT_EQ(controller->originalImageName, "caf\xE9");
    EXPECT_EQ(controller->originalImageExtension, "png");
}

TEST_F(Opening, ADeletedControlIsFatal) {
    const std::filesystem::path path = makePhoto();
    delete controller->comboEffect.data();
    EXPECT_DEATH(controller->DragPerformed(dropped(path)), "gone");
}

// "Open with".

TEST_F(Opening, AFilePassedByTheSystemIsLoaded) {
    const std::filesystem::path path = makePhoto();
    controller->OpenFile(path);
    expectFreshlyOpened(path, photo());
}

TEST_F(Opening, AnUndecodableFilePassedByTheSystemShowsTheLoadFailure) {
    const std::filesystem::path path = undecodable();
    expectUnchangedBy([&] {
        dialogs.expectAlert(kLoadFailure, AlertStyle::Warning);
        controller->OpenFile(path);
    });
}

} // namespace

} // namespace complexion

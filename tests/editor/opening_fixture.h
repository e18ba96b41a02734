// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/editor/editor_fixture.h"

#include <functional>

namespace complexion {

/// Helpers for opening photos.
class Opening : public EditorTest {
protected:
    Notification dropped(const std::filesystem::path& path) const {
        return {kDragPerformed, UserInfo{{kPathKey, path.string()}}};
    }

    std::filesystem::path undecodable(const std::string& name = "fake.png") const {
        const std::filesystem::path path = platform.photos() / name;
        writeFile(path, "not a picture");
        return path;
    }

    /// Expects the state right after a photo was opened.
    void expectFreshlyOpened(const std::filesystem::path& path, const Image& picture) {
        EXPECT_EQ(controller->originalImagePath, path);
        EXPECT_TRUE(samePixels(controller->originalImage(), picture));
        EXPECT_TRUE(shown().isSameObject(controller->originalImage()));
        EXPECT_EQ(controller->comboEffect->currentIndex(), 0);
        EXPECT_EQ(imageView->frame(), (Frame{0, 0, kRootSize.width, kRootSize.height}));
        EXPECT_TRUE(controller->boxHint->isHidden());
        EXPECT_TRUE(controller->boxHelp->isHidden());
        EXPECT_EQ(controller->stateImagesPath.size(), 1U);
        EXPECT_EQ(controller->currenState, 0);
        EXPECT_EQ(stateFiles().size(), 1U);
        EXPECT_TRUE(samePixels(decoded(currentPath()), picture));
        EXPECT_TRUE(controller->hasImage());
        EXPECT_FALSE(controller->canUndo());
        EXPECT_FALSE(controller->canRedo());
    }

    /// Expects that a photo's preview is shown until the user cancels its opening by `open`, and that nothing
    /// has changed then.
    void expectPreviewUntilCancelled(const std::function<void()>& open) {
        int previews = 0;
        QObject::connect(controller.get(), &ViewController::previewShown, controller.get(), [&] {
            ++previews;
            EXPECT_TRUE(imageView->isShowingPreview());
            controller->CancelLongWork();
        });
        expectUnchangedBy(open);
        EXPECT_EQ(previews, 1);
        EXPECT_FALSE(imageView->isShowingPreview());
    }

    /// Opens a photo and changes everything: repairs, undo, zoom, pan, effect.
    void editPhoto() {
        openThroughPanel(makePhoto("worked_on.png"));
        retouch(0);
        retouch(1);
        controller->OnUndo(nullptr);
        selectEffect(4);
        controller->OnZoomIn(nullptr);
        drag(-3, 2);
    }
};

} // namespace complexion

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/editor/editor_fixture.h"

namespace complexion {

/// The editor with photos that are opened in every way.
class Opening : public EditorTest {
protected:
    Notification dropped(const std::filesystem::path& path) const {
        return {kDragPerformed, UserInfo{{kPathKey, path.string()}}};
    }

    std::filesystem::path undecodable(const std::string& name = "fake.png") const {
        const std::filesystem::path path = platform.photos() / name;
        writeFile(path, "this is no picture");
        return path;
    }

    /// What is true after any photo was opened for the first time or again.
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

    /// A photo is open that has been worked on: retouched, stepped back, zoomed, with an effect.
    void workOnAPhoto() {
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

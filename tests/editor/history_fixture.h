// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/editor/editor_fixture.h"

namespace complexion {

/// The editor with a history that grows quickly.
class EditHistory : public EditorTest {
protected:
    /// A photo is open whose states are small and quickly written.
    void openSmallPhoto(const std::string& name = "small.png") {
        openThroughPanel(makePhoto(name, filled({4, 3}, kSkin)));
    }

    /// Records `count` changes, each another grey.
    void change(int count) {
        for (int i = 0; i < count; ++i) {
            controller->setOriginalImage(filled({4, 3}, grey(++m_level % 256)));
            controller->PushStateImage();
        }
    }

    std::size_t count() const { return controller->stateImagesPath.size(); }

    /// Every file of the folder is listed, and every listed file is there.
    void expectFilesAreTheListed() const {
        std::vector<std::string> listed;
        for (const auto& path : controller->stateImagesPath) {
            EXPECT_EQ(path.parent_path(), platform.states());
            listed.push_back(path.filename());
        }
        EXPECT_THAT(stateFiles(), testing::UnorderedElementsAreArray(listed));
    }

private:
    int m_level = 0;
};

} // namespace complexion

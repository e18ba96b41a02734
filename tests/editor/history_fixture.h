// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/editor/editor_fixture.h"

namespace complexion {

/// Helpers for tests of the history, with small states.
class EditHistory : public EditorTest {
protected:
    /// Opens a photo whose states are small and quickly written.
    void openSmallPhoto(const std::string& name = "small.png") {
        openThroughPanel(makePhoto(name, filled({4, 3}, kSkin)));
    }

    /// Records `count` states, each with another grey.
    void change(int count) {
        for (int i = 0; i < count; ++i) {
            controller->setOriginalImage(filled({4, 3}, grey(++m_level % 256)));
            controller->PushStateImage();
        }
    }

    std::size_t count() const { return controller->stateImagesPath.size(); }

    /// Expects that the state folder contains exactly the files of the history.
    void expectFilesMatchHistory() const {
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

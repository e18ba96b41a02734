// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/editor/editor_fixture.h"

namespace complexion {

/// Helpers for tests with system faults. The photo is a BMP file, so each of its states has 19 KB.
class Faults : public EditorTest {
protected:
    void openPhoto() { openThroughPanel(makePhoto("portrait.bmp")); }

    std::filesystem::path target(const std::string& name = "saved.bmp") const {
        return platform.photos() / name;
    }

    void expectSave(const std::filesystem::path& path, const char* alert) {
        const std::string extension = path.extension().string().substr(1);
        dialogs.expectSavePanel({{extension}, "portrait_retouched." + extension}, chosen(path));
        dialogs.expectAlert(alert, std::string_view(alert) == kSaveSuccess ? AlertStyle::Informational
                                                                           : AlertStyle::Warning);
    }
    std::string saveExpecting(const std::filesystem::path& path, const char* alert) {
        expectSave(path, alert);
        return printedBy([this] { controller->OnSaveImage(nullptr); });
    }

    static void expectNoTemporaryFilesIn(const std::filesystem::path& folder) {
        for (const std::string& name : filesIn(folder))
            EXPECT_FALSE(name.starts_with(".")) << folder / name;
    }

    /// Expects that a repair works, is recorded, and can be saved.
    void expectEditorWorks() {
        const std::int64_t before = controller->currenState;
        retouch(2);
        EXPECT_EQ(controller->currenState, before + 1);
        EXPECT_TRUE(samePixels(decoded(currentPath()), controller->originalImage()));
        EXPECT_EQ(controller->originalImage().pixel(45, 25), kSkin);
        saveExpecting(target("afterwards.bmp"), kSaveSuccess);
        EXPECT_TRUE(samePixels(decoded(target("afterwards.bmp")), shown()));
        expectNoTemporaryFilesIn(platform.states());
        expectNoTemporaryFilesIn(platform.photos());
    }
};

} // namespace complexion

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/editor/editor_fixture.h"

namespace complexion {

/// Helpers for saving beside the photos.
class Saving : public EditorTest {
protected:
    std::filesystem::path target(const std::string& name) const { return platform.photos() / name; }

    /// Saves, expecting `panel`, answered with `answer`, and then `alert` (none if empty). Returns what was
    /// printed.
    std::string saveWith(const SavePanel& panel, const PanelAnswer& answer, const char* alert) {
        dialogs.expectSavePanel(panel, answer);
        if (std::string_view(alert) == kSaveSuccess)
            dialogs.expectAlert(alert, AlertStyle::Informational);
        else if (*alert)
            dialogs.expectAlert(alert, AlertStyle::Warning);
        return printedBy([this] { controller->OnSaveImage(nullptr); });
    }
};

} // namespace complexion

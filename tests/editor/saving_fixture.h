// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/editor/editor_fixture.h"

namespace complexion {

/// The editor with results that are saved beside its photos.
class Saving : public EditorTest {
protected:
    std::filesystem::path target(const std::string& name) const { return platform.photos() / name; }

    /// Runs the save action, expecting a panel that proposes `name` and is answered with `answer`, and then
    /// an alert (or none, for an empty text). What it printed.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/dialogs.h"

#include <deque>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace complexion {

// The questions and alerts, word for word.
inline constexpr const char* kSelectQuestion =
    "All unsaved changes will be lost. Are you sure you want to select a new image?";
inline constexpr const char* kReloadQuestion =
    "All unsaved changes will be lost. Are you sure you want to reload the image?";
inline constexpr const char* kDropQuestion =
    "All unsaved changes will be lost. Are you sure you want to add a new image?";
inline constexpr const char* kExitQuestion =
    "All unsaved changes will be lost. Are you sure you want to exit the application?";
inline constexpr const char* kLoadFailure = "The image could not be loaded.";
inline constexpr const char* kSaveSuccess = "Image saved successfully.";
inline constexpr const char* kSaveFailure = "Could not save the image.";

/// Dialogs that are answered by a script: each expected one with its answer, in order. A dialog that the
/// script does not expect fails the test and is answered as a user would who wants to be left alone; so does,
/// at the end, an expected one that was never shown.
class FakeDialogs : public Dialogs {
public:
    ~FakeDialogs() override;

    /// A question with "Yes" and "No".
    void expectQuestion(const std::string& informativeText, int answer);
    /// An alert with "OK".
    void expectAlert(const std::string& informativeText, AlertStyle style);
    void expectOpenPanel(PanelAnswer answer);
    void expectSavePanel(SavePanel panel, PanelAnswer answer);

    /// Runs `action` while the dialog that was expected last is shown, as an event may come in then.
    void whileItIsShown(std::function<void()> action);

    /// How many dialogs were shown.
    int shown() const { return m_shown; }

    int runAlert(const Alert& alert) override;
    PanelAnswer runOpenPanel(const OpenPanel& panel) override;
    PanelAnswer runSavePanel(const SavePanel& panel) override;

private:
    struct ExpectedAlert {
        Alert alert;
        int answer = kFirstButton;
    };
    struct ExpectedOpenPanel {
        PanelAnswer answer;
    };
    struct ExpectedSavePanel {
        SavePanel panel;
        PanelAnswer answer;
    };
    struct Expected {
        std::variant<ExpectedAlert, ExpectedOpenPanel, ExpectedSavePanel> dialog;
        std::function<void()> whileShown;
    };

    /// The next expected dialog, if it is of kind `Kind`; fails the test otherwise.
    template <class Kind>
    std::optional<Kind> next(const std::string& shownInstead);

    std::deque<Expected> m_expected;
    int m_shown = 0;
};

/// What a panel answers when a file was chosen.
PanelAnswer chosen(const std::filesystem::path& path);
/// What a panel answers when it was cancelled.
PanelAnswer cancelled();

} // namespace complexion

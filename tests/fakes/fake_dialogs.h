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

/// Dialogs that are answered from a script of expected dialogs, in order. An unexpected dialog fails the test
/// and is cancelled; an expected dialog that was never shown fails the test in the destructor.
class FakeDialogs : public Dialogs {
public:
    ~FakeDialogs() override;

    /// A question with "Yes" and "No".
    void expectQuestion(const std::string& informativeText, int answer);
    /// An alert with "OK".
    void expectAlert(const std::string& informativeText, AlertStyle style);
    void expectOpenPanel(PanelAnswer answer);
    void expectSavePanel(SavePanel panel, PanelAnswer answer);

    /// Runs `action` while the most recently expected dialog is shown, to simulate an event arriving then.
    void whileItIsShown(std::function<void()> action);

    /// The number of dialogs shown.
    int shownCount() const { return m_shownCount; }

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

    /// Removes and returns the next expected dialog; fails the test if it is not of type `Kind`.
    template <class Kind>
    std::optional<Kind> next(const std::string& shownDialog);

    std::deque<Expected> m_expected;
    int m_shownCount = 0;
};

/// The answer of a panel in which a file was chosen.
PanelAnswer chosen(const std::filesystem::path& path);
/// The answer of a cancelled panel.
PanelAnswer cancelled();

} // namespace complexion

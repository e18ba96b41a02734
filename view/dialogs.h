// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace complexion {

enum class AlertStyle { Warning = 0, Informational = 1 };

/// A modal message box.
struct Alert {
    std::string messageText;
    std::string informativeText;
    AlertStyle style = AlertStyle::Warning;
    std::vector<std::string> buttons; // in display order

    bool operator==(const Alert&) const = default;
};

/// The responses of an alert's first and second button.
inline constexpr int kFirstButton = 1000;
inline constexpr int kSecondButton = 1001;

/// The question whether to go on, answered with Yes (the first button) or No.
Alert yesNoQuestion(std::string informativeText);

/// A modal dialog for choosing one existing file.
struct OpenPanel {
    std::vector<std::string> allowedFileTypes; // extensions, lower case
    bool allowsMultipleSelection = false;
    bool canChooseFiles = true;
    bool canChooseDirectories = false;
    bool canCreateDirectories = false; // nor rename or delete anything

    bool operator==(const OpenPanel&) const = default;
};

/// A modal dialog for choosing where to save. It shows the file name with its extension, enforces one of the
/// allowed extensions, and asks before an existing file is replaced.
struct SavePanel {
    std::vector<std::string> allowedFileTypes; // extensions, lower case
    std::string nameFieldStringValue;          // the proposed file name, in the file system's encoding

    bool operator==(const SavePanel&) const = default;
};

/// The user's answer to a panel.
struct PanelAnswer {
    bool confirmed = false;
    std::optional<std::filesystem::path> url; // a confirmed panel has one unless the choice has no local path
};

/// The modal dialogs that the editor and the image view show.
class Dialogs {
public:
    Dialogs() = default;
    Dialogs(const Dialogs&) = delete;
    Dialogs& operator=(const Dialogs&) = delete;
    virtual ~Dialogs() = default;

    /// Shows `alert` and returns kFirstButton or kSecondButton. Escape counts as the second button if there
    /// are two.
    virtual int runAlert(const Alert& alert) = 0;
    virtual PanelAnswer runOpenPanel(const OpenPanel& panel) = 0;
    virtual PanelAnswer runSavePanel(const SavePanel& panel) = 0;
};

} // namespace complexion

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
    std::vector<std::string> buttons; // in the order in which they were added

    bool operator==(const Alert&) const = default;
};

/// The answers to an alert: its first button, its second.
inline constexpr int kFirstButton = 1000;
inline constexpr int kSecondButton = 1001;

/// A modal dialog that chooses one existing file.
struct OpenPanel {
    std::vector<std::string> allowedFileTypes; // extensions, lower case

    bool operator==(const OpenPanel&) const = default;
};

/// A modal dialog that names a file to write. It shows the name with its extension, puts one of the allowed
/// extensions on the name typed, and asks before a file that exists is replaced.
struct SavePanel {
    std::vector<std::string> allowedFileTypes; // extensions, lower case
    std::string nameFieldStringValue;          // the proposed file name, in the file system's encoding

    bool operator==(const SavePanel&) const = default;
};

/// How a panel ended.
struct PanelAnswer {
    bool confirmed = false;
    std::optional<std::filesystem::path> url; // a confirmed panel has one unless the choice has no local path
};

/// The questions that the editor and the image view put to the user.
class Dialogs {
public:
    Dialogs() = default;
    Dialogs(const Dialogs&) = delete;
    Dialogs& operator=(const Dialogs&) = delete;
    virtual ~Dialogs() = default;

    /// Shows `alert` until it is answered: kFirstButton, kSecondButton. Escape answers with the second button
    /// where there are two.
    virtual int runAlert(const Alert& alert) = 0;
    virtual PanelAnswer runOpenPanel(const OpenPanel& panel) = 0;
    virtual PanelAnswer runSavePanel(const SavePanel& panel) = 0;
};

} // namespace complexion

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/dialogs.h"

#include <QPointer>
#include <QWidget>

#include <filesystem>
#include <functional>

namespace complexion {

/// Shows the dialogs as modal dialogs of a window.
class WindowDialogs : public Dialogs {
public:
    /// `source` returns the path of the open photo, empty if there is none; the panels start in its folder.
    /// `privateFolder` is removed when the program ends, so no result can be saved there.
    WindowDialogs(QWidget* window, std::function<std::filesystem::path()> source,
                  std::filesystem::path privateFolder = {});

    int runAlert(const Alert& alert) override;
    PanelAnswer runOpenPanel(const OpenPanel& panel) override;
    PanelAnswer runSavePanel(const SavePanel& panel) override;

private:
    /// Where the next panel starts; need not exist.
    std::filesystem::path startFolder() const;
    /// The answer of a panel; remembers its folder for the next one.
    PanelAnswer answerOf(int result, const std::filesystem::path& chosen);

    QPointer<QWidget> m_window;
    std::function<std::filesystem::path()> m_source;
    std::filesystem::path m_privateFolder;
    std::filesystem::path m_lastFolder; // of the last confirmed panel, empty before
};

} // namespace complexion

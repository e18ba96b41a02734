// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "view/dialogs.h"

#include <QPointer>
#include <QWidget>

#include <functional>

namespace complexion {

/// The questions as dialogs over a window.
class WindowDialogs : public Dialogs {
public:
    /// `source` gives the path of the open photo, empty without one: the panels start in its folder.
    /// `passing` is a folder that goes when the program ends: no result is saved there.
    WindowDialogs(QWidget* window, std::function<std::filesystem::path()> source,
                  std::filesystem::path passing = {});

    int runAlert(const Alert& alert) override;
    PanelAnswer runOpenPanel(const OpenPanel& panel) override;
    PanelAnswer runSavePanel(const SavePanel& panel) override;

private:
    QString startFolder() const;
    /// What a panel chose, and the folder for the next one.
    PanelAnswer finish(int result, const QString& chosen);

    QPointer<QWidget> m_window;
    std::function<std::filesystem::path()> m_source;
    std::filesystem::path m_passing;
    QString m_lastFolder; // of this run
};

} // namespace complexion

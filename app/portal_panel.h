// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/file_panels.h"

#include <QDialog>
#include <QVariantMap>

#include <filesystem>
#include <string>
#include <vector>

class QDBusPendingCallWatcher;

namespace complexion {

/// The desktop's own file dialog, through the FileChooser portal of xdg-desktop-portal. It also works in a
/// sandbox without access to the user's files. While it is open, this dialog, which is never on the screen,
/// blocks the window. The program's own rules are applied to what was chosen, and the portal is asked again
/// until they hold.
///
/// Formats: https://flatpak.github.io/xdg-desktop-portal/docs/, org.freedesktop.portal.FileChooser,
/// version 3.
class PortalPanel : public QDialog {
    Q_OBJECT

public:
    /// Whether this is a session that is likely to have the portal: a desktop's, or a Flatpak sandbox.
    static bool isWanted();

    PortalPanel(const OpenPanel& panel, std::filesystem::path folder, Dialogs& dialogs, QWidget* parent);
    PortalPanel(const SavePanel& panel, std::filesystem::path folder, SaveFilePanel::Guarded guarded,
                Dialogs& dialogs, QWidget* parent);

    /// Whether the portal could not be asked: another panel is needed.
    bool isUnavailable() const { return m_isUnavailable; }
    /// The chosen file; empty until the panel is accepted, and if the choice has no local path.
    const std::filesystem::path& chosenPath() const { return m_chosen; }

    int exec() override;

    /// The portal's answer.
    Q_SLOT void answered(uint response, const QVariantMap& results);

private:
    PortalPanel(QString title, QString acceptTitle, std::filesystem::path folder,
                std::vector<std::string> extensions, Dialogs& dialogs, QWidget* parent);

    void ask();
    QVariantMap options(const QString& token) const;
    void calledBack(QDBusPendingCallWatcher* call);
    void choose(const std::filesystem::path& path);
    /// Applies the rules for files to save to.
    void save(const SaveFilePanel::Target& target);

    QString m_title; // not this dialog's, which screen readers would name
    QString m_acceptTitle;
    std::filesystem::path m_folder;
    std::vector<std::string> m_extensions;
    bool m_isSaving = false;
    QString m_name; // proposed, for saving
    SaveFilePanel::Guarded m_guarded;
    Dialogs& m_dialogs;
    bool m_isUnavailable = false;
    std::filesystem::path m_chosen;
    BackgroundTask m_check{this};
};

} // namespace complexion

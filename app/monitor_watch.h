// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/background_task.h"
#include "app/colord.h"
#include "app/x11_root.h"
#include "imaging/base/color_profile.h"

#include <QObject>

#include <optional>

class QWindow;

namespace complexion {

/// Watches which monitor shows a window, and which colour profile the system states for it: on X11 as a
/// property of the root window, on Wayland through the colour management service, unless the compositor
/// converts the colours itself.
class MonitorWatch : public QObject {
    Q_OBJECT

public:
    explicit MonitorWatch(QWindow* window);

    /// Looks for the profile now; later changes are found without this.
    void look();

Q_SIGNALS:
    /// The profile of the monitor that shows the window; sRGB where the system states none.
    void found(const ColorProfile& profile);

private:
    void lookOnX11();
    void lookOnWayland();
    void readFile(const QString& path);

    QWindow* m_window;
    X11Root m_root;
    std::optional<Colord> m_colord; // on Wayland, if the compositor does not convert colours
    BackgroundTask m_task;
};

} // namespace complexion

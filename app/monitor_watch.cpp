// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/monitor_watch.h"

#include "app/wayland_colors.h"
#include "imaging/screen_colors.h"

#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace complexion {

namespace {

using namespace Qt::StringLiterals;

ColorProfile profileIn(const QByteArray& bytes) {
    return monitorProfile(
        {reinterpret_cast<const std::uint8_t*>(bytes.constData()), static_cast<std::size_t>(bytes.size())});
}

/// The property for a monitor (ICC Profiles in X Specification 0.4): the first one has no number.
QByteArray propertyFor(qsizetype monitor) {
    return monitor > 0 ? "_ICC_PROFILE_" + QByteArray::number(monitor) : QByteArray("_ICC_PROFILE");
}

} // namespace

MonitorWatch::MonitorWatch(QWindow* window) : m_window(window), m_task(this) {
    connect(window, &QWindow::screenChanged, this, &MonitorWatch::look);
    // They change the monitors' numbers.
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &MonitorWatch::look);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &MonitorWatch::look);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &MonitorWatch::look);
}

void MonitorWatch::look() {
    if (m_root.isAvailable())
        lookOnX11();
    else if (QGuiApplication::platformName().startsWith(u"wayland"_s))
        lookOnWayland();
}

void MonitorWatch::lookOnX11() {
    const QByteArray property = propertyFor(QGuiApplication::screens().indexOf(m_window->screen()));
    m_root.watch(property, [this] { lookOnX11(); });
    m_task.start(
        [this, bytes = m_root.property(property, kMaxMonitorProfile)](const BackgroundTask::Post& post) {
            post([this, profile = profileIn(bytes)] { Q_EMIT found(profile); });
        });
}

void MonitorWatch::lookOnWayland() {
    if (m_colord)
        return m_colord->ask(m_window->screen() ? m_window->screen()->name() : QString());
    m_task.start([this](const BackgroundTask::Post& post) {
        if (compositorConvertsColors())
            return;
        post([this] {
            m_colord.emplace();
            connect(&*m_colord, &Colord::answered, this, &MonitorWatch::readFile);
            connect(&*m_colord, &Colord::changed, this, &MonitorWatch::look);
            look();
        });
    });
}

void MonitorWatch::readFile(const QString& path) {
    m_task.start([this, path](const BackgroundTask::Post& post) {
        QFile file(path);
        QByteArray bytes;
        if (file.open(QIODevice::ReadOnly))
            bytes = file.read(static_cast<qint64>(kMaxMonitorProfile) + 1);
        post([this, profile = profileIn(bytes)] { Q_EMIT found(profile); });
    });
}

} // namespace complexion

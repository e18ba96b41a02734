// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>

#include <cstdint>
#include <functional>

struct xcb_connection_t;

namespace complexion {

/// The root window of the X server, on which the desktop states things for all programs, as properties.
class X11Root : public QAbstractNativeEventFilter {
public:
    X11Root();
    ~X11Root() override;
    X11Root(const X11Root&) = delete;
    X11Root& operator=(const X11Root&) = delete;

    /// False on another display system.
    bool isAvailable() const { return m_connection != nullptr; }

    /// Reads a property of bytes. Empty if there is none, and if it has more than `maxSize` bytes.
    QByteArray property(const QByteArray& name, std::uint32_t maxSize) const;

    /// Calls `changed` whenever the property `name` has changed, and for no other.
    void watch(const QByteArray& name, std::function<void()> changed);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    std::uint32_t atom(const QByteArray& name) const;

    xcb_connection_t* m_connection = nullptr;
    std::uint32_t m_window = 0;
    std::uint32_t m_watched = 0;
    std::function<void()> m_changed;
};

} // namespace complexion

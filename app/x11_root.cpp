// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/x11_root.h"

#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <utility>

#include <xcb/xcb.h>

namespace complexion {

namespace {

struct Freed {
    void operator()(void* reply) const { std::free(reply); }
};

template <class Reply>
using Owned = std::unique_ptr<Reply, Freed>;

constexpr std::uint8_t kBytes = 8;           // the format of properties of bytes
constexpr std::uint8_t kSentByProgram = 128; // a flag in an event's type

} // namespace

X11Root::X11Root() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // The toolkit's off-screen platform has the interface, but no connection unless a display is there.
    if (!x11 || !x11->connection())
        return;
    m_connection = x11->connection();
    m_window = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    qGuiApp->installNativeEventFilter(this);
}

X11Root::~X11Root() {
    if (m_connection && qGuiApp)
        qGuiApp->removeNativeEventFilter(this);
}

std::uint32_t X11Root::atom(const QByteArray& name) const {
    const auto request =
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, request, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

QByteArray X11Root::property(const QByteArray& name, std::uint32_t maxSize) const {
    const auto request = xcb_get_property(m_connection, 0, m_window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0,
                                          maxSize / sizeof(std::uint32_t));
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection, request, nullptr));
    if (!reply || reply->format != kBytes || reply->bytes_after > 0)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

void X11Root::watch(const QByteArray& name, std::function<void()> changed) {
    m_watched = atom(name);
    m_changed = std::move(changed);
}

bool X11Root::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    // The toolkit has the root window's properties reported, for its own purposes.
    if (eventType != "xcb_generic_event_t" || !m_changed)
        return false;
    const auto* const event = static_cast<const xcb_property_notify_event_t*>(message);
    if ((event->response_type & ~kSentByProgram) == XCB_PROPERTY_NOTIFY && event->window == m_window &&
        event->atom == m_watched)
        m_changed();
    return false;
}

} // namespace complexion

// SPDX-License-Identifier: GPL-3.0-or-later
// The message is a text with a zero at its end, broadcast from a window of ours to the root window
// in pieces of 20 bytes, of which the first has a type of its own.
#include "platform/StartupNotification.h"

#include <QByteArray>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace quillabrae::platform {
namespace {

constexpr qsizetype pieceLength = sizeof(xcb_client_message_data_t::data8);

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

QByteArray removalOf(const QByteArray& id) {
    QByteArray quoted = id;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    return "remove: ID=\"" + quoted + '"' + '\0';
}

void broadcast(xcb_connection_t* connection, const QByteArray& text) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t sender = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, sender, screen->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, screen->root_visual, 0, nullptr);
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = sender;
    event.type = atom(connection, "_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t following = atom(connection, "_NET_STARTUP_INFO");
    for (qsizetype start = 0; start < text.size(); start += pieceLength) {
        const qsizetype length = std::min(pieceLength, text.size() - start);
        event.data = {};
        std::memcpy(event.data.data8, text.constData() + start, static_cast<std::size_t>(length));
        xcb_send_event(connection, 0, screen->root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&event));
        event.type = following;
    }
    xcb_destroy_window(connection, sender);
    xcb_flush(connection);
}

} // namespace

void endStartupNotification(const QByteArray& id) {
    // Other systems may have an X11 interface too, without a display behind it.
    if (id.isEmpty() || qGuiApp == nullptr || QGuiApplication::platformName() != u"xcb") return;
    const auto* system = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (system != nullptr) broadcast(system->connection(), removalOf(id));
}

} // namespace quillabrae::platform

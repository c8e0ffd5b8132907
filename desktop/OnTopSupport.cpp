// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/OnTopSupport.h"

#include "widgets/X11Atom.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <span>

namespace {

bool windowManagerSupports(xcb_connection_t *connection, const char *feature)
{
    constexpr uint32_t mostAtoms = 4096;
    const auto cookie =
        xcb_get_property(connection, 0, x11RootWindow(connection),
                         x11Atom(connection, "_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, mostAtoms);
    const X11Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr), &std::free);
    if (!reply)
        return false;
    const auto bytes = static_cast<size_t>(xcb_get_property_value_length(reply.get()));
    const std::span supported(static_cast<const xcb_atom_t *>(xcb_get_property_value(reply.get())),
                              bytes / sizeof(xcb_atom_t));
    return std::find(supported.begin(), supported.end(), x11Atom(connection, feature)) !=
           supported.end();
}

} // namespace

std::optional<bool> x11KeepsOnTop()
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return std::nullopt;
    return windowManagerSupports(connection.get(), "_NET_WM_STATE_ABOVE");
}

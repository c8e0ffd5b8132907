// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/OnTopSupport.h"

#include "widgets/X11Atom.h"

#include <memory>

std::optional<bool> x11KeepsOnTop()
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return std::nullopt;
    return x11ListsAtom(connection.get(), x11RootWindow(connection.get()), "_NET_SUPPORTED",
                        "_NET_WM_STATE_ABOVE");
}

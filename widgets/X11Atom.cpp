// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/X11Atom.h"

#include <algorithm>
#include <cstring>
#include <span>

xcb_atom_t x11Atom(xcb_connection_t *connection, const char *name)
{
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name);
    const X11Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

bool x11ListsAtom(xcb_connection_t *connection, xcb_window_t window, const char *property,
                  const char *name)
{
    constexpr uint32_t mostAtoms = 4096;
    const auto cookie = xcb_get_property(connection, 0, window, x11Atom(connection, property),
                                         XCB_ATOM_ATOM, 0, mostAtoms);
    const X11Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr), &std::free);
    if (!reply)
        return false;
    const auto bytes = static_cast<size_t>(xcb_get_property_value_length(reply.get()));
    const std::span atoms(static_cast<const xcb_atom_t *>(xcb_get_property_value(reply.get())),
                          bytes / sizeof(xcb_atom_t));
    return std::find(atoms.begin(), atoms.end(), x11Atom(connection, name)) != atoms.end();
}

xcb_window_t x11RootWindow(xcb_connection_t *connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

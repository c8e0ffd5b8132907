// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

template <typename Reply> using X11Reply = std::unique_ptr<Reply, decltype(&std::free)>;

/// Asks the server, one round trip; XCB_ATOM_NONE when the connection is gone.
xcb_atom_t x11Atom(xcb_connection_t *connection, const char *name);

/// Whether a property of @p window that is a list of atoms has the one called @p name; false when
/// the connection is gone. Three round trips.
bool x11ListsAtom(xcb_connection_t *connection, xcb_window_t window, const char *property,
                  const char *name);

xcb_window_t x11RootWindow(xcb_connection_t *connection);

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <gio/gio.h>
#include <memory>

struct GObjectUnref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// Holds one reference.
template <typename Object> using GObjectPointer = std::unique_ptr<Object, GObjectUnref>;

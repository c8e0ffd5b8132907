// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <initializer_list>
#include <vector>
#include <wayland-client-core.h>

/// To the compositor of WAYLAND_DISPLAY, for as long as one question takes: a connection of its
/// own, which needs no application object. What was bound ends with it.
class CompositorConnection
{
public:
    /// A round trip.
    /// @param wanted is bound in its first version, as far as there is such a thing; must outlive
    /// the object
    explicit CompositorConnection(std::initializer_list<const wl_interface *> wanted);
    ~CompositorConnection();
    CompositorConnection(const CompositorConnection &) = delete;
    CompositorConnection &operator=(const CompositorConnection &) = delete;

    /// Null where the compositor has none, or there is no compositor.
    wl_proxy *bound(const wl_interface &interface) const;
    /// Until all that was asked is answered.
    void waitForAnswers() const;

private:
    struct Bound
    {
        const wl_interface *interface;
        wl_proxy *proxy;
    };
    struct Events;

    wl_display *m_display = nullptr;
    std::vector<Bound> m_bound;
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/CompositorConnection.h"

#include <QtGlobal>
#include <algorithm>
#include <string_view>
#include <wayland-client-protocol.h>

struct CompositorConnection::Events
{
    static void global(void *context, wl_registry *registry, uint32_t name, const char *interface,
                       uint32_t)
    {
        for (Bound &each : static_cast<CompositorConnection *>(context)->m_bound) {
            // The first of several seats does.
            if (each.proxy == nullptr && std::string_view(each.interface->name) == interface)
                each.proxy =
                    static_cast<wl_proxy *>(wl_registry_bind(registry, name, each.interface, 1));
        }
    }

    static void globalRemove(void *, wl_registry *, uint32_t) {}
};

CompositorConnection::CompositorConnection(std::initializer_list<const wl_interface *> wanted)
{
    static constexpr wl_registry_listener registryEvents{.global = &Events::global,
                                                         .global_remove = &Events::globalRemove};
    for (const wl_interface *interface : wanted)
        m_bound.push_back({.interface = interface, .proxy = nullptr});
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return;
    m_display = wl_display_connect(nullptr);
    if (m_display == nullptr)
        return;
    wl_registry *registry = wl_display_get_registry(m_display);
    wl_registry_add_listener(registry, &registryEvents, this);
    waitForAnswers();
    wl_registry_destroy(registry);
}

CompositorConnection::~CompositorConnection()
{
    for (const Bound &each : m_bound) {
        if (each.proxy != nullptr)
            wl_proxy_destroy(each.proxy);
    }
    if (m_display != nullptr)
        wl_display_disconnect(m_display);
}

wl_proxy *CompositorConnection::bound(const wl_interface &interface) const
{
    const auto found = std::find_if(m_bound.begin(), m_bound.end(), [&](const Bound &each) {
        return each.interface == &interface;
    });
    return found == m_bound.end() ? nullptr : found->proxy;
}

void CompositorConnection::waitForAnswers() const
{
    wl_display_roundtrip(m_display);
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/ActivationToken.h"

#include <array>
#include <memory>
#include <string_view>
#include <wayland-client-core.h>
#include <wayland-client-protocol.h>

namespace {

constexpr uint32_t activationVersion = 1;
constexpr auto activationName = "xdg_activation_v1";

/// Places in the lists of requests.
constexpr uint32_t getToken = 1;
constexpr uint32_t setApplicationId = 1;
constexpr uint32_t commitToken = 3;

extern const wl_interface tokenInterface;

std::array<const wl_interface *, 2> noObjects{nullptr, nullptr};
std::array<const wl_interface *, 2> ofSerial{nullptr, &wl_seat_interface};
std::array<const wl_interface *, 1> ofSurface{&wl_surface_interface};
std::array<const wl_interface *, 1> ofToken{&tokenInterface};
std::array<const wl_interface *, 2> ofActivation{nullptr, &wl_surface_interface};

const std::array<wl_message, 5> tokenRequests{{{"set_serial", "uo", ofSerial.data()},
                                               {"set_app_id", "s", noObjects.data()},
                                               {"set_surface", "o", ofSurface.data()},
                                               {"commit", "", noObjects.data()},
                                               {"destroy", "", noObjects.data()}}};
const std::array<wl_message, 1> tokenMessages{{{"done", "s", noObjects.data()}}};
const std::array<wl_message, 3> activationRequests{{{"destroy", "", noObjects.data()},
                                                    {"get_activation_token", "n", ofToken.data()},
                                                    {"activate", "so", ofActivation.data()}}};

const wl_interface tokenInterface{.name = "xdg_activation_token_v1",
                                  .version = 1,
                                  .method_count = int(tokenRequests.size()),
                                  .methods = tokenRequests.data(),
                                  .event_count = int(tokenMessages.size()),
                                  .events = tokenMessages.data()};
const wl_interface activationInterface{.name = activationName,
                                       .version = 1,
                                       .method_count = int(activationRequests.size()),
                                       .methods = activationRequests.data(),
                                       .event_count = 0,
                                       .events = nullptr};

/// In the order of the events; the library takes them as a list of functions.
struct TokenEvents
{
    void (*done)(void *context, wl_proxy *token, const char *text);
};

void bindActivation(void *context, wl_registry *registry, uint32_t name, const char *interface,
                    uint32_t)
{
    if (std::string_view(interface) == activationName)
        *static_cast<wl_proxy **>(context) = static_cast<wl_proxy *>(
            wl_registry_bind(registry, name, &activationInterface, activationVersion));
}

void ignoreRemoval(void *, wl_registry *, uint32_t) {}

void takeToken(void *context, wl_proxy *, const char *text)
{
    *static_cast<QString *>(context) = QString::fromUtf8(text);
}

} // namespace

QString requestActivationToken(const QString &applicationId)
{
    static constexpr wl_registry_listener registryEvents{.global = &bindActivation,
                                                         .global_remove = &ignoreRemoval};
    static TokenEvents tokenEvents{.done = &takeToken};
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return {};
    // What is made on it ends with it.
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
        wl_display_connect(nullptr), &wl_display_disconnect);
    if (!display)
        return {};
    wl_proxy *activation = nullptr;
    wl_registry *registry = wl_display_get_registry(display.get());
    wl_registry_add_listener(registry, &registryEvents, static_cast<void *>(&activation));
    wl_display_roundtrip(display.get());
    wl_registry_destroy(registry);
    if (activation == nullptr)
        return {};
    QString text;
    wl_proxy *token = wl_proxy_marshal_flags(activation, getToken, &tokenInterface,
                                             activationVersion, 0, nullptr);
    wl_proxy_add_listener(token, reinterpret_cast<void (**)()>(&tokenEvents), &text);
    wl_proxy_marshal_flags(token, setApplicationId, nullptr, activationVersion, 0,
                           qUtf8Printable(applicationId));
    wl_proxy_marshal_flags(token, commitToken, nullptr, activationVersion, 0);
    wl_display_roundtrip(display.get());
    wl_proxy_destroy(token);
    wl_proxy_destroy(activation);
    return text;
}

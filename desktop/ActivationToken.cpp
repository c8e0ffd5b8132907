// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/ActivationToken.h"

#include "desktop/CompositorConnection.h"

#include <array>
#include <wayland-client-protocol.h>

namespace {

constexpr uint32_t activationVersion = 1;

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
const wl_interface activationInterface{.name = "xdg_activation_v1",
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

void takeToken(void *context, wl_proxy *, const char *text)
{
    *static_cast<QString *>(context) = QString::fromUtf8(text);
}

} // namespace

QString requestActivationToken(const QString &applicationId)
{
    static TokenEvents tokenEvents{.done = &takeToken};
    const CompositorConnection compositor({&activationInterface});
    wl_proxy *activation = compositor.bound(activationInterface);
    if (activation == nullptr)
        return {};
    QString text;
    wl_proxy *token = wl_proxy_marshal_flags(activation, getToken, &tokenInterface,
                                             activationVersion, 0, nullptr);
    wl_proxy_add_listener(token, reinterpret_cast<void (**)()>(&tokenEvents), &text);
    wl_proxy_marshal_flags(token, setApplicationId, nullptr, activationVersion, 0,
                           qUtf8Printable(applicationId));
    wl_proxy_marshal_flags(token, commitToken, nullptr, activationVersion, 0);
    compositor.waitForAnswers();
    wl_proxy_destroy(token);
    return text;
}

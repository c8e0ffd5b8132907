// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/TaskBarRequest.h"

#include "desktop/CompositorConnection.h"

#include <QByteArray>
#include <array>
#include <vector>
#include <wayland-client-protocol.h>

namespace {

/// Place in the list of a window's requests.
constexpr uint32_t activate = 4;

extern const wl_interface listedWindow;

std::array<const wl_interface *, 5> plainThings{};
std::array<const wl_interface *, 1> ofListedWindow{&listedWindow};
std::array<const wl_interface *, 1> ofFocus{&wl_seat_interface};
std::array<const wl_interface *, 5> ofButton{&wl_surface_interface};
std::array<const wl_interface *, 1> ofOutput{&wl_output_interface};

const std::array<wl_message, 8> windowRequests{{{"set_maximized", "", plainThings.data()},
                                                {"unset_maximized", "", plainThings.data()},
                                                {"set_minimized", "", plainThings.data()},
                                                {"unset_minimized", "", plainThings.data()},
                                                {"activate", "o", ofFocus.data()},
                                                {"close", "", plainThings.data()},
                                                {"set_rectangle", "oiiii", ofButton.data()},
                                                {"destroy", "", plainThings.data()}}};
const std::array<wl_message, 7> windowMessages{{{"title", "s", plainThings.data()},
                                                {"app_id", "s", plainThings.data()},
                                                {"output_enter", "o", ofOutput.data()},
                                                {"output_leave", "o", ofOutput.data()},
                                                {"state", "a", plainThings.data()},
                                                {"done", "", plainThings.data()},
                                                {"closed", "", plainThings.data()}}};
const std::array<wl_message, 1> listRequests{{{"stop", "", plainThings.data()}}};
const std::array<wl_message, 2> listMessages{
    {{"toplevel", "n", ofListedWindow.data()}, {"finished", "", plainThings.data()}}};

const wl_interface listedWindow{.name = "zwlr_foreign_toplevel_handle_v1",
                                .version = 1,
                                .method_count = int(windowRequests.size()),
                                .methods = windowRequests.data(),
                                .event_count = int(windowMessages.size()),
                                .events = windowMessages.data()};
const wl_interface windowList{.name = "zwlr_foreign_toplevel_manager_v1",
                              .version = 1,
                              .method_count = int(listRequests.size()),
                              .methods = listRequests.data(),
                              .event_count = int(listMessages.size()),
                              .events = listMessages.data()};

/// What the compositor lists; the context of all its messages.
struct Windows
{
    QByteArray wanted;
    std::vector<wl_proxy *> all;
    std::vector<wl_proxy *> found;
};

/// In the order of the messages; the library takes them as a list of functions.
struct WindowEvents
{
    void (*title)(void *context, wl_proxy *window, const char *text);
    void (*applicationId)(void *context, wl_proxy *window, const char *text);
    void (*outputEnter)(void *context, wl_proxy *window, wl_output *output);
    void (*outputLeave)(void *context, wl_proxy *window, wl_output *output);
    void (*state)(void *context, wl_proxy *window, wl_array *states);
    void (*done)(void *context, wl_proxy *window);
    void (*closed)(void *context, wl_proxy *window);
};
struct ListEvents
{
    void (*window)(void *context, wl_proxy *list, wl_proxy *window);
    void (*finished)(void *context, wl_proxy *list);
};

void ignoreTitle(void *, wl_proxy *, const char *) {}
void ignoreOutput(void *, wl_proxy *, wl_output *) {}
void ignoreState(void *, wl_proxy *, wl_array *) {}
void ignore(void *, wl_proxy *) {}

void takeApplicationId(void *context, wl_proxy *window, const char *text)
{
    auto &windows = *static_cast<Windows *>(context);
    if (windows.wanted == text)
        windows.found.push_back(window);
}

void takeWindow(void *context, wl_proxy *, wl_proxy *window)
{
    static WindowEvents events{.title = &ignoreTitle,
                               .applicationId = &takeApplicationId,
                               .outputEnter = &ignoreOutput,
                               .outputLeave = &ignoreOutput,
                               .state = &ignoreState,
                               .done = &ignore,
                               .closed = &ignore};
    static_cast<Windows *>(context)->all.push_back(window);
    wl_proxy_add_listener(window, reinterpret_cast<void (**)()>(&events), context);
}

} // namespace

void raiseAsTaskBar(const QString &applicationId)
{
    static ListEvents events{.window = &takeWindow, .finished = &ignore};
    const CompositorConnection compositor({&windowList, &wl_seat_interface});
    wl_proxy *list = compositor.bound(windowList);
    wl_proxy *seat = compositor.bound(wl_seat_interface);
    if (list == nullptr || seat == nullptr)
        return;
    Windows windows{.wanted = applicationId.toUtf8(), .all = {}, .found = {}};
    wl_proxy_add_listener(list, reinterpret_cast<void (**)()>(&events), &windows);
    compositor.waitForAnswers();
    // The newest is listed first. Dialogs came later than their window, and stay above it.
    for (auto window = windows.found.rbegin(); window != windows.found.rend(); ++window)
        wl_proxy_marshal_flags(*window, activate, nullptr, 1, 0, seat);
    compositor.waitForAnswers();
    for (wl_proxy *window : windows.all)
        wl_proxy_destroy(window);
}

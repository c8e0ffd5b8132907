// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// A Wayland compositor of nothing but a seat and a clipboard (wlr-data-control), which takes the
// clipboard's control away when it is told to: no desktop does so at will.
//
//   clipboard-compositor NAME      NAME: of its socket, in XDG_RUNTIME_DIR
//
// Standard input has a command on each line, standard output the answer to each:
//
//   paste       the text on the clipboard
//   finish      ends the control that clients have; they may ask for another one
//   withdraw    the same, and offers none any more
//
// Ends with its input.

#include "desktop/DataControlProtocol.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <memory>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>
#include <wayland-server-core.h>
#include <wayland-server-protocol.h>

namespace {

/// Places in the lists of events.
constexpr uint32_t sourceSend = 0;
constexpr uint32_t sourceCancelled = 1;
constexpr uint32_t deviceFinished = 2;

class ClipboardCompositor
{
public:
    ClipboardCompositor()
        : m_display(wl_display_create(), &wl_display_destroy)
    {
        wl_global_create(m_display.get(), &wl_seat_interface, 1, this, &bindSeat);
        m_offer = wl_global_create(m_display.get(), &m_protocol.manager(), 1, this, &bindManager);
        m_commands =
            wl_event_loop_add_fd(loop(), STDIN_FILENO, WL_EVENT_READABLE, &takeCommand, this);
    }
    ~ClipboardCompositor()
    {
        wl_event_source_remove(m_commands);
        wl_display_destroy_clients(m_display.get());
    }
    ClipboardCompositor(const ClipboardCompositor &) = delete;
    ClipboardCompositor &operator=(const ClipboardCompositor &) = delete;

    bool listenAt(const char *name) { return wl_display_add_socket(m_display.get(), name) == 0; }
    void run() { wl_display_run(m_display.get()); }

private:
    static ClipboardCompositor &of(void *context)
    {
        return *static_cast<ClipboardCompositor *>(context);
    }
    static ClipboardCompositor &of(wl_resource *resource)
    {
        return of(wl_resource_get_user_data(resource));
    }
    wl_event_loop *loop() { return wl_display_get_event_loop(m_display.get()); }

    wl_resource *make(wl_client *client, const wl_interface &interface, uint32_t id,
                      wl_dispatcher_func_t requests, wl_resource_destroy_func_t gone = nullptr)
    {
        wl_resource *resource = wl_resource_create(client, &interface, 1, id);
        wl_resource_set_dispatcher(resource, requests, nullptr, this, gone);
        return resource;
    }

    static void bindSeat(wl_client *client, void *context, uint32_t, uint32_t id)
    {
        of(context).make(client, wl_seat_interface, id, &ignore);
    }

    static void bindManager(wl_client *client, void *context, uint32_t, uint32_t id)
    {
        ClipboardCompositor &self = of(context);
        self.make(client, self.m_protocol.manager(), id, &takeManagerRequest);
    }

    static int ignore(const void *, void *, uint32_t, const wl_message *, wl_argument *)
    {
        return 0;
    }

    static int takeManagerRequest(const void *, void *target, uint32_t request, const wl_message *,
                                  wl_argument *arguments)
    {
        auto *manager = static_cast<wl_resource *>(target);
        wl_client *client = wl_resource_get_client(manager);
        ClipboardCompositor &self = of(manager);
        if (request == DataControlProtocol::ManagerRequest::createSource)
            self.make(client, self.m_protocol.source(), arguments[0].n, &takeSourceRequest,
                      &forgetSource);
        else if (request == DataControlProtocol::ManagerRequest::getDevice)
            self.m_devices.push_back(self.make(client, self.m_protocol.device(), arguments[0].n,
                                               &takeDeviceRequest, &forgetDevice));
        else
            wl_resource_destroy(manager);
        return 0;
    }

    static int takeDeviceRequest(const void *, void *target, uint32_t request, const wl_message *,
                                 wl_argument *arguments)
    {
        auto *device = static_cast<wl_resource *>(target);
        ClipboardCompositor &self = of(device);
        if (request == DataControlProtocol::DeviceRequest::destroy)
            wl_resource_destroy(device);
        // What has been finished does nothing more.
        else if (std::count(self.m_devices.begin(), self.m_devices.end(), device) > 0)
            self.select(reinterpret_cast<wl_resource *>(arguments[0].o));
        return 0;
    }

    static int takeSourceRequest(const void *, void *target, uint32_t request, const wl_message *,
                                 wl_argument *)
    {
        if (request == DataControlProtocol::SourceRequest::destroy)
            wl_resource_destroy(static_cast<wl_resource *>(target));
        return 0;
    }

    static void forgetSource(wl_resource *source)
    {
        if (of(source).m_selection == source)
            of(source).m_selection = nullptr;
    }

    static void forgetDevice(wl_resource *device) { std::erase(of(device).m_devices, device); }

    void select(wl_resource *source)
    {
        if (m_selection != nullptr)
            wl_resource_post_event(m_selection, sourceCancelled);
        m_selection = source;
    }

    static int takeCommand(int, uint32_t, void *context)
    {
        ClipboardCompositor &self = of(context);
        std::string command;
        if (!std::getline(std::cin, command))
            wl_display_terminate(self.m_display.get());
        else if (command == "paste")
            self.paste();
        else
            self.end(command == "withdraw");
        return 0;
    }

    static void answer(const std::string &text)
    {
        std::puts(text.c_str());
        std::fflush(stdout);
    }

    void paste()
    {
        std::array<int, 2> pipe{};
        if (m_selection == nullptr || pipe2(pipe.data(), O_CLOEXEC) != 0) {
            answer({});
            return;
        }
        wl_resource_post_event(m_selection, sourceSend, "text/plain", pipe[1]);
        close(pipe[1]);
        m_pasted.clear();
        m_reading = wl_event_loop_add_fd(loop(), pipe[0], WL_EVENT_READABLE, &takePasted, this);
    }

    static int takePasted(int descriptor, uint32_t, void *context)
    {
        ClipboardCompositor &self = of(context);
        std::array<char, 256> bytes{};
        const ssize_t length = read(descriptor, bytes.data(), bytes.size());
        if (length > 0) {
            self.m_pasted.append(bytes.data(), static_cast<size_t>(length));
            return 0;
        }
        wl_event_source_remove(self.m_reading);
        close(descriptor);
        answer(self.m_pasted);
        return 0;
    }

    void end(bool forGood)
    {
        for (wl_resource *device : std::exchange(m_devices, {}))
            wl_resource_post_event(device, deviceFinished);
        m_selection = nullptr;
        if (forGood)
            wl_global_destroy(std::exchange(m_offer, nullptr));
        answer("ended");
    }

    std::unique_ptr<wl_display, decltype(&wl_display_destroy)> m_display;
    const DataControlProtocol &m_protocol =
        *DataControlProtocol::ofManager("zwlr_data_control_manager_v1");
    wl_global *m_offer = nullptr;
    std::vector<wl_resource *> m_devices;
    wl_resource *m_selection = nullptr;
    wl_event_source *m_commands = nullptr;
    wl_event_source *m_reading = nullptr; ///< of what is just pasted
    std::string m_pasted;
};

} // namespace

int main(int argc, char **argv)
{
    ClipboardCompositor compositor;
    if (argc != 2 || !compositor.listenAt(argv[1]))
        return 1;
    compositor.run();
    return 0;
}

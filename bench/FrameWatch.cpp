// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Sees windows as the X server shows them, without polling: the server reports each drawing.
//
//   frame-watch start COMMAND...   prints the milliseconds from the start of the command to the
//                                  first frame in its window, and its process id; ends it when
//                                  the standard input ends
//   frame-watch window ID          prints the time of the monotonic clock, in nanoseconds, of each
//                                  frame that differs from the one before, once it is grabbed
//   frame-watch window next        the same of the window that is created next, from the first
//                                  frame that the program has drawn

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int nanosecondsPerMillisecond = 1'000'000;

/// Narrower ones are helpers, a clipboard's for instance.
constexpr std::uint16_t narrowestMainWindow = 100;

struct Free
{
    void operator()(void *memory) const { std::free(memory); }
};
template <typename Reply> using Owned = std::unique_ptr<Reply, Free>;

std::int64_t now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

class Display
{
public:
    Display()
        : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection) != 0)
            throw std::runtime_error("no X server");
        const xcb_query_extension_reply_t *extension =
            xcb_get_extension_data(m_connection, &xcb_damage_id);
        if (extension == nullptr || extension->present == 0)
            throw std::runtime_error("the X server does not report damage");
        m_damageEvent = static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
        const auto version = xcb_damage_query_version(m_connection, 1, 1);
        const Owned<xcb_damage_query_version_reply_t> reply(
            xcb_damage_query_version_reply(m_connection, version, nullptr));
    }

    ~Display() { xcb_disconnect(m_connection); }
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    xcb_window_t root() const
    {
        return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }

    /// Takes effect before this returns.
    void reportCreations() const
    {
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection, root(), XCB_CW_EVENT_MASK, &mask);
        const Owned<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

    void reportDamage(xcb_window_t window) const
    {
        xcb_damage_create(m_connection, xcb_generate_id(m_connection), window,
                          XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        xcb_flush(m_connection);
    }

    Owned<xcb_generic_event_t> nextEvent() const
    {
        return Owned<xcb_generic_event_t>(xcb_wait_for_event(m_connection));
    }

    const xcb_damage_notify_event_t *asDamage(const xcb_generic_event_t &event) const
    {
        if ((event.response_type & ~0x80) != m_damageEvent)
            return nullptr;
        return reinterpret_cast<const xcb_damage_notify_event_t *>(&event);
    }

    /// Empty where the window is gone.
    std::vector<std::uint8_t> grab(xcb_window_t window, const xcb_rectangle_t &area) const
    {
        const auto request = xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, area.x,
                                           area.y, area.width, area.height, ~std::uint32_t{0});
        const Owned<xcb_get_image_reply_t> reply(
            xcb_get_image_reply(m_connection, request, nullptr));
        if (!reply)
            return {};
        const std::uint8_t *pixels = xcb_get_image_data(reply.get());
        return {pixels, pixels + xcb_get_image_data_length(reply.get())};
    }

    xcb_rectangle_t size(xcb_window_t window) const
    {
        const Owned<xcb_get_geometry_reply_t> reply(
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
        if (!reply)
            throw std::runtime_error("no such window");
        return {.x = 0, .y = 0, .width = reply->width, .height = reply->height};
    }

private:
    xcb_connection_t *m_connection;
    std::uint8_t m_damageEvent = 0;
};

/// The server fills a new window with black; what is drawn in it is not black in its middle.
bool isPainted(const Display &display, xcb_window_t window)
{
    const xcb_rectangle_t size = display.size(window);
    const auto pixel = display.grab(window, {.x = static_cast<std::int16_t>(size.width / 2),
                                             .y = static_cast<std::int16_t>(size.height / 2),
                                             .width = 1,
                                             .height = 1});
    return pixel.size() >= 3 && (pixel[0] | pixel[1] | pixel[2]) != 0;
}

void waitForFirstFrame(const Display &display)
{
    while (const auto event = display.nextEvent()) {
        if ((event->response_type & ~0x80) == XCB_CREATE_NOTIFY) {
            const auto &created = reinterpret_cast<const xcb_create_notify_event_t &>(*event);
            if (created.width >= narrowestMainWindow)
                display.reportDamage(created.window);
        } else if (const auto *damage = display.asDamage(*event)) {
            if (isPainted(display, damage->drawable))
                return;
        }
    }
    throw std::runtime_error("the X server is gone");
}

int start(char *const command[])
{
    const Display display;
    display.reportCreations();
    const std::int64_t started = now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(command[0], command);
        _exit(127);
    }
    waitForFirstFrame(display);
    const std::int64_t taken = now() - started;
    std::printf("%.3f %d\n", static_cast<double>(taken) / nanosecondsPerMillisecond, child);
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    return 0;
}

xcb_window_t nextWindow(const Display &display)
{
    while (const auto event = display.nextEvent()) {
        const auto &created = reinterpret_cast<const xcb_create_notify_event_t &>(*event);
        if ((event->response_type & ~0x80) == XCB_CREATE_NOTIFY &&
            created.width >= narrowestMainWindow)
            return created.window;
    }
    throw std::runtime_error("the X server is gone");
}

[[noreturn]] void watch(const Display &display, xcb_window_t window, bool isDrawn)
{
    display.reportDamage(window);
    std::vector<std::uint8_t> shown;
    if (isDrawn)
        shown = display.grab(window, display.size(window));
    std::puts("ready");
    std::fflush(stdout);
    while (const auto event = display.nextEvent()) {
        if (display.asDamage(*event) == nullptr)
            continue;
        std::vector<std::uint8_t> frame = display.grab(window, display.size(window));
        isDrawn = isDrawn || isPainted(display, window);
        if (frame == shown || !isDrawn)
            continue;
        std::printf("%lld\n", static_cast<long long>(now()));
        std::fflush(stdout);
        shown = std::move(frame);
    }
    throw std::runtime_error("the X server is gone");
}

[[noreturn]] void watchNext()
{
    const Display display;
    display.reportCreations();
    std::puts("waiting");
    std::fflush(stdout);
    watch(display, nextWindow(display), false);
}

} // namespace

int main(int argc, char *argv[])
{
    const std::string_view mode = argc > 2 ? argv[1] : "";
    try {
        if (mode == "start")
            return start(argv + 2);
        if (mode == "window" && std::string_view(argv[2]) == "next")
            watchNext();
        if (mode == "window")
            watch(Display(), static_cast<xcb_window_t>(std::strtoul(argv[2], nullptr, 0)), true);
    } catch (const std::runtime_error &problem) {
        std::fprintf(stderr, "frame-watch: %s\n", problem.what());
        return 1;
    }
    std::fputs("usage: frame-watch start COMMAND... | frame-watch window ID|next\n", stderr);
    return 2;
}

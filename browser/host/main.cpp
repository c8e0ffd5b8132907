// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The native-messaging host: the browser starts it and speaks to it over its standard streams, and
// it passes every byte on to the program's socket and back. Both sides frame their messages alike,
// so it need not understand them. It ends when either side does; the extension then starts another.

#include "browser/host/BytePump.h"
#include "browser/link/BrowserSocketName.h"
#include "sockets/SameUser.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

constexpr auto retryInterval = 1s;

std::string socketPath()
{
    const char *folder = std::getenv("XDG_RUNTIME_DIR");
    return folder == nullptr ? std::string() : std::string(folder) + "/" + browserSocketName;
}

/// -1 while the program does not run, or takes nobody in.
int connectToProgram(const std::string &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path)
        return -1;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    // Non-blocking: at a program that hangs, and takes nobody in, connecting would wait for as long
    // as it hangs, and the browser's end would pass unnoticed.
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    // Where the folder is not the user's alone, a stranger may listen there; what is said on this
    // socket is written into the user's pages.
    if (connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
        isOfSameUser(descriptor))
        return descriptor;
    close(descriptor);
    return -1;
}

enum class Browser { Present, Gone };

/// The extension speaks only when spoken to, so all that can happen here is that it goes.
Browser waitForBrowserToGo(std::chrono::milliseconds time)
{
    pollfd input{.fd = STDIN_FILENO, .events = 0, .revents = 0};
    return poll(&input, 1, static_cast<int>(time.count())) > 0 ? Browser::Gone : Browser::Present;
}

} // namespace

int main()
{
    std::signal(SIGPIPE, SIG_IGN);
    const std::string path = socketPath();
    int program = connectToProgram(path);
    while (program < 0) {
        if (waitForBrowserToGo(retryInterval) == Browser::Gone)
            return 0;
        program = connectToProgram(path);
    }
    BytePump fromBrowser(STDIN_FILENO, program);
    BytePump fromProgram(program, STDOUT_FILENO);
    while (pumpBoth(fromBrowser, fromProgram) == BytePump::State::Open) {
    }
    return 0;
}

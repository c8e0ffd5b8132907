// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/system/gadget/BusCommands.h"

#include <cstdio>
#include <exception>
#include <glib.h>

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fputs("Usage: postal-scale-gadget SOCKET\n", stderr);
        return 2;
    }
    try {
        Bus bus;
        const CommandServer server(argv[1], [&bus](const std::string &line, const auto &reply) {
            runBusCommand(bus, line, reply);
        });
        std::puts("ready");
        std::fflush(stdout);
        g_main_loop_run(g_main_loop_new(nullptr, FALSE));
    } catch (const std::exception &problem) {
        std::fprintf(stderr, "postal-scale-gadget: %s\n", problem.what());
        return 1;
    }
}

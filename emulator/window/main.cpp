// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/window/ControlWindow.h"

#include <QApplication>
#include <cstdio>
#include <exception>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("Usage: postal-scale-emulator-window SOCKET\n", stderr);
        return 2;
    }
    try {
        ControlWindow window(argv[1]);
        window.show();
        return QApplication::exec();
    } catch (const std::exception &problem) {
        std::fprintf(stderr, "postal-scale-emulator-window: %s\n", problem.what());
        return 1;
    }
}

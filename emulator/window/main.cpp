// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/window/ControlWindow.h"

#include <QApplication>
#include <QScreen>
#include <cstdio>
#include <exception>

namespace {

/// The program's window as designed, with its frame; the demonstration has it in the left upper
/// corner.
constexpr QSize programWindow(912, 460);

/// Right of it; under it where the screen is too narrow.
QPoint placeBesideProgram(QSize own)
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    if (programWindow.width() + own.width() <= screen.width())
        return screen.topLeft() + QPoint(programWindow.width(), 0);
    return screen.topLeft() + QPoint(0, programWindow.height());
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("Usage: postal-scale-emulator-window SOCKET\n", stderr);
        return 2;
    }
    try {
        ControlWindow window(argv[1]);
        window.adjustSize();
        window.move(placeBesideProgram(window.sizeHint()));
        window.show();
        return QApplication::exec();
    } catch (const std::exception &problem) {
        std::fprintf(stderr, "postal-scale-emulator-window: %s\n", problem.what());
        return 1;
    }
}

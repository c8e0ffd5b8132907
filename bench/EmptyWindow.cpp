// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The least that a window of this toolkit costs.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(900, 424);
    window.show();
    return QApplication::exec();
}

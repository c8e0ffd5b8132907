// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The program's own window file with stock widgets in the place of its own, and nothing behind.

#include "ui_StockWidgets.h"

#include <QApplication>
#include <QMainWindow>
#include <QStatusBar>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    Ui::MainWindow form;
    form.setupUi(&window);
    window.statusBar();
    window.show();
    return QApplication::exec();
}

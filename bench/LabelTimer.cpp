// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The least that a poll could cost: a timer of the same interval that sets a label's text, "same"
// to the same each time or "new" to another one.

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <chrono>

using namespace std::chrono_literals;

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const bool changes = QApplication::arguments().value(1) == QLatin1String("new");
    QLabel label;
    label.resize(200, 50);
    label.show();
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    int ticks = 0;
    QObject::connect(&timer, &QTimer::timeout, &label, [&] {
        ++ticks;
        label.setText(QString::number(changes ? 1000 + ticks % 1000 : 1234));
    });
    timer.start(400ms);
    return QApplication::exec();
}

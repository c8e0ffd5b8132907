// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Fills the page that is open in the linked browser as the program does, and measures how long each
// reading holds the thread: the calls themselves and what they leave for the event loop.
//
//   browser-fill-timer CARRIER READINGS INTERVAL_MS
//
// Begins with the line "ready" once a page is open, and then prints a line for each reading: the
// milliseconds that it holds the thread, less those in which the machine gave it no processor, and
// when it began, in milliseconds since 1970.

#include "browser/link/BrowserLink.h"
#include "tests/browser/CarrierFill.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>
#include <QTimer>
#include <chrono>
#include <cstdio>

namespace {

/// Nanoseconds in which this thread, so far, could have run and was given no processor. That is the
/// machine's affair: what is to be measured is what a reading waits for.
qint64 nanosecondsWithoutProcessor()
{
    QFile statistics(QStringLiteral("/proc/self/schedstat"));
    if (!statistics.open(QIODevice::ReadOnly))
        return 0;
    return statistics.readAll().split(' ').value(1).toLongLong();
}

double millisecondsOfReading(BrowserLink &link, const QString &carrier)
{
    const qint64 before = nanosecondsWithoutProcessor();
    QElapsedTimer time;
    time.start();
    fillCarrier(carrier, *link.application());
    QCoreApplication::sendPostedEvents();
    const qint64 elapsed = time.nsecsElapsed();
    return static_cast<double>(elapsed - (nanosecondsWithoutProcessor() - before)) / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    QLoggingCategory::setFilterRules(QStringLiteral("postalscale*=false"));
    BrowserLink link;
    if (!link.listenAt(BrowserServer::defaultPath()))
        return 1;
    waitForPage(link);
    std::puts("ready");
    std::fflush(stdout);

    int left = arguments[2].toInt();
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &application, [&] {
        const std::chrono::duration<double, std::milli> start =
            std::chrono::system_clock::now().time_since_epoch();
        std::printf("%.3f %.3f\n", millisecondsOfReading(link, arguments[1]), start.count());
        if (--left == 0)
            QCoreApplication::quit();
    });
    timer.start(arguments[3].toInt());
    return QCoreApplication::exec();
}

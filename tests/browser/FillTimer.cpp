// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Fills the page that is open in the linked browser as the program does, and measures how long each
// reading holds the thread: the calls themselves and what they leave for the event loop.
//
//   browser-fill-timer CARRIER READINGS INTERVAL_MS
//
// Begins with the line "ready" once a page is open, and then prints the milliseconds of each
// reading, less those in which the machine gave it no processor.

#include "export/AutofillForm.h"
#include "export/BrowserLink.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>
#include <QTimer>
#include <cstdio>

namespace {

class Kilogram : public WeightTexts
{
public:
    QString pounds() const override { return QStringLiteral("2"); }
    QString ounces() const override { return QStringLiteral("4"); }
    QString exported() const override { return QStringLiteral("2.205"); }
    QString grams() const override { return QStringLiteral("1000"); }
};

void fill(const QString &carrier)
{
    const auto safari = BrowserBridge::application();
    const auto windows = safari->windows();
    const auto tab = windows.empty() ? nullptr : windows.front()->currentTab();
    const Kilogram weight;
    AutofillForm form(*safari, tab, weight);
    if (carrier == QLatin1String("UPS")) {
        form.assign(upsAssignments());
    } else if (carrier == QLatin1String("FedEx")) {
        form.assign(fedexAssignments());
    } else {
        form.assign(uspsAssignments());
        form.fillUspsRows();
    }
}

/// Nanoseconds in which this thread, so far, could have run and was given no processor. That is the
/// machine's affair: what is to be measured is what a reading waits for.
qint64 nanosecondsWithoutProcessor()
{
    QFile statistics(QStringLiteral("/proc/self/schedstat"));
    if (!statistics.open(QIODevice::ReadOnly))
        return 0;
    return statistics.readAll().split(' ').value(1).toLongLong();
}

double millisecondsOfReading(const QString &carrier)
{
    const qint64 before = nanosecondsWithoutProcessor();
    QElapsedTimer time;
    time.start();
    fill(carrier);
    QCoreApplication::sendPostedEvents();
    const qint64 elapsed = time.nsecsElapsed();
    return static_cast<double>(elapsed - (nanosecondsWithoutProcessor() - before)) / 1e6;
}

void waitForPage(const BrowserLink &link)
{
    while (!link.statusText().contains(QLatin1String("page open")))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
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
        std::printf("%.3f\n", millisecondsOfReading(arguments[1]));
        if (--left == 0)
            QCoreApplication::quit();
    });
    timer.start(arguments[3].toInt());
    return QCoreApplication::exec();
}

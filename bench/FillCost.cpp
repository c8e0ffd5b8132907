// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Fills the page that is open in the linked browser, by turns as the program does and as a bare
// client would: the same texts on the same connection, one after the other, each sent when the one
// before has been answered; all of them, whatever the page would have answered.
//
//   fill-cost CARRIER READINGS
//
// Begins with the line "ready" once a page is open. Then a line for each reading: the milliseconds
// that the program's fill holds the thread, those until its last answer is there, and those of the
// bare client.

#include "browser/link/BrowserFrame.h"
#include "browser/link/BrowserLink.h"
#include "browser/link/BrowserMessage.h"
#include "sockets/LocalSocket.h"
#include "tests/browser/CarrierFill.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <cstdio>
#include <poll.h>
#include <unistd.h>

namespace {

double milliseconds(const QElapsedTimer &time)
{
    return static_cast<double>(time.nsecsElapsed()) / 1e6;
}

class BareClient
{
public:
    BareClient(int socketDescriptor, std::uint32_t pageId)
        : m_descriptor(socketDescriptor)
        , m_page(pageId)
    {
    }

    void run(const FillPlan &plan)
    {
        for (const FillStep &step : plan.steps) {
            // Far from the numbers that the link gives its own.
            const QByteArray frame = browserFrame(browserPlanMessage(
                ++m_lastRun, m_page, {{{.text = step.text, .start = step.start}}}));
            if (::write(m_descriptor, frame.constData(), static_cast<std::size_t>(frame.size())) !=
                frame.size())
                qFatal("the browser is gone");
            while (!isAnswered()) {
            }
        }
    }

private:
    bool isAnswered()
    {
        char bytes[4096];
        pollfd waiting{.fd = m_descriptor, .events = POLLIN, .revents = 0};
        ::poll(&waiting, 1, -1);
        const ssize_t count = ::read(m_descriptor, bytes, sizeof bytes);
        if (count <= 0)
            qFatal("the browser is gone");
        m_reader.append(QByteArray(bytes, count));
        while (const auto json = m_reader.next()) {
            const auto message = parseBrowserMessage(*json);
            if (!message)
                continue;
            const auto *ran = std::get_if<BrowserRan>(&*message);
            if (ran != nullptr && ran->id == m_lastRun)
                return true;
        }
        return false;
    }

    int m_descriptor;
    std::uint32_t m_page;
    std::uint32_t m_lastRun = 1'000'000'000;
    BrowserFrameReader m_reader;
};

class Comparison
{
public:
    explicit Comparison(BrowserLink &browserLink)
        : m_link(browserLink)
    {
    }

    void compare(const QString &carrier)
    {
        auto *client = m_link.findChild<BrowserClient *>();
        QElapsedTimer time;
        time.start();
        fillCarrier(carrier, *m_link.application());
        QCoreApplication::sendPostedEvents();
        const double held = milliseconds(time);
        const std::uint32_t page = client->currentPage()->id;
        while (client->isAwaited(page))
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const double answered = milliseconds(time);

        BareClient bare(client->findChild<LocalSocket *>()->descriptor(), page);
        time.start();
        bare.run(carrierPlan(carrier));
        std::printf("%.3f %.3f %.3f\n", held, answered, milliseconds(time));
        std::fflush(stdout);
    }

private:
    BrowserLink &m_link;
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    QLoggingCategory::setFilterRules(QStringLiteral("postalscale*=false"));
    BrowserLink link;
    if (!link.listenAt(BrowserServer::defaultPath()))
        return 1;
    Comparison comparison(link);
    waitForPage(link);
    std::puts("ready");
    std::fflush(stdout);
    for (int left = arguments[2].toInt(); left > 0; --left)
        comparison.compare(arguments[1]);
    return 0;
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "sockets/LocalCall.h"
#include "sockets/LocalAddress.h"
#include "tests/sockets/SocketEnd.h"
#include "tests/support/TestClasses.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <csignal>
#include <memory>
#include <optional>
#include <sys/time.h>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace {

/// As good as for ever.
constexpr auto longTime = 20000ms;
/// Nothing is awaited.
constexpr auto noTime = 0ms;

void onAlarm(int) {}

/// A signal every few milliseconds, which ends every wait of the system's.
class Alarms
{
public:
    Alarms()
    {
        struct sigaction action = {};
        action.sa_handler = onAlarm;
        sigaction(SIGALRM, &action, &m_before);
        set(5000);
    }
    ~Alarms()
    {
        set(0);
        sigaction(SIGALRM, &m_before, nullptr);
    }
    Alarms(const Alarms &) = delete;
    Alarms &operator=(const Alarms &) = delete;

private:
    static void set(int microseconds)
    {
        const timeval interval{.tv_sec = 0, .tv_usec = microseconds};
        const itimerval timer{.it_interval = interval, .it_value = interval};
        setitimer(ITIMER_REAL, &timer, nullptr);
    }

    struct sigaction m_before = {};
};

} // namespace

/// The end that waits; the other is a plain socket.
class LocalCallTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(QStringLiteral("socket"));
        m_listener.emplace(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        QCOMPARE(LocalAddress(m_path).bind(m_listener->descriptor), 0);
        QCOMPARE(listen(m_listener->descriptor, 0), 0);
    }

    void aQuestionAndItsAnswer()
    {
        LocalCall call(m_path, noTime);
        QVERIFY(call.isConnected());
        SocketEnd answerer(accepted());
        call.send("question\n", noTime);
        QCOMPARE(answerer.hear(), "question\n");
        answerer.say("one\ntwo\nthr");
        QCOMPARE(call.line(noTime), "one\n");
        QCOMPARE(call.line(noTime), "two\n");
        QVERIFY(!call.line(noTime));
        QVERIFY(call.isConnected());
        answerer.say("ee\n");
        QCOMPARE(call.line(noTime), "three\n");
    }

    void theAnswerIsWaitedForHoweverManySignalsCome()
    {
        LocalCall call(m_path, noTime);
        SocketEnd answerer(accepted());
        const Alarms alarms;
        std::thread later([&] {
            std::this_thread::sleep_for(100ms);
            answerer.say("late\n");
        });
        const auto line = call.line(longTime);
        later.join();
        QCOMPARE(line, "late\n");
    }

    void waitingEnds()
    {
        LocalCall call(m_path, noTime);
        const SocketEnd silent(accepted());
        QElapsedTimer time;
        time.start();
        QVERIFY(!call.line(200ms));
        QVERIFY(time.elapsed() >= 200);
        QVERIFY(call.isConnected());
    }

    void whatWasSaidBeforeHangingUpIsHeard()
    {
        LocalCall call(m_path, noTime);
        SocketEnd answerer(accepted());
        answerer.say("one\ntwo\nhalf a li");
        answerer.hangUp();
        QCOMPARE(call.line(longTime), "one\n");
        QCOMPARE(call.line(longTime), "two\n");
        QVERIFY(!call.line(longTime));
        QVERIFY(!call.isConnected());
    }

    /// Without the signal that would end the program.
    void sendingNoticesThatTheOtherHasGone()
    {
        LocalCall call(m_path, noTime);
        SocketEnd(accepted()).hangUp();
        call.send("question\n", longTime);
        QVERIFY(!call.isConnected());
        QVERIFY(!call.line(longTime));
    }

    void oneThatTakesNothingInIsNotWaitedForLonger()
    {
        LocalCall call(m_path, noTime);
        const SocketEnd busy(accepted());
        call.send(QByteArray(10'000'000, 'x'), 100ms);
        QVERIFY(!call.isConnected());
    }

    void aLineWithoutAnEndIsGivenUp()
    {
        LocalCall call(m_path, noTime);
        SocketEnd answerer(accepted());
        QCOMPARE(answerer.say(QByteArray(LocalCall::longestLine + 1, 'x')),
                 LocalCall::longestLine + 1);
        QVERIFY(!call.line(longTime));
        QVERIFY(!call.isConnected());
    }

    void oneThatDoesNotListenIsNotWaitedFor()
    {
        m_listener->hangUp();
        QElapsedTimer time;
        time.start();
        QVERIFY(!LocalCall(m_path, longTime).isConnected());
        QVERIFY(!LocalCall(m_path, longTime).isBusy());
        QVERIFY(!LocalCall(m_folder->filePath(QStringLiteral("none")), longTime).isConnected());
        QVERIFY(!LocalCall(QString(), longTime).isConnected());
        QVERIFY(time.elapsed() < longTime.count());
    }

    void oneThatIsBusyIsWaitedFor()
    {
        std::vector<std::unique_ptr<LocalCall>> waiting;
        do
            waiting.push_back(std::make_unique<LocalCall>(m_path, noTime));
        while (waiting.back()->isConnected());
        QVERIFY(waiting.back()->isBusy());
        std::thread later([&] {
            std::this_thread::sleep_for(100ms);
            SocketEnd(accepted()).hangUp();
        });
        const LocalCall patient(m_path, longTime);
        later.join();
        QVERIFY(patient.isConnected());
        QVERIFY(!patient.isBusy());
    }

private:
    int accepted() { return accept(m_listener->descriptor, nullptr, nullptr); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::optional<SocketEnd> m_listener;
};

TEST_CLASS(LocalCallTest)
#include "LocalCallTest.moc"

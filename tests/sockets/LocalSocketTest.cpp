// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "sockets/LocalSocket.h"
#include "tests/sockets/SocketEnd.h"
#include "tests/support/TestClasses.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSignalSpy>
#include <memory>
#include <optional>

namespace {

/// More than the system takes at once.
QByteArray plenty()
{
    QByteArray bytes;
    for (int number = 0; bytes.size() < 1'000'000; ++number)
        bytes += QByteArray::number(number) + ' ';
    return bytes;
}

/// Whether the event loop waits, sooner or later.
bool comesToRest()
{
    int turns = 0;
    while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) {
        if (++turns > 100)
            return false;
    }
    return true;
}

} // namespace

/// One end of a connection on the event loop; the other is a plain socket.
class LocalSocketTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        std::array<int, 2> ends{};
        QCOMPARE(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
        m_socket = std::make_unique<LocalSocket>(ends[0]);
        m_peer.emplace(ends[1]);
        m_received.emplace(m_socket.get(), &LocalSocket::received);
        m_sent.emplace(m_socket.get(), &LocalSocket::sent);
        m_closed.emplace(m_socket.get(), &LocalSocket::closed);
    }

    void linesAndBytesComeAsTheyWereSaid()
    {
        m_peer->say("one\ntwo\nthr");
        QTRY_COMPARE(m_received->count(), 1);
        QCOMPARE(m_socket->bytesToRead(), 11);
        QVERIFY(m_socket->canReadLine());
        QCOMPARE(m_socket->readLine(), "one\n");
        QCOMPARE(m_socket->readLine(), "two\n");
        QVERIFY(!m_socket->canReadLine());
        m_peer->say(QByteArray("ee\0\n", 4));
        QTRY_VERIFY(m_socket->canReadLine());
        QCOMPARE(m_socket->readAll(), QByteArray("three\0\n", 7));
        QCOMPARE(m_socket->bytesToRead(), 0);
    }

    void whatFitsIsSentAtOnce()
    {
        m_socket->write("word");
        QCOMPARE(m_socket->bytesToWrite(), 0);
        QCOMPARE(m_peer->hear(), "word");
    }

    void whatDoesNotFitFollows()
    {
        const QByteArray all = plenty();
        m_socket->write(all);
        QVERIFY(m_socket->bytesToWrite() > 0);
        QVERIFY(m_socket->bytesToWrite() < all.size());
        m_socket->write("end");
        QByteArray heard;
        QTRY_VERIFY((heard += m_peer->hear()).endsWith("end"));
        QCOMPARE(heard, all + "end");
        QCOMPARE(m_socket->bytesToWrite(), 0);
        QTRY_COMPARE(m_sent->count(), 1);
    }

    /// Nothing keeps the loop awake meanwhile.
    void aPeerThatTakesNothingHoldsNothingUp()
    {
        m_socket->write(plenty());
        const qsizetype waiting = m_socket->bytesToWrite();
        QVERIFY(comesToRest());
        QCOMPARE(m_socket->bytesToWrite(), waiting);
        QVERIFY(m_socket->isConnected());
    }

    void aPeerThatSaysTooMuchWaits()
    {
        const QByteArray all = plenty();
        qsizetype said = 0;
        const auto sayMore = [&] {
            const qsizetype count = m_peer->say(all.mid(said));
            said += std::max<qsizetype>(count, 0);
            return count;
        };
        QTRY_COMPARE((sayMore(), m_socket->bytesToRead()), LocalSocket::mostReceived);
        while (sayMore() > 0)
            QCoreApplication::processEvents();
        QVERIFY(said < all.size());
        QCOMPARE(m_socket->bytesToRead(), LocalSocket::mostReceived);
        QVERIFY(comesToRest());

        QByteArray heard;
        QTRY_VERIFY((sayMore(), heard += m_socket->readAll(), heard.size() == all.size()));
        QCOMPARE(heard, all);
    }

    void whatWasSaidBeforeHangingUpIsHeard()
    {
        m_peer->say("last words");
        m_peer->hangUp();
        QTRY_COMPARE(m_closed->count(), 1);
        QCOMPARE(m_received->count(), 1);
        QVERIFY(!m_socket->isConnected());
        QCOMPARE(m_socket->descriptor(), -1);
        QCOMPARE(m_socket->readAll(), "last words");
        m_socket->write("nobody hears it");
        QCOMPARE(m_socket->bytesToWrite(), 0);
        QCOMPARE(m_closed->count(), 1);
    }

    /// Without the signal that would end the program.
    void writingNoticesThatAPeerHasGone()
    {
        m_peer->hangUp();
        m_socket->write("word");
        QCOMPARE(m_closed->count(), 1);
        QVERIFY(!m_socket->isConnected());
    }

    void aPeerThatGoesWithinAWriteIsNoticed()
    {
        m_socket->write(plenty());
        m_peer->hangUp();
        QTRY_COMPARE(m_closed->count(), 1);
        QCOMPARE(m_socket->bytesToWrite(), 0);
        QCOMPARE(m_sent->count(), 0);
    }

    void closingWaitsForWhatIsWritten()
    {
        const QByteArray all = plenty();
        m_socket->write(all);
        m_socket->closeWhenSent();
        QVERIFY(!m_socket->isConnected());
        QCOMPARE(m_closed->count(), 0);
        m_socket->write("too late");
        m_peer->say("not heard");
        QByteArray heard;
        QTRY_VERIFY((heard += m_peer->hear(), m_peer->hasEnded));
        QCOMPARE(heard, all);
        QCOMPARE(m_received->count(), 0);
        QCOMPARE(m_sent->count(), 0);
        QCOMPARE(m_closed->count(), 1);
    }

    void closingWithNothingWrittenIsAtOnce()
    {
        m_socket->write("word");
        m_socket->closeWhenSent();
        QCOMPARE(m_closed->count(), 1);
        QCOMPARE(m_peer->hear(), "word");
        QVERIFY(m_peer->hasEnded);
    }

    void oneThatIsDestroyedHangsUpSilently()
    {
        m_socket.reset();
        m_peer->hear();
        QVERIFY(m_peer->hasEnded);
        QCOMPARE(m_closed->count(), 0);
    }

private:
    std::unique_ptr<LocalSocket> m_socket;
    std::optional<SocketEnd> m_peer;
    std::optional<QSignalSpy> m_received;
    std::optional<QSignalSpy> m_sent;
    std::optional<QSignalSpy> m_closed;
};

TEST_CLASS_INSIDE(QCoreApplication, LocalSocketTest)
#include "LocalSocketTest.moc"

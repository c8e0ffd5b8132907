// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "sockets/LocalServer.h"
#include "sockets/LocalAddress.h"
#include "sockets/LocalSocket.h"
#include "tests/sockets/SocketEnd.h"
#include "tests/support/TestClasses.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTimer>
#include <memory>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

namespace {

/// One that does not wait.
int plainSocket()
{
    return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

/// Leaves no descriptor unused.
void forbidDescriptors(rlim_t limit)
{
    rlimit limits{};
    getrlimit(RLIMIT_NOFILE, &limits);
    limits.rlim_cur = limit;
    setrlimit(RLIMIT_NOFILE, &limits);
}

rlim_t mostDescriptors()
{
    rlimit limits{};
    getrlimit(RLIMIT_NOFILE, &limits);
    return limits.rlim_cur;
}

} // namespace

/// The file that others connect to, and who is taken in.
class LocalServerTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath(QStringLiteral("socket"));
        m_peers.clear();
        m_server =
            std::make_unique<LocalServer>([this](LocalSocket *peer) { m_peers.push_back(peer); });
    }

    void cleanup() { m_server.reset(); }

    void peersAreTakenIn()
    {
        QVERIFY(m_server->listenAt(m_path));
        SocketEnd one(connected());
        SocketEnd other(connected());
        QTRY_COMPARE(m_peers.size(), std::size_t{2});
        m_peers[1]->write("second");
        QCOMPARE(other.hear(), "second");
        QCOMPARE(one.hear(), "");
        m_server.reset();
        one.hear();
        QVERIFY(one.hasEnded);
    }

    /// Whatever the process lets others do with its files.
    void nobodyElseCanOpenIt()
    {
        const mode_t usual = umask(0);
        const auto restore = qScopeGuard([usual] { umask(usual); });
        QVERIFY(m_server->listenAt(m_path));
        struct stat file = {};
        QCOMPARE(stat(QFile::encodeName(m_path).constData(), &file), 0);
        QVERIFY(S_ISSOCK(file.st_mode));
        QCOMPARE(file.st_mode & 0777, 0600U);
    }

    void theFileGoesWithTheServer()
    {
        QVERIFY(m_server->listenAt(m_path));
        m_server.reset();
        QVERIFY(!QFile::exists(m_path));
    }

    void whatIsLeftBehindIsReplaced()
    {
        SocketEnd left(plainSocket());
        QCOMPARE(LocalAddress(m_path).bind(left.descriptor), 0);
        left.hangUp();
        QVERIFY(!LocalServer::isServedAt(m_path));
        QVERIFY(m_server->listenAt(m_path));
        QVERIFY(LocalServer::isServedAt(m_path));
    }

    void aFolderStays()
    {
        QVERIFY(QDir().mkdir(m_path));
        QVERIFY(!m_server->listenAt(m_path));
        QCOMPARE(m_server->trouble(), QStringLiteral("Address already in use"));
        m_server.reset();
        QVERIFY(QFileInfo(m_path).isDir());
    }

    void aPathThatIsTooLong()
    {
        const QString path = m_folder->filePath(QString(200, QLatin1Char('x')));
        QVERIFY(!m_server->listenAt(path));
        QCOMPARE(m_server->trouble(), QStringLiteral("File name too long"));
        QVERIFY(!LocalServer::isServedAt(path));
    }

    void nobodyServesWhatIsNotThere() { QVERIFY(!LocalServer::isServedAt(m_path)); }

    /// It hangs, and is there all the same.
    void oneThatTakesNobodyInServes()
    {
        SocketEnd hanging(plainSocket());
        QCOMPARE(LocalAddress(m_path).bind(hanging.descriptor), 0);
        QCOMPARE(listen(hanging.descriptor, 0), 0);
        std::vector<std::unique_ptr<SocketEnd>> waiting;
        int error = 0;
        while (error == 0) {
            waiting.push_back(std::make_unique<SocketEnd>(plainSocket()));
            error = LocalAddress(m_path).connect(waiting.back()->descriptor);
        }
        QCOMPARE(error, EAGAIN);
        QVERIFY(LocalServer::isServedAt(m_path));
    }

    /// They are taken in as soon as there are some again, and the loop rests until then.
    void aShortageOfDescriptorsPasses()
    {
        QVERIFY(m_server->listenAt(m_path));
        SocketEnd peer(connected());
        const rlim_t usual = mostDescriptors();
        const auto restore = qScopeGuard([usual] { forbidDescriptors(usual); });
        int turns = 0;
        // A sanitizer that is to look at an object opens a pipe: none but a plain value is looked
        // at.
        bool hasEnded = false;
        QTimer::singleShot(300, [&hasEnded] { hasEnded = true; });
        forbidDescriptors(3);
        while (!hasEnded && turns < 1000) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            ++turns;
        }
        QVERIFY(turns < 10);
        QVERIFY(m_peers.empty());
        forbidDescriptors(usual);
        QTRY_COMPARE(m_peers.size(), std::size_t{1});
        m_peers[0]->write("at last");
        QCOMPARE(peer.hear(), "at last");
    }

private:
    int connected() const
    {
        const int descriptor = plainSocket();
        return LocalAddress(m_path).connect(descriptor) == 0 ? descriptor : -1;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
    std::vector<LocalSocket *> m_peers;
    std::unique_ptr<LocalServer> m_server;
};

TEST_CLASS_INSIDE(QCoreApplication, LocalServerTest)
#include "LocalServerTest.moc"

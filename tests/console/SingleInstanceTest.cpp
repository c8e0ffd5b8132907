// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/SingleInstance.h"
#include "console/InstanceLock.h"
#include "console/SingleInstanceRequest.h"
#include "console/WindowSituation.h"
#include "sockets/LocalAddress.h"
#include "sockets/LocalCall.h"
#include "tests/sockets/SocketEnd.h"
#include "tests/support/TestClasses.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTimer>
#include <cerrno>
#include <chrono>
#include <future>
#include <memory>
#include <sys/file.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

using Outcome = SingleInstance::Claim::Outcome;

/// What every lock fails with; 0: it does not.
int lockError = 0;

/// As a later process does it, which has no event loop running.
SingleInstance::Claim claimApart(const QString &folder, const QJsonObject &request)
{
    auto claim = std::async(std::launch::async, [&] {
        SingleInstance later(folder);
        return later.claim(request);
    });
    while (claim.wait_for(0ms) != std::future_status::ready)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return claim.get();
}

} // namespace

/// The system's, of which the file system of a far machine may say that it is not possible.
extern "C" int flock(int descriptor, int operation) noexcept
{
    if (lockError == 0)
        return static_cast<int>(syscall(SYS_flock, descriptor, operation));
    errno = lockError;
    return -1;
}

class SingleInstanceTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void theFirstOneHasTheScale()
    {
        SingleInstance first(m_folder->path());
        QCOMPARE(first.claim(readingRequest()).outcome, Outcome::Ours);
        QCOMPARE(first.ownerProcess(), QCoreApplication::applicationPid());
    }

    void aLaterOneGetsItsAnswer()
    {
        SingleInstance first(m_folder->path());
        first.claim({});
        QJsonObject asked;
        first.serve([&](const QJsonObject &request) {
            asked = request;
            return QJsonObject{{QStringLiteral("grams"), 1234}};
        });
        const auto claim = claimApart(m_folder->path(), readingRequest());
        QCOMPARE(claim.outcome, Outcome::Answered);
        QCOMPARE(claim.answer, (QJsonObject{{QStringLiteral("grams"), 1234}}));
        QCOMPARE(asked, readingRequest());
    }

    void aLockThatIsNotPossibleIsNobodys()
    {
        const QString path = m_folder->filePath(QStringLiteral("lock"));
        QFile left(path);
        QVERIFY(left.open(QIODevice::WriteOnly) && left.write("1\n") == 2 && left.flush());
        lockError = ENOLCK;
        const auto heal = qScopeGuard([] { lockError = 0; });
        InstanceLock lock(path);
        QCOMPARE(lock.tryTake(), InstanceLock::Outcome::Impossible);
        QCOMPARE(lock.trouble(), path + QStringLiteral(": No locks available"));
        QCOMPARE(lock.owner(), 0);
        SingleInstance first(m_folder->path());
        QCOMPARE(first.claim({}).outcome, Outcome::Ours);
    }

    void onlyTheUserCanReachIt()
    {
        SingleInstance first(m_folder->path());
        first.claim({});
        first.serve([](const QJsonObject &) { return QJsonObject(); });
        const QFileInfo socket(m_folder->filePath(QStringLiteral("postal-scale.socket")));
        QVERIFY(socket.exists());
        constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QCOMPARE(socket.permissions() & others, QFile::Permissions());
    }

    void oneThatTakesNobodyInIsThereAllTheSame()
    {
        SocketEnd hangs(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        const QString path = m_folder->filePath(QStringLiteral("postal-scale.socket"));
        QCOMPARE(LocalAddress(path).bind(hangs.descriptor), 0);
        QCOMPARE(listen(hangs.descriptor, 0), 0);
        const LocalCall waiting(path, 0ms); // all the places there are
        QCOMPARE(SingleInstance(m_folder->path()).askFirst({}).outcome, Outcome::Unanswered);
    }

    void theNextOneTakesOverFromOneThatHasEnded()
    {
        {
            SingleInstance first(m_folder->path());
            first.claim({});
            first.serve([](const QJsonObject &) { return QJsonObject(); });
        }
        SingleInstance next(m_folder->path());
        QCOMPARE(next.claim({}).outcome, Outcome::Ours);
    }

    void theNextOneTakesOverFromOneThatCrashed()
    {
        // What is left behind: a lock of a process that is gone, and a socket that nobody serves.
        QFile lock(m_folder->filePath(QStringLiteral("postal-scale.lock")));
        QVERIFY(lock.open(QIODevice::WriteOnly));
        lock.write("4194305\npostal-scale\n" + QSysInfo::machineHostName().toUtf8() + "\n\n\n");
        lock.close();
        QFile socket(m_folder->filePath(QStringLiteral("postal-scale.socket")));
        QVERIFY(socket.open(QIODevice::WriteOnly));
        socket.close();

        SingleInstance next(m_folder->path());
        QCOMPARE(next.claim({}).outcome, Outcome::Ours);
        next.serve([](const QJsonObject &) { return QJsonObject{{QStringLiteral("here"), true}}; });
        QCOMPARE(claimApart(m_folder->path(), {}).outcome, Outcome::Answered);
    }

    void aLaterOneWaitsForOneWithoutAWindowToEnd()
    {
        auto first = std::make_unique<SingleInstance>(m_folder->path());
        first->claim({});
        QTimer::singleShot(300, this, [&] { first.reset(); });
        QCOMPARE(claimApart(m_folder->path(), {}).outcome, Outcome::Ours);
        QVERIFY(first == nullptr);
    }

    void withoutAFolderEveryOneIsTheFirst()
    {
        SingleInstance lonely(m_folder->filePath(QStringLiteral("missing")));
        QCOMPARE(lonely.claim({}).outcome, Outcome::Ours);
    }

    void requestsComeBack()
    {
        const ActivationRight right{QStringLiteral("launcher-1_TIME77"), QStringLiteral("token")};
        QCOMPARE(requestOf(raiseRequest(right)), InstanceRequest::Raise);
        QCOMPARE(ActivationRight::fromJson(raiseRequest(right)), right);
        QCOMPARE(requestOf(readingRequest()), InstanceRequest::Reading);
        QCOMPARE(requestOf(situationRequest()), InstanceRequest::Situation);
        QCOMPARE(requestOf({}), InstanceRequest::Unknown);
    }

    void aWindowOfBeforeThatDoesNotSayIsTakenForSeen()
    {
        QVERIFY(WindowSituation::fromJson({}).isSeen);
        for (const bool isSeen : {false, true})
            QCOMPARE(WindowSituation::fromJson(WindowSituation{.isSeen = isSeen}.toJson()).isSeen,
                     isSeen);
    }

    void theTimeOfAStart()
    {
        QCOMPARE(startTime(QStringLiteral("launcher-4711-host-program_TIME123456")), 123456u);
        QCOMPARE(startTime(QStringLiteral("odd_TIME1_TIME2")), 2u);
        QCOMPARE(startTime(QStringLiteral("launcher-4711")), 0u);
        QCOMPARE(startTime({}), 0u);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

TEST_CLASS_INSIDE(QCoreApplication, SingleInstanceTest)
#include "SingleInstanceTest.moc"

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "settings/Settings.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QProcess>
#include <QSignalSpy>
#include <QStatusBar>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <random>
#include <thread>

namespace {

QString folder()
{
    return QFileInfo(storedsettings::file()).path();
}

void writeFile(const QString &name, const QByteArray &text)
{
    QDir().mkpath(QFileInfo(name).path());
    QFile file(name);
    QVERIFY2(file.open(QIODevice::WriteOnly) && file.write(text) == text.size(), qPrintable(name));
}

QByteArray readFile(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList setAside()
{
    return QDir(folder()).entryList({QStringLiteral("*.damaged-*")}, QDir::Files, QDir::Name);
}

const QList<int> everyOption{100, 200, 300, 400, 500, 600};
const QByteArray everyOptionText = "[defaultValue]\n100=selected\n200=selected\n300=selected\n"
                                   "400=selected\n500=selected\n600=selected\n";

constexpr auto writerArgument = "--write";
constexpr int mostWrites = 100'000;

/// Stores all options and none, by turns, and counts each finished write with one byte.
int writeByTurns()
{
    Settings settings;
    settings.setLastSelectedValue(5);
    for (int write = 0; write < mostWrites; ++write) {
        settings.setSelectedOptions(write % 2 == 0 ? everyOption : QList<int>());
        std::putchar('.');
        std::fflush(stdout);
    }
    return 0;
}

} // namespace

/// The file of the settings: what stands in it, and what becomes of it in bad times.
class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { clear(); }
    void cleanupTestCase() { clear(); }

    void startsWithNothing()
    {
        const Settings settings;
        QVERIFY(!settings.lastSelectedValue());
        QVERIFY(settings.selectedOptions().isEmpty());
        QVERIFY(settings.trouble().isEmpty());
        QVERIFY(storedsettings::text().isNull());
    }

    void modelIndex_data()
    {
        QTest::addColumn<int>("index");
        for (const int index : {std::numeric_limits<int>::min(), -1, 0, 3, 8, 1234567,
                                std::numeric_limits<int>::max()})
            QTest::addRow("%d", index) << index;
    }

    void modelIndex()
    {
        QFETCH(int, index);
        Settings settings;
        settings.setLastSelectedValue(index);
        QCOMPARE(storedsettings::text(),
                 "[General]\nlastSelectedValue=" + QByteArray::number(index) + "\n");
        QCOMPARE(Settings().lastSelectedValue(), std::optional(index));
    }

    void heldBackChangesAreWrittenInOne()
    {
        Settings settings;
        settings.holdBack();
        settings.setLastSelectedValue(3);
        settings.setSelectedOptions({300});
        QCoreApplication::processEvents();
        QVERIFY(storedsettings::text().isNull());
        QCOMPARE(settings.lastSelectedValue(), std::optional(3));
        settings.writeHeldBack();
        QCOMPARE(storedsettings::text(),
                 "[General]\nlastSelectedValue=3\n\n[defaultValue]\n300=selected\n");
        settings.setSelectedOptions({});
        QCOMPARE(storedsettings::text(), "[General]\nlastSelectedValue=3\n");
    }

    void heldBackChangesAreWrittenAtTheEnd()
    {
        {
            Settings settings;
            settings.holdBack();
            settings.setLastSelectedValue(3);
        }
        QCOMPARE(storedsettings::text(), "[General]\nlastSelectedValue=3\n");
    }

    /// A file that is as it should be is not touched.
    void nothingHeldBackNothingWritten()
    {
        Settings settings;
        settings.holdBack();
        settings.writeHeldBack();
        QVERIFY(storedsettings::text().isNull());
    }

    void options_data()
    {
        QTest::addColumn<QList<int>>("tags");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("one") << QList<int>{300} << QByteArray("[defaultValue]\n300=selected\n");
        QTest::newRow("two") << QList<int>{100, 600}
                             << QByteArray("[defaultValue]\n100=selected\n600=selected\n");
        QTest::newRow("all") << everyOption << everyOptionText;
        QTest::newRow("none") << QList<int>() << QByteArray("");
    }

    /// Each set takes the place of the one before.
    void options()
    {
        QFETCH(QList<int>, tags);
        QFETCH(QByteArray, text);
        Settings settings;
        settings.setSelectedOptions({200, 500});
        settings.setSelectedOptions(tags);
        QCOMPARE(storedsettings::text(), text);
        QCOMPARE(Settings().selectedOptions(), tags);
    }

    void bothInOneFile()
    {
        Settings settings;
        settings.setSelectedOptions({300, 500});
        settings.setLastSelectedValue(3);
        QCOMPARE(storedsettings::text(),
                 QByteArray("[General]\nlastSelectedValue=3\n\n"
                            "[defaultValue]\n300=selected\n500=selected\n"));
    }

    void foreignKeysStay()
    {
        storedsettings::store("[General]\nother=1\n\n[more]\nkey=text\n");
        Settings settings;
        settings.setLastSelectedValue(3);
        QCOMPARE(storedsettings::text(),
                 QByteArray("[General]\nlastSelectedValue=3\nother=1\n\n[more]\nkey=text\n"));
    }

    void onlyTheUsersFileCounts()
    {
        const QString machine = qEnvironmentVariable("XDG_CONFIG_DIRS");
        for (const char *name : {"/postal-scale.ini", "/postal-scale/postal-scale.ini"})
            writeFile(machine + QLatin1String(name),
                      "[General]\nlastSelectedValue=7\n[defaultValue]\n500=selected\n[torn\n");
        Settings settings;
        QVERIFY(!settings.lastSelectedValue());
        settings.setSelectedOptions({100});
        QCOMPARE(settings.selectedOptions(), QList<int>{100});
        QVERIFY(settings.trouble().isEmpty());
        QVERIFY(QDir(machine).removeRecursively());
    }

    void damaged_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("zeros, as after a power failure") << QByteArray(64, '\0');
        QTest::newRow("zeros after a good start")
            << "[General]\nlastSelectedValue=3\n" + QByteArray(16, '\0');
        QTest::newRow("text") << QByteArray("this is no settings file\n");
        QTest::newRow("text among good lines")
            << QByteArray("[General]\nlastSelectedValue=3\nsomething else\n");
        QTest::newRow("cut off in a section")
            << QByteArray("[General]\nlastSelectedValue=3\n[defau");
        QTest::newRow("cut off in a key")
            << QByteArray("[General]\nlastSelectedValue=3\n[defaultValue]\n30");
        QTest::newRow("cut off in another section") << QByteArray("[more]\nkey\n[General]\n");
        QTest::newRow("bytes that look like a key") << QByteArray("\x80\xFF=\xFE\x01\n");
        QTest::newRow("another program's") << QByteArray(R"({"lastSelectedValue": 3})");
    }

    void damaged()
    {
        QFETCH(QByteArray, bytes);
        storedsettings::store(bytes);
        const LogCapture log;
        Settings settings;
        QCOMPARE(setAside().size(), 1);
        QCOMPARE(readFile(folder() + QLatin1Char('/') + setAside().first()), bytes);
        QVERIFY(settings.trouble().contains(setAside().first()));
        QCOMPARE(log.lines(), QStringList{settings.trouble()});
        QVERIFY(!settings.lastSelectedValue());

        settings.setLastSelectedValue(4);
        QCOMPARE(storedsettings::text(), QByteArray("[General]\nlastSelectedValue=4\n"));
        const Settings next;
        QVERIFY(next.trouble().isEmpty());
        QCOMPARE(setAside().size(), 1);
    }

    void whatIsWrittenAnewIsNotDamaged()
    {
        storedsettings::store("[General]\nlastSelectedValue=3\nother=\"\\x7f\\x83\\x1\"\n");
        Settings settings;
        QCOMPARE(settings.trouble(), QString());
        settings.setLastSelectedValue(4);
        const Settings next;
        QCOMPARE(next.trouble(), QString());
        QCOMPARE(next.lastSelectedValue(), 4);
    }

    void eachDamagedFileIsKept()
    {
        const LogCapture log;
        storedsettings::store("first");
        const Settings first;
        writeFile(storedsettings::file(), "second one");
        const Settings second;
        QCOMPARE(setAside().size(), 2);
        QVERIFY(first.trouble() != second.trouble());
    }

    void sound_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("comments") << QByteArray("; mine\n[General]\nlastSelectedValue=3\n");
        QTest::newRow("lines of another system")
            << QByteArray("[General]\r\nlastSelectedValue=3\r\n");
        QTest::newRow("no last line end") << QByteArray("[General]\nlastSelectedValue=3");
        QTest::newRow("bytes as settings write them")
            << QByteArray("[General]\nwindowGeometry=@ByteArray(\\x1\\xd9\\xd0\\xcb\\0\\x3)\n");
        QTest::newRow("other letters") << QByteArray("[General]\nname=W\xC3\xA4gen\n");
    }

    void sound()
    {
        QFETCH(QByteArray, text);
        storedsettings::store(text);
        const Settings settings;
        QVERIFY(setAside().isEmpty());
        QVERIFY(settings.trouble().isEmpty());
        QCOMPARE(storedsettings::text(), text);
    }

    void aFolderThatCannotBeMadeIsReportedOnce()
    {
        writeFile(folder(), "a file where the folder should be");
        const LogCapture log;
        Settings settings;
        const QSignalSpy troubles(&settings, &Settings::troubleChanged);
        for (int index = 0; index < 5; ++index) {
            settings.setLastSelectedValue(index);
            settings.setSelectedOptions({100 * (index + 1)});
        }
        QCOMPARE(log.lines().filter(QStringLiteral("cannot be saved")).size(), 1);
        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(troubles.size(), 1);
        QCOMPARE(settings.lastSelectedValue(), std::optional(4));
        QCOMPARE(settings.selectedOptions(), QList<int>{500});
        QCOMPARE(readFile(folder()), QByteArray("a file where the folder should be"));
    }

    void aFileThatCannotBeReadIsReported()
    {
        QDir().mkpath(storedsettings::file());
        const LogCapture log;
        Settings settings;
        QVERIFY(settings.trouble().contains(QLatin1String("cannot be read")));
        settings.setLastSelectedValue(3);
        settings.setLastSelectedValue(4);
        QCOMPARE(log.lines().filter(QStringLiteral("cannot be saved")).size(), 1);
        QCOMPARE(settings.lastSelectedValue(), std::optional(4));
    }

    void withoutAFolderEverythingElseWorks()
    {
        writeFile(folder(), "a file where the folder should be");
        LaunchedApplication app(LaunchedApplication::Scale::Present);
        app.stopPolling();
        QVERIFY(app.delegate.rg1->isEnabled());
        app.delegate.checkUPS->click();
        app.delegate.modelMenu->actions().at(3)->trigger();
        app.delegate.rg5->click();
        app.read({0x01, 0x34, 0x12});
        QCOMPARE(app.delegate.SendtoUPS, 1);
        QCOMPARE(app.delegate.lbLBL->text(), QStringLiteral("1.234"));
        QCOMPARE(app.delegate.optionButton->currentIndex(), 0);
        QCOMPARE(app.log.lines().filter(QStringLiteral("cannot be saved")).size(), 1);
        const auto notice = app.delegate.window->statusBar()->findChild<QLabel *>();
        QVERIFY(notice->text().contains(QLatin1String("cannot be saved")));
    }

    void aDamagedFileIsToldInTheWindow()
    {
        storedsettings::store("damaged");
        LaunchedApplication app(LaunchedApplication::Scale::Absent);
        const auto notice = app.delegate.window->statusBar()->findChild<QLabel *>();
        QVERIFY(notice->text().contains(QLatin1String("damaged")));
        QVERIFY(notice->toolTip().contains(setAside().first()));
    }

    void troubleThatIsOverIsWithdrawn()
    {
        writeFile(folder(), "a file where the folder should be");
        Settings settings;
        settings.setLastSelectedValue(3);
        QVERIFY(settings.trouble().contains(QLatin1String("cannot be saved")));
        const QSignalSpy troubles(&settings, &Settings::troubleChanged);
        QVERIFY(QFile::remove(folder()));
        settings.setSelectedOptions({300});
        QCOMPARE(settings.trouble(), QString());
        QCOMPARE(troubles.size(), 1);
        // What could not be saved before is saved along.
        QCOMPARE(storedsettings::text(),
                 "[General]\nlastSelectedValue=3\n\n[defaultValue]\n300=selected\n");
    }

    /// Left behind by a program that was killed as it took the lock.
    void readOnlyLeavesWhatIsThere_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("settings") << QByteArray(
            "[General]\nlastSelectedValue=3\n\n[defaultValue]\n100=selected\n");
        QTest::newRow("damaged") << QByteArray("\x01 damaged");
    }

    void readOnlyLeavesWhatIsThere()
    {
        QFETCH(QByteArray, stored);
        if (!stored.isNull())
            storedsettings::store(stored);
        const QStringList files = QDir(folder()).entryList(QDir::Files);
        {
            Settings settings(Settings::Access::ReadOnly);
            const bool isSound = stored.startsWith('[');
            QCOMPARE(settings.lastSelectedValue().value_or(-1), isSound ? 3 : -1);
            QCOMPARE(settings.selectedOptions(), isSound ? QList{100} : QList<int>());
            settings.setLastSelectedValue(7);
            settings.setSelectedOptions({200, 300});
            settings.setWindowGeometry("somewhere");
            settings.setSettledOnly(true);
            QVERIFY(settings.trouble().isEmpty());
        }
        QCOMPARE(storedsettings::text(), stored);
        QCOMPARE(QDir(folder()).entryList(QDir::Files), files);
    }

    void anEmptyLockIsTakenAway()
    {
        const QString lock = storedsettings::file() + QStringLiteral(".lock");
        writeFile(lock, "");
        const Settings settings;
        QVERIFY(!QFile::exists(lock));
        writeFile(lock, "1\npostal-scale\n");
        const Settings next;
        QVERIFY(QFile::exists(lock)); // somebody's
    }

    /// A thousand writes and more, killed after any number of them and at any point of the next.
    void killedWhileWriting()
    {
        constexpr int rounds = 100;
        constexpr int longestRun = 25;
        constexpr int longestWrite = 3000; // in microseconds
        std::mt19937 random(20260101);     // the same sequence of runs each time
        const QByteArray without = "[General]\nlastSelectedValue=5\n";
        int seenWith = 0;
        int seenWithout = 0;
        for (int round = 0; round < rounds; ++round) {
            killAfter(1 + static_cast<int>(random() % longestRun),
                      std::chrono::microseconds(random() % longestWrite));
            const QByteArray text = storedsettings::text();
            QVERIFY2(text == without || text == without + "\n" + everyOptionText, text);
            ++(text == without ? seenWithout : seenWith);
            QVERIFY(Settings().trouble().isEmpty());
        }
        QVERIFY(seenWith > 0);
        QVERIFY(seenWithout > 0);
        QVERIFY(setAside().isEmpty());
    }

private:
    static void clear()
    {
        QFile::remove(folder());
        storedsettings::forget();
    }

    /// Kills a writer that has finished a number of writes, and has gone on for a while.
    static void killAfter(int writes, std::chrono::microseconds longer)
    {
        QProcess writer;
        writer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        writer.start(QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget(),
                     {QStringLiteral("SettingsTest"), QString::fromLatin1(writerArgument)});
        QVERIFY(writer.waitForStarted());
        qint64 written = 0;
        while (written < writes) {
            QVERIFY(writer.waitForReadyRead());
            written += writer.readAll().size();
        }
        std::this_thread::sleep_for(longer);
        QCOMPARE(::kill(static_cast<pid_t>(writer.processId()), SIGKILL), 0);
        writer.waitForFinished();
        QCOMPARE(writer.exitStatus(), QProcess::CrashExit);
    }
};

static int runTest(int argc, char **argv)
{
    // As the application does: the desktop's language is in force.
    std::setlocale(LC_ALL, "");
    if (argc == 2 && qstrcmp(argv[1], writerArgument) == 0)
        return writeByTurns();
    return testclasses::run<SettingsTest>(argc, argv);
}

TEST_CLASS_RUN_BY(SettingsTest, &runTest)

#include "SettingsTest.moc"

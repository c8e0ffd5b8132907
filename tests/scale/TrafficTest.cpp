// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/traffic/Traffic.h"
#include "scale/SystemHidDevices.h"
#include "scale/traffic/RecordedHidDevices.h"
#include "scale/traffic/ReplayedHidDevices.h"
#include "tests/support/FakeClock.h"
#include "tests/support/LinkedScale.h"
#include "tests/support/TestClasses.h"

#include <QTemporaryDir>

using namespace std::chrono_literals;

namespace {

/// An interface whose application gets its devices from the test.
struct Interface : RecordingDelegate
{
    explicit Interface(HidDevices &itsDevices)
        : source(itsDevices)
    {
    }

    HidDevices &devices() override { return source; }

    HidDevices &source;
};

QByteArray contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Without heading and times, which are another run's business.
QStringList withoutTimes(const QByteArray &record)
{
    QStringList lines = QString::fromUtf8(record).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines.removeIf([](const QString &line) { return !line.at(0).isDigit(); });
    for (QString &line : lines)
        line = line.section(QLatin1Char(' '), 1);
    return lines;
}

/// Time goes on, and what has come due happens.
void passTime(std::chrono::milliseconds time)
{
    for (auto gone = 0ms; gone < time; gone += 1ms) {
        fakeclock::advance(1ms);
        LinkedScale::turn();
    }
}

Traffic traffic(const QByteArray &lines)
{
    QString trouble;
    const auto parsed = Traffic::parse(Traffic::heading + '\n' + lines, &trouble);
    if (!parsed)
        qFatal("%s", qPrintable(trouble));
    return *parsed;
}

const QByteArray scaleAttached = "0.000 attach hidraw0 04d9:8010\n"
                                 "0.000 open hidraw0\n";
const QByteArray scaleRead = "0.001 send 00 90 ff 80 00 00 00 00 00\n"
                             "0.001 read 01 34 12\n";

/// The real link on a record, from its start until the first devices have come.
struct ReplayedScale
{
    explicit ReplayedScale(const QByteArray &lines)
        : devices(traffic(lines))
    {
        interface.radioButtonIndex = 5;
        link.get_device_handle();
        passTime(10ms);
    }

    bool isPresent() const { return devices.find(scaleVendorId, scaleProductId).has_value(); }

    ReplayedHidDevices devices;
    LogCapture log;
    Interface interface{devices};
    HIDManager link;
};

/// The real link, all of whose traffic is written down.
struct RecordedScale
{
    explicit RecordedScale(const QString &name)
    {
        FakeHidapi::reset();
        fakeudev::reset();
        if (!devices.startFile(name))
            qFatal("%s", qPrintable(devices.errorText()));
    }

    void watch()
    {
        link.get_device_handle();
        LinkedScale::turn();
    }

    RecordedHidDevices devices{std::make_unique<SystemHidDevices>()};
    LogCapture log;
    Interface interface{devices};
    FakeHidapi &hidapi = FakeHidapi::instance();
    HIDManager link;
};

} // namespace

/// What is written down of the devices, and that it does the same once more.
class TrafficTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void aLineReadsAsItIsWritten_data()
    {
        QTest::addColumn<QByteArray>("text");
        for (const char *text :
             {"0.004 attach hidraw0 04d9:8010", "0.005 change hidraw0 04d9:8010",
              "12.345 detach hidraw12 046d:c077", "0.074 open hidraw0",
              "0.074 open hidraw0 denied: Permission denied", "0.074 open hidraw0 failed: ",
              "0.474 send 00 90 ff 80 00 00 00 00 00", "0.475 read 01 34 12", "0.475 read",
              "100000.999 read failed", "0.875 send failed 00 90 ff 80 00 00 00 00 00"})
            QTest::newRow(text) << QByteArray(text);
    }

    void aLineReadsAsItIsWritten()
    {
        QFETCH(QByteArray, text);
        const auto line = TrafficLine::parse(text);
        QVERIFY(line.has_value());
        QCOMPARE(line->toText(), text);
    }

    void nothingElseIsALine_data()
    {
        QTest::addColumn<QByteArray>("text");
        for (const char *text :
             {"attach hidraw0 04d9:8010", "0.4 read", "0,400 read", "-1.000 read", "0.400  read",
              "0.400 read 1", "0.400 read 0x01", "0.400 read 01,34", "0.400 read 01 failed",
              "0.400 send", "0.400 send failed", "0.400 attach hidraw0", "0.400 attach 04d9:8010",
              "0.400 attach /dev/hidraw0 04d9:8010", "0.400 open", "0.400 open hidraw0 refused: x",
              "0.400 open hidraw0 failed", "0.400 READ 01", "0.400 write 01"})
            QTest::newRow(text) << QByteArray(text);
    }

    void nothingElseIsALine()
    {
        QFETCH(QByteArray, text);
        QVERIFY(!TrafficLine::parse(text));
    }

    void damageIsToldWithItsLine_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("trouble");
        const auto row = [](const char *text, const char *trouble) {
            QTest::newRow(trouble) << QByteArray(text) << QString::fromLatin1(trouble);
        };
        row("", "line 1: not \"postal-scale traffic 1\"");
        row("postal-scale traffic 2\n", "line 1: not \"postal-scale traffic 1\"");
        row("postal-scale traffic 1\n\n# remark\n0.1 read\n", "line 4: cannot be understood");
        row("postal-scale traffic 1\n0.100 read 01 00 00\n",
            "line 2: a report, but no device was opened before");
        row("postal-scale traffic 1\n0.100 open hidraw0 failed: x\n0.200 send 00 90\n",
            "line 3: a report, but no device was opened before");
        row("postal-scale traffic 1\n0.100 open hidraw0\n0.099 read\n",
            "line 3: the time goes back");
    }

    void damageIsToldWithItsLine()
    {
        QFETCH(QByteArray, text);
        QString trouble;
        QVERIFY(!Traffic::parse(text, &trouble));
        QTEST(trouble, "trouble");
    }

    void whatAMailProgramDoesToALineIsNoDamage()
    {
        QString trouble;
        const auto parsed =
            Traffic::parse("postal-scale traffic 1\r\n  0.100 open hidraw0 \r\n\r\n", &trouble);
        QVERIFY2(parsed.has_value(), qPrintable(trouble));
        QCOMPARE(parsed->lines.size(), std::size_t{1});
    }

    void everythingThatPassesIsWrittenDown()
    {
        const QString name = m_folder.filePath(QStringLiteral("record"));
        RecordedScale scale(name);
        scale.watch();
        fakeudev::plug(mouse);
        fakeudev::plug(scaleDevice);
        LinkedScale::turn();
        scale.hidapi.reports = {{0x01, 0x34, 0x12}, {}};
        scale.link.get_device_rawdata();
        scale.link.set_device_OFF();
        scale.link.get_device_rawdata();
        scale.hidapi.sendFails = true;
        scale.link.get_device_rawdata();
        scale.hidapi.openFails = true;
        fakeudev::unplug(scaleDevice.name);
        LinkedScale::turn();
        scale.link.get_device_rawdata(); // reaches no device
        fakeudev::plug(scaleDevice);
        LinkedScale::turn();
        QCOMPARE(withoutTimes(contents(name)),
                 (QStringList{"attach hidraw7 046d:c077", "attach hidraw0 04d9:8010",
                              "open hidraw0", "send 00 90 ff 80 00 00 00 00 00", "read 01 34 12",
                              "send 00 a0 ff a0 00 00 00 00 00", "send 00 90 ff 80 00 00 00 00 00",
                              "read", "send failed 00 90 fe 80 00 00 00 00 00", "read failed",
                              "detach hidraw0 04d9:8010", "attach hidraw0 04d9:8010",
                              "open hidraw0 failed: fake failure"}));
        QString trouble;
        QVERIFY2(Traffic::parse(contents(name), &trouble), qPrintable(trouble));
    }

    void permissionThatArrivesLaterIsWrittenDown()
    {
        const QString name = m_folder.filePath(QStringLiteral("late"));
        RecordedScale scale(name);
        scale.watch();
        scale.hidapi.openFails = true;
        fakeudev::plug(scaleDevice);
        LinkedScale::turn();
        scale.hidapi.openFails = false;
        fakeudev::announce(scaleDevice, "change");
        LinkedScale::turn();
        QCOMPARE(withoutTimes(contents(name)),
                 (QStringList{"attach hidraw0 04d9:8010", "open hidraw0 failed: fake failure",
                              "change hidraw0 04d9:8010", "open hidraw0"}));
    }

    void plugsThatAreNotNoticedAreToldOf()
    {
        RecordedScale scale(m_folder.filePath(QStringLiteral("unwatched")));
        fakeudev::failing().monitor = true;
        scale.watch();
        QVERIFY(!scale.interface.watchTrouble.isEmpty());
    }

    void permissionThatArrivesLaterComesBack()
    {
        ReplayedScale scale("0.000 attach hidraw0 04d9:8010\n"
                            "0.000 open hidraw0 denied: hid_open\n"
                            "0.005 change hidraw0 04d9:8010\n"
                            "0.005 open hidraw0\n"
                            "0.006 send 00 90 ff 80 00 00 00 00 00\n"
                            "0.006 read 01 34 12\n");
        QCOMPARE(scale.interface.connectionTrouble, QString());
        scale.link.get_device_rawdata();
        QCOMPARE(scale.interface.label, QStringLiteral("1.234"));
    }

    /// Without an event: a poll has found it permitted.
    void permissionThatAPollFindsComesBack()
    {
        ReplayedScale scale("0.000 attach hidraw0 04d9:8010\n"
                            "0.000 open hidraw0 denied: hid_open\n"
                            "0.400 open hidraw0\n"
                            "0.400 send 00 90 ff 80 00 00 00 00 00\n"
                            "0.401 read 01 34 12\n");
        scale.link.get_device_rawdata();
        QVERIFY(!scale.interface.connectionTrouble.isEmpty());
        passTime(400ms);
        scale.link.get_device_rawdata();
        QCOMPARE(scale.interface.connectionTrouble, QString());
        QCOMPARE(scale.interface.label, QStringLiteral("1.234"));
    }

    /// As after a sleep, or where permission was lost for a while.
    void aScaleThatWasOpenedAnewIsReadOn()
    {
        ReplayedScale scale(scaleAttached + scaleRead +
                            "9.000 open hidraw0 failed: hid_open\n"
                            "9.250 open hidraw0\n"
                            "9.400 send 00 90 ff 80 00 00 00 00 00\n"
                            "9.400 read 01 67 05\n"
                            "9.410 detach hidraw0 04d9:8010\n");
        scale.link.get_device_rawdata();
        QCOMPARE(scale.interface.label, QStringLiteral("1.234"));
        scale.link.get_device_rawdata();
        QCOMPARE(scale.interface.label, QStringLiteral("0.567"));
        passTime(10ms);
        QVERIFY(!scale.isPresent());
    }

    void aDeviceThatSendsByItselfIsReadOn()
    {
        ReplayedHidDevices devices(traffic("0.000 open hidraw1\n"
                                           "0.001 read 03 01\n"
                                           "9.000 open hidraw1\n"
                                           "9.400 read 03 02\n"));
        devices.startReporting(nullptr);
        const auto connection = devices.openToRead(QStringLiteral("/dev/hidraw1"));
        QVERIFY(connection != nullptr);
        std::array<std::uint8_t, 9> buffer{};
        fakeclock::advance(1ms);
        QCOMPARE(connection->read(buffer, 0ms), 2);
        fakeclock::advance(8999ms);
        QVERIFY(!connection->read(buffer, 0ms));
        fakeclock::advance(400ms);
        QCOMPARE(connection->read(buffer, 0ms), 2);
        QCOMPARE(buffer[1], 2);
    }

    /// Silence of 2.5 s after a poll, which was sent anew meanwhile.
    void aSilentScaleIsSilentAgain()
    {
        ReplayedScale scale(scaleAttached + "0.010 send 00 90 ff 80 00 00 00 00 00\n"
                                            "2.010 send 00 90 ff 80 00 00 00 00 00\n"
                                            "2.510 read 01 34 12\n"
                                            "2.810 read 01 34 12\n"
                                            "2.810 send 00 90 fe 80 00 00 00 00 00\n"
                                            "2.811 read 01 67 05\n");
        scale.link.get_device_rawdata();
        QVERIFY(scale.link.isReadingOpen());
        scale.link.continueReading();
        QVERIFY(scale.link.isReadingOpen());
        passTime(500ms);
        scale.link.continueReading();
        QVERIFY(!scale.link.isReadingOpen());
        QCOMPARE(scale.interface.label, QStringLiteral("1.234"));
        scale.link.get_device_rawdata();
        QCOMPARE(scale.interface.label, QStringLiteral("0.567"));
    }

    void aRecordThatEndsInSilenceStaysSilent()
    {
        ReplayedScale scale(scaleAttached + "0.010 send 00 90 ff 80 00 00 00 00 00\n"
                                            "2.010 send 00 90 ff 80 00 00 00 00 00\n");
        scale.link.get_device_rawdata();
        for (int look = 0; look < 3; ++look) {
            QVERIFY(scale.link.isReadingOpen());
            passTime(1s);
            scale.link.continueReading();
        }
        QVERIFY(scale.link.isReadingOpen());
    }

    void aRecordThatCannotBeWrittenIsToldAtOnce()
    {
        RecordedHidDevices record(std::make_unique<SystemHidDevices>());
        QVERIFY(!record.startFile(m_folder.filePath(QStringLiteral("nowhere/record"))));
        QCOMPARE(record.errorText(), QStringLiteral("No such file or directory"));
    }

    void aFullDiskEndsTheRecordAndNothingElse()
    {
        FakeHidapi::reset();
        fakeudev::reset();
        RecordedHidDevices record(std::make_unique<SystemHidDevices>());
        const LogCapture log;
        record.startFile(QStringLiteral("/dev/full"));
        const auto connection = record.open(QStringLiteral("/dev/hidraw0"));
        QVERIFY(connection != nullptr);
        FakeHidapi::instance().reports = {{0x01, 0x34, 0x12}};
        std::array<std::uint8_t, 9> buffer{};
        QCOMPARE(connection->read(buffer, 2s), 3);
        QCOMPARE(log.lines(),
                 QStringList{"The record in /dev/full ends here: No space left on device"});
    }

    void aReplayDoesTheSameOnceMore()
    {
        ReplayedScale scale(scaleAttached + scaleRead +
                            "0.007 send 00 a0 ff a0 00 00 00 00 00\n"
                            "0.008 send failed 00 90 ff 80 00 00 00 00 00\n"
                            "0.009 read failed\n"
                            "0.010 detach hidraw0 04d9:8010\n");
        QCOMPARE(scale.interface.calls, (QStringList{"setStatusString 1", "setIsDeviceAlive 1"}));
        QCOMPARE(scale.interface.connectionTrouble, QString());
        scale.link.get_device_rawdata();
        QCOMPARE(scale.interface.label, QStringLiteral("1.234"));
        scale.link.get_device_rawdata();
        QCOMPARE(scale.log.lines().filter(QStringLiteral("Unable")).size(), 2);
        passTime(10ms);
        QCOMPARE(scale.interface.calls.last(2), (QStringList{"setIsDeviceAlive 0", "clearAll"}));
        QVERIFY(!scale.isPresent());
    }

    void aRefusalComesBackWithItsReason_data()
    {
        QTest::addColumn<QByteArray>("outcome");
        QTest::addColumn<QString>("trouble");
        QTest::newRow("denied") << QByteArray("denied: hid_open")
                                << QStringLiteral(
                                       "No permission to open the scale at /dev/hidraw0");
        QTest::newRow("failed") << QByteArray("failed: hid_open")
                                << QStringLiteral(
                                       "The scale at /dev/hidraw0 could not be opened: hid_open");
    }

    void aRefusalComesBackWithItsReason()
    {
        QFETCH(QByteArray, outcome);
        const ReplayedScale scale(scaleAttached.trimmed() + ' ' + outcome + '\n');
        QFETCH(QString, trouble);
        QVERIFY2(scale.interface.connectionTrouble.startsWith(trouble),
                 qPrintable(scale.interface.connectionTrouble));
    }

    void nothingIsLostWhenTheProgramPollsLater()
    {
        ReplayedScale scale(scaleAttached + scaleRead + "0.002 detach hidraw0 04d9:8010\n");
        passTime(1s);
        QVERIFY(scale.isPresent());
        scale.link.get_device_rawdata();
        QCOMPARE(scale.interface.label, QStringLiteral("1.234"));
        passTime(10ms);
        QVERIFY(!scale.isPresent());
    }

    void theLastStateStays()
    {
        ReplayedScale scale(scaleAttached + scaleRead);
        for (int reading = 0; reading < 3; ++reading) {
            scale.interface.label.clear();
            scale.link.get_device_rawdata();
            QCOMPARE(scale.interface.label, QStringLiteral("1.234"));
        }
        QCOMPARE(scale.log.lines().filter(QStringLiteral("last state stays")).size(), 1);
    }

    void ofTwoScalesTheSameOneIsOpened()
    {
        ReplayedScale scale("0.000 attach hidraw0 04d9:8010\n"
                            "0.000 open hidraw1\n"
                            "0.000 attach hidraw1 04d9:8010\n"
                            "0.000 open hidraw1\n" +
                            scaleRead);
        QCOMPARE(scale.interface.connectionTrouble, QString());
        scale.link.get_device_rawdata();
        QCOMPARE(scale.interface.label, QStringLiteral("1.234"));
    }

    void aLineThatWasLeftOutHoldsNothingUp()
    {
        ReplayedScale scale(scaleAttached + "0.001 send 00 90 ff 80 00 00 00 00 00\n"
                                            "0.002 detach hidraw0 04d9:8010\n");
        scale.link.get_device_rawdata();
        QCOMPARE(scale.log.lines().filter(QStringLiteral("Unable")),
                 QStringList{"io: Unable to read()"});
        passTime(10ms);
        QVERIFY(!scale.isPresent());
    }

    /// A device that answered late is late again.
    void aReadTakesAsLongAsItDid()
    {
        ReplayedScale scale(scaleAttached + "0.100 send 00 90 ff 80 00 00 00 00 00\n"
                                            "0.150 read 01 34 12\n");
        const auto start = std::chrono::system_clock::now(); // the other clock stands still
        scale.link.get_device_rawdata();
        QVERIFY(std::chrono::system_clock::now() - start >= 50ms);
    }

private:
    QTemporaryDir m_folder{QStringLiteral("/dev/shm/postal-scale-test-XXXXXX")};
};

TEST_CLASS_INSIDE(QCoreApplication, TrafficTest)
#include "TrafficTest.moc"

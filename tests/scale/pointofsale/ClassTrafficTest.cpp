// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/ClassScaleDescriptors.h"
#include "scale/HIDManager.h"
#include "scale/pointofsale/PointOfSaleLink.h"
#include "scale/pointofsale/ScaleChoice.h"
#include "scale/pointofsale/ScaleReading.h"
#include "scale/traffic/RecordedHidDevices.h"
#include "scale/traffic/ReplayedHidDevices.h"
#include "tests/support/ClassScaleDevices.h"
#include "tests/support/FakeClock.h"
#include "tests/support/LinkedScale.h"
#include "tests/support/TestClasses.h"

#include <QTemporaryDir>

using namespace std::chrono_literals;

namespace {

using Report = ClassScaleDevices::Report;

const fakeudev::Device classDevice{"hidraw5", 0x1234, 0x0001};

/// An interface whose application gets its devices from the test.
class RecordedInterface : public RecordingDelegate
{
public:
    explicit RecordedInterface(HidDevices &itsDevices)
        : source(itsDevices)
    {
    }

    HidDevices &devices() override { return source; }
    void useLink(ScaleLink &, const QString &itsName) override { names.append(itsName); }
    void takeReading(const ScaleReading &reading) override
    {
        readings.push_back(reading.statement);
    }

    HidDevices &source;
    QStringList names;
    std::vector<ScaleStatement> readings;
};

/// Both links on such devices.
struct RecordedLinks
{
    explicit RecordedLinks(HidDevices &devices)
        : interface(devices)
    {
        described.get_device_handle();
        LinkedScale::turn();
    }

    /// Time goes on, and readings are taken in their rhythm.
    void pass(std::chrono::milliseconds time)
    {
        for (auto gone = 0ms; gone < time; gone += 100ms) {
            fakeclock::advance(100ms);
            LinkedScale::turn();
            other.takeReading();
        }
    }

    LogCapture log;
    RecordedInterface interface;
    HIDManager described;
    PointOfSaleLink other{[] { return false; }};
    ScaleChoice choice{described, other, nullptr};
};

QByteArray recordIn(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What a run that was recorded has said and shown.
struct RecordedRun
{
    QByteArray record;
    QStringList names;
    std::vector<ScaleStatement> readings;
};

void sendAll(ClassScaleDevices::Scale &scale, RecordedLinks &links,
             const std::vector<Report> &reports)
{
    for (const Report &report : reports) {
        scale.reports.push_back(report);
        links.pass(400ms);
    }
}

RecordedRun recordedRun()
{
    FakeHidapi::reset();
    fakeudev::reset();
    auto machine = std::make_unique<ClassScaleDevices>();
    ClassScaleDevices::Scale &scale = machine->scales[QStringLiteral("/dev/hidraw5")];
    scale.descriptor = QByteArray(reinterpret_cast<const char *>(classScaleDescriptor.data()),
                                  static_cast<qsizetype>(classScaleDescriptor.size()));
    scale.name = QStringLiteral("Example: a scale");
    RecordedHidDevices devices(std::move(machine));
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("scale.txt"));
    if (!devices.startFile(name))
        qFatal("%s", qPrintable(devices.errorText()));
    RecordedLinks links(devices);
    fakeudev::plug(classDevice);
    LinkedScale::turn();
    sendAll(scale, links, {{3, 4, 11, 0xFF, 99, 0}, {3, 3, 11, 0xFF, 12, 0}, {4, 1}});
    links.other.pressTare();
    sendAll(scale, links, {{3, 4, 11, 0xFF, 12, 0}, {3, 2, 0, 0, 0, 0}});
    fakeudev::unplug("hidraw5");
    links.pass(400ms);
    return {recordIn(name), links.interface.names, links.interface.readings};
}

} // namespace

/// Scales of the class in records.
class ClassTrafficTest : public QObject
{
    Q_OBJECT

private slots:
    void theRecordSaysWhatTheScaleIsAndSends()
    {
        const QByteArray record = recordedRun().record;
        QVERIFY(record.contains(" attach hidraw5 1234:0001\n"));
        QVERIFY(record.contains(" about hidraw5 05 8d 09 20 "));
        QVERIFY(record.contains(" c0: Example: a scale\n"));
        QCOMPARE(record.count(" about "), 1);
        QVERIFY(record.contains(" read 03 03 0b ff 0c 00\n"));
        QVERIFY(record.contains(" send 02 02\n"));
    }

    void aRecordPlaysAsItWas()
    {
        const RecordedRun run = recordedRun();
        QCOMPARE(run.readings.size(), std::size_t{4});
        QString trouble;
        auto traffic = Traffic::parse(run.record, &trouble);
        QVERIFY2(traffic, qPrintable(trouble));
        ReplayedHidDevices devices(*std::move(traffic));
        RecordedLinks links(devices);
        links.pass(10s);
        QCOMPARE(links.interface.names, run.names);
        QVERIFY(links.interface.readings == run.readings);
    }

    /// What a node is goes with whatever has come there.
    void anotherDeviceAtTheSameNode()
    {
        QString trouble;
        const auto hex = [](auto bytes) {
            return QByteArray(reinterpret_cast<const char *>(bytes.data()),
                              static_cast<qsizetype>(bytes.size()))
                .toHex(' ');
        };
        QByteArray record = Traffic::heading + "\n";
        record += "0.000 attach hidraw5 1234:0001\n";
        record += "0.001 about hidraw5 " + hex(classScaleDescriptor) + ": One Scale\n";
        record += "0.002 open hidraw5\n";
        record += "1.000 detach hidraw5 1234:0001\n";
        record += "2.000 attach hidraw5 046d:c077\n";
        record += "3.000 detach hidraw5 046d:c077\n";
        record += "4.000 attach hidraw5 1234:0002\n";
        record += "4.001 about hidraw5 " + hex(oddScaleDescriptor) + ": Other Scale\n";
        record += "4.002 open hidraw5\n";
        auto traffic = Traffic::parse(record, &trouble);
        QVERIFY2(traffic, qPrintable(trouble));
        ReplayedHidDevices devices(*std::move(traffic));
        RecordedLinks links(devices);
        links.pass(10s);
        QCOMPARE(links.interface.names, QStringList({"One Scale", QString(), "Other Scale"}));
    }

    void theLastStateStays()
    {
        QByteArray record = recordedRun().record;
        record.truncate(record.indexOf('\n', record.lastIndexOf(" read ")) + 1);
        QString trouble;
        auto traffic = Traffic::parse(record, &trouble);
        QVERIFY2(traffic, qPrintable(trouble));
        ReplayedHidDevices devices(*std::move(traffic));
        RecordedLinks links(devices);
        links.pass(60s);
        QVERIFY(links.other.isAttached());
        QVERIFY(!links.other.isReadingOpen());
        QVERIFY(links.interface.readings.size() > 100);
        QVERIFY(links.interface.readings.back().status == ScaleStatus::StableAtZero);
    }
};

TEST_CLASS_INSIDE(QCoreApplication, ClassTrafficTest)
#include "ClassTrafficTest.moc"

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/DeviceChoice.h"
#include "scale/traffic/Traffic.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

using namespace std::chrono_literals;

namespace {

const QString packedDecimalScale = QStringLiteral(TRAFFIC_FOLDER "/packed-decimal-scale.txt");
const QString binaryScale = QStringLiteral(TRAFFIC_FOLDER "/binary-scale.txt");

QByteArray contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

constexpr int kilogramTag = 5;

/// The whole program, started with --replay.
class Replay
{
public:
    explicit Replay(const QString &name)
    {
        DeviceChoice choice = DeviceChoice::of({.replayFile = name});
        if (!choice.devices)
            qFatal("%s", qPrintable(choice.trouble));
        application.useDevices(std::move(choice.devices));
        application.launch({});
        // The unit that was chosen is in no record; this one exports every weight.
        application.delegate()->setSelectedRadioButtonIndex(kilogramTag);
    }

    /// What panel and export label show, each time that one of them is another.
    QStringList shownIn(std::chrono::milliseconds time)
    {
        QStringList shown;
        for (auto gone = 0ms; gone < time; gone += 10ms) {
            LaunchedApplication::pass(10ms);
            LaunchedApplication::turn(); // the panel is read out after the reading
            const PostalScaleAppDelegate &delegate = *application.delegate();
            const QString now = QStringLiteral("%1, %2 | %3")
                                    .arg(delegate.connectionStatuslbl->text().section(u' ', 1),
                                         delegate.imageBox->readingText(), delegate.lbLBL->text());
            if (shown.isEmpty() || shown.last() != now)
                shown.append(now);
        }
        return shown;
    }

private:
    /// What the other tests left behind is gone.
    static int freshWorld()
    {
        FakeHidapi::reset();
        fakeudev::reset();
        storedsettings::forget();
        return 1;
    }

    static inline char programName[] = "postal-scale";
    static inline char *arguments[] = {programName, nullptr};
    int m_argumentCount = freshWorld();
    LogCapture m_log;

public:
    Application application{m_argumentCount, arguments};
};

} // namespace

/// Scales that were recorded, shown again by the whole program without a device.
class ReplayTest : public QObject
{
    Q_OBJECT

private slots:
    void aPackedDecimalScale()
    {
        Replay replay(packedDecimalScale);
        QCOMPARE(replay.shownIn(12s),
                 (QStringList{"not connected, no scale connected | ", "connected, off | ",
                              "connected, off | 0", "connected, 1234 grams | 1.234",
                              "connected, 12 grams | 0.012", "connected, overload | 0",
                              "connected, 9999 grams | 9.999", "connected, 0 grams | 0",
                              "connected, off | 0", "connected, 0 grams | 0",
                              "connected, 2 pounds 3 1/4 ounces | 1",
                              "not connected, no scale connected | ", "connected, off | ",
                              "connected, off | 0", "connected, 2 pounds 3 1/4 ounces | 1"}));
    }

    void aBinaryScale()
    {
        Replay replay(binaryScale);
        QCOMPARE(replay.shownIn(12s),
                 (QStringList{"not connected, no scale connected | ", "connected, off | ",
                              "connected, off | 0", "connected, 1.2 kilograms | 1.28",
                              "connected, 34.0 kilograms | 34.05", "connected, overload | 0.05",
                              "connected, 0.5 kilograms | 0.50", "connected, off | 0.05",
                              "connected, 0.5 kilograms | 0.50", "connected, 1.0 kilograms | 1.05",
                              "not connected, no scale connected | ", "connected, off | ",
                              "connected, off | 0.05", "connected, 1.0 kilograms | 1.05"}));
    }

    void noDeviceIsTouched()
    {
        Replay replay(packedDecimalScale);
        fakeudev::plug(scaleDevice);
        replay.shownIn(2s);
        QVERIFY(FakeHidapi::instance().opened.empty());
        QVERIFY(FakeHidapi::instance().sent.empty());
    }

    /// Whatever letter is lost on the way: the file is refused, at that line or where it no longer
    /// fits the next, or it is read as what it says now.
    void oneLetterLess_data() { bothScales(); }

    void oneLetterLess()
    {
        QFETCH(QByteArray, text);
        int refused = 0;
        for (qsizetype place = 0; place < text.size(); ++place) {
            QByteArray damaged = text;
            damaged.remove(place, 1);
            QString trouble;
            const auto traffic = Traffic::parse(damaged, &trouble);
            refused += traffic ? 0 : 1;
            if (!traffic)
                QVERIFY2(lineIn(trouble) >= lineAt(text, place), qPrintable(trouble));
            else
                QCOMPARE(written(*traffic), withoutRemarks(damaged));
        }
        QVERIFY2(refused > text.size() / 2, qPrintable(QString::number(refused)));
    }

    /// As mail programs and forms do it to each line in turn.
    void oneLineSpoilt_data() { bothScales(); }

    void oneLineSpoilt()
    {
        QFETCH(QByteArray, text);
        const QList<QByteArray> lines = text.trimmed().split('\n');
        for (qsizetype row = 0; row < lines.size(); ++row) {
            if (lines.at(row).startsWith('#'))
                continue;
            const auto refusedAt = [&](const QByteArray &spoilt) {
                QList<QByteArray> damaged = lines;
                damaged[row] = spoilt;
                QString trouble;
                return Traffic::parse(damaged.join('\n'), &trouble) ? 0 : lineIn(trouble);
            };
            const QByteArray &line = lines.at(row);
            const auto number = static_cast<int>(row + 1);
            QCOMPARE(refusedAt("> " + line), number);    // quoted
            QCOMPARE(refusedAt(line + " ..."), number);  // remarked upon
            QCOMPARE(refusedAt(line.toUpper()), number); // in other letters
            QCOMPARE(refusedAt(QByteArray(line).replace(' ', "")), number);
            const qsizetype wrap = line.lastIndexOf(' '); // wrapped, in two at least
            const int wrapped = refusedAt(line.left(wrap) + '\n' + line.mid(wrap + 1));
            QVERIFY2(wrapped == number || wrapped == number + 1, line.constData());
        }
    }

private:
    static void bothScales()
    {
        QTest::addColumn<QByteArray>("text");
        for (const QString &name : {packedDecimalScale, binaryScale})
            QTest::newRow(qPrintable(name)) << contents(name);
    }

    /// Of "line 12: cannot be understood".
    static int lineIn(const QString &trouble)
    {
        return trouble.section(u' ', 1, 1).chopped(1).toInt();
    }

    static int lineAt(const QByteArray &text, qsizetype place)
    {
        return static_cast<int>(text.left(place).count('\n')) + 1;
    }

    static QList<QByteArray> written(const Traffic &traffic)
    {
        QList<QByteArray> lines;
        for (const TrafficLine &line : traffic.lines)
            lines.append(line.toText());
        return lines;
    }

    static QList<QByteArray> withoutRemarks(const QByteArray &text)
    {
        QList<QByteArray> lines = text.trimmed().split('\n').mid(1);
        lines.removeIf([](const QByteArray &line) { return line.startsWith('#'); });
        for (QByteArray &line : lines)
            line = line.trimmed();
        return lines;
    }
};

TEST_CLASS(ReplayTest)
#include "ReplayTest.moc"

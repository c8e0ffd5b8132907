// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/ClassScaleDescriptors.h"
#include "tests/support/ClassScaleDevices.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"
#include "widgets/Announcer.h"

#include <QAccessible>
#include <QMessageBox>
#include <utility>

namespace {

using Scale = LaunchedApplication::Scale;

const std::vector<std::uint8_t> overloaded{0x04, 0x00, 0x00};
const std::vector<std::uint8_t> ownOff{0x00, 0x00, 0x00};

const fakeudev::Device classDevice{"hidraw5", 0x1234, 0x0001};

std::unique_ptr<ClassScaleDevices> withClassScale()
{
    auto devices = std::make_unique<ClassScaleDevices>();
    ClassScaleDevices::Scale &scale = devices->scales[QStringLiteral("/dev/hidraw5")];
    scale.descriptor = QByteArray(reinterpret_cast<const char *>(classScaleDescriptor.data()),
                                  static_cast<qsizetype>(classScaleDescriptor.size()));
    scale.name = QStringLiteral("One Scale");
    return devices;
}

/// A screen reader, and a scale that is connected at last.
class ListeningApplication
{
public:
    /// @param before the reader
    /// @param devices null: the machine's
    explicit ListeningApplication(Scale before = Scale::Absent,
                                  std::unique_ptr<HidDevices> devices = {},
                                  const fakeudev::Device &device = scaleDevice)
        : app(before, {}, {}, nullptr, std::move(devices))
    {
        QAccessible::setActive(true);
        listen();
        forget();
        if (before == Scale::Absent) {
            app.plug(device);
            LaunchedApplication::turn();
            listen();
            began.second = panelNames.size();
        }
        app.stopPolling();
    }

    void read(const std::vector<std::uint8_t> &report, int times = 1)
    {
        for (int count = 0; count < times; ++count) {
            app.read(report);
            LaunchedApplication::turn();
            listen();
        }
    }

    void listen()
    {
        const auto note = [](QStringList &told, const QString &words) {
            if (!words.isEmpty() && (told.isEmpty() || told.constLast() != words))
                told.append(words);
        };
        note(said, app.delegate.window->findChild<Announcer *>()->words());
        note(panelNames, app.delegate.imageBox->accessibleName());
    }

    /// But for what stands there still.
    void forget()
    {
        said = said.mid(said.size() - 1);
        panelNames = panelNames.mid(panelNames.size() - 1);
        began = {said.size(), panelNames.size()};
    }

    QStringList newlySaid() const { return said.mid(began.first); }
    QStringList newPanelNames() const { return panelNames.mid(began.second); }

    QList<QWidget *> notifications() const
    {
        QList<QWidget *> found = app.delegate.window->findChildren<QWidget *>();
        found.removeIf([](QWidget *widget) {
            return QAccessible::queryAccessibleInterface(widget)->role() !=
                   QAccessible::Notification;
        });
        return found;
    }

    LaunchedApplication app;
    QStringList said;       ///< whatever has the focus
    QStringList panelNames; ///< told; read out by some while the panel has the focus
    std::pair<qsizetype, qsizetype> began;
};

} // namespace

class ReadingVoiceTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void aRisingWeightIsSaidOnceItHasSettled()
    {
        ListeningApplication listening;
        for (const auto low : std::initializer_list<std::uint8_t>{0x10, 0x20, 0x30})
            listening.read({0x01, low, 0x12});
        listening.read({0x01, 0x34, 0x12}, 5);
        QCOMPARE(listening.newlySaid(),
                 (QStringList{QStringLiteral("Scale connected"), QStringLiteral("1234 grams")}));
    }

    /// Some speak of the new name of what has the focus, and would say everything twice.
    void onThePanelTheSameIsSaidAndItsNameWaits()
    {
        ListeningApplication listening;
        listening.app.delegate.window->activateWindow();
        PanelWidget *panel = listening.app.delegate.imageBox;
        panel->setFocus();
        QVERIFY(panel->hasFocus());
        listening.read({0x01, 0x20, 0x12});
        listening.read({0x01, 0x34, 0x12}, 5);
        QCOMPARE(listening.newlySaid(),
                 (QStringList{QStringLiteral("Scale connected"), QStringLiteral("1234 grams")}));
        QCOMPARE(listening.newPanelNames(), QStringList());
        panel->clearFocus();
        listening.listen();
        QCOMPARE(listening.newPanelNames(), QStringList{QStringLiteral("1234 grams")});
    }

    void onThePanelAWeightThatIsBackIsSaidAgain()
    {
        ListeningApplication listening;
        listening.app.delegate.window->activateWindow();
        listening.app.delegate.imageBox->setFocus();
        listening.read({0x01, 0x34, 0x12}, 5);
        listening.read(overloaded, 3);
        listening.forget();
        listening.read({0x01, 0x34, 0x12}, 5);
        QCOMPARE(listening.newlySaid(), QStringList{QStringLiteral("1234 grams")});
    }

    void aReaderThatComesLaterIsNotToldOfAScaleThatWasThere()
    {
        ListeningApplication listening(Scale::Present);
        listening.read({0x01, 0x34, 0x12}, 5);
        QCOMPARE(listening.newlySaid(), QStringList{QStringLiteral("1234 grams")});
    }

    void onlyTheLatestWordsAreThereToBeFound()
    {
        ListeningApplication listening;
        listening.app.delegate.tareButton->click();
        listening.app.delegate.powerItem->trigger();
        QStringList found;
        for (QWidget *line : listening.notifications()) {
            QVERIFY(line->size().isEmpty());
            const QAccessibleInterface *seen = QAccessible::queryAccessibleInterface(line);
            if (!seen->state().invisible && !seen->state().offscreen)
                found.append(seen->text(QAccessible::Name));
        }
        QCOMPARE(found, QStringList{QStringLiteral("Power")});
    }

    void whoeverAsksThePanelIsToldWhatIsThereNow()
    {
        ListeningApplication listening;
        PanelWidget *panel = listening.app.delegate.imageBox;
        listening.app.delegate.window->activateWindow();
        panel->setFocus();
        listening.read({0x01, 0x34, 0x12}, 5);
        listening.read({0x01, 0x99, 0x12}, 2);
        QCOMPARE(QAccessible::queryAccessibleInterface(panel)->text(QAccessible::Name),
                 QStringLiteral("1299 grams"));
    }

    void commandsAreConfirmed()
    {
        ListeningApplication listening;
        listening.forget();
        listening.app.delegate.tareButton->click();
        listening.listen();
        listening.app.delegate.powerItem->trigger();
        listening.listen();
        QCOMPARE(listening.newlySaid(),
                 (QStringList{QStringLiteral("Tare"), QStringLiteral("Power")}));
        listening.app.unplug();
        LaunchedApplication::turn();
        listening.listen();
        listening.forget();
        listening.app.delegate.tareItem->trigger();
        QCOMPARE(listening.app.delegate.window->findChild<Announcer *>()->words(),
                 QStringLiteral("No scale connected"));
    }

    void aNoticeIsSaidAsSoonAsItAppears()
    {
        ListeningApplication listening;
        auto &delegate = listening.app.delegate;
        listening.forget();
        delegate.showSessionTrouble(QStringLiteral("Nobody finds it. Start it again."));
        listening.listen();
        delegate.showSessionTrouble({});
        listening.listen();
        delegate.setConnectionTrouble(QStringLiteral("Worn out"));
        listening.listen();
        QCOMPARE(listening.newlySaid(),
                 (QStringList{QStringLiteral("Nobody finds it. Press Alt+E for details"),
                              QStringLiteral("Worn out")}));
    }

    void theKeyThatANoticeNamesOpensItsDetails()
    {
        ListeningApplication listening;
        QMainWindow &window = *listening.app.delegate.window;
        window.activateWindow();
        listening.app.delegate.showSessionTrouble(
            QStringLiteral("Nobody finds it. Start it again."));
        const QString named =
            window.findChild<Announcer *>()->words().section(QStringLiteral("Alt+"), 1, 1);
        QTest::keyClick(&window, named.at(0).toLatin1(), Qt::AltModifier);
        LaunchedApplication::pass(pressTime);
        const auto *details = window.findChild<QMessageBox *>();
        QVERIFY(details);
        QVERIFY(details->isVisible());
    }

    void whatANoticeSaysNoReadingRepeats()
    {
        ListeningApplication listening;
        listening.read({0x01, 0x34, 0x12}, 5);
        listening.forget();
        listening.read(ownOff, 5);
        QCOMPARE(listening.newlySaid(),
                 QStringList{QStringLiteral("The scale has switched itself off. Ctrl+P switches "
                                            "it on; tare is lost")});
    }

    void aWeightThatThePanelCannotShowIsSaidOnceItHasSettled()
    {
        auto devices = withClassScale();
        ClassScaleDevices::Scale &scale = devices->scales.at(QStringLiteral("/dev/hidraw5"));
        ListeningApplication listening(Scale::Absent, std::move(devices), classDevice);
        const auto send = [&](std::uint8_t status, std::uint8_t carats) {
            constexpr std::uint8_t caratUnit = 4;
            scale.reports.push_back({3, status, caratUnit, 0, carats, 0});
            listening.read({});
        };
        constexpr std::uint8_t isMoving = 3;
        constexpr std::uint8_t isStable = 4;
        for (std::uint8_t carats = 2; carats < 12; ++carats)
            send(isMoving, carats);
        for (int count = 0; count < 5; ++count)
            send(isStable, 12);
        const QStringList said = listening.newlySaid();
        QCOMPARE(said.size(), 3);
        QCOMPARE(said.at(0), QStringLiteral("Scale connected"));
        QVERIFY(said.at(1).startsWith(QStringLiteral("The scale shows ")));
        QVERIFY(said.at(1).contains(QStringLiteral("The panel does not have this unit: ")));
        QCOMPARE(said.at(2), QStringLiteral("12 carats"));
        constexpr std::uint8_t toBeCalibrated = 7;
        send(toBeCalibrated, 0);
        QVERIFY(listening.newlySaid().constLast().startsWith(
            QStringLiteral("The scale has to be calibrated. ")));
    }

    void whoComesLaterIsToldOfTheNoticesThatStand()
    {
        LaunchedApplication app(Scale::Absent);
        QAccessible::setActive(false);
        app.delegate.showSessionTrouble(QStringLiteral("Nobody finds it"));
        app.delegate.setConnectionTrouble(QStringLiteral("Worn out"));
        const auto *announcer = app.delegate.window->findChild<Announcer *>();
        QCOMPARE(announcer->words(), QString());
        QAccessible::setActive(true);
        // Only now the toolkit makes its end of the bus.
        QCOMPARE(announcer->words(), QString());
        LaunchedApplication::turn();
        QCOMPARE(announcer->words(), QStringLiteral("Worn out. Nobody finds it"));
    }

    void holdIsConfirmedWhereNoReadingTellsOfIt()
    {
        ListeningApplication listening;
        const auto &delegate = listening.app.delegate;
        listening.read({0x01, 0x34, 0x12}, 5);
        listening.forget();
        delegate.holdButton->click();
        listening.listen();
        QCOMPARE(listening.newlySaid(), QStringList());
        delegate.holdButton->click();
        listening.read(overloaded, 3);
        listening.forget();
        delegate.holdButton->click();
        listening.listen();
        delegate.holdItem->trigger();
        listening.listen();
        QCOMPARE(listening.newlySaid(),
                 (QStringList{QStringLiteral("Hold is on"), QStringLiteral("Hold is off")}));
        listening.app.unplug();
        delegate.holdItem->trigger();
        listening.listen();
        QCOMPARE(listening.newlySaid().constLast(), QStringLiteral("No scale connected"));
    }
};

TEST_CLASS(ReadingVoiceTest)
#include "ReadingVoiceTest.moc"

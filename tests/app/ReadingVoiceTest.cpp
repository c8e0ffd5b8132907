// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"
#include "widgets/Announcer.h"

#include <QAccessible>

namespace {

/// What screen readers are told, in order.
struct Told
{
    QStringList said;       ///< whatever has the focus
    QStringList panelNames; ///< said by most while the panel has it
} told;

void takeUpdate(QAccessibleEvent *event)
{
    if (const auto *announcer = qobject_cast<Announcer *>(event->object());
        announcer && event->type() == QAccessible::ObjectShow)
        told.said.append(announcer->accessibleName());
    if (const auto *panel = qobject_cast<PanelWidget *>(event->object());
        panel && event->type() == QAccessible::NameChanged)
        told.panelNames.append(panel->accessibleName());
}

/// A screen reader, from the start on.
class ListeningApplication
{
public:
    ListeningApplication()
    {
        QAccessible::setActive(true);
        QAccessible::installUpdateHandler(takeUpdate);
        app.stopPolling();
        told = {};
    }
    ~ListeningApplication() { QAccessible::installUpdateHandler(nullptr); }
    ListeningApplication(const ListeningApplication &) = delete;
    ListeningApplication &operator=(const ListeningApplication &) = delete;

    void read(std::vector<std::uint8_t> report, int times = 1)
    {
        for (int count = 0; count < times; ++count) {
            app.read(report);
            LaunchedApplication::turn();
        }
    }

    LaunchedApplication app{LaunchedApplication::Scale::Present};
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
        for (const std::uint8_t low : {0x10, 0x20, 0x30})
            listening.read({0x01, low, 0x12});
        listening.read({0x01, 0x34, 0x12}, 5);
        QCOMPARE(told.said, QStringList{QStringLiteral("1234 grams")});
    }

    void onThePanelItIsTheNameThatIsSaid()
    {
        ListeningApplication listening;
        listening.app.delegate.window->activateWindow();
        listening.app.delegate.imageBox->setFocus();
        QVERIFY(listening.app.delegate.imageBox->hasFocus());
        listening.read({0x01, 0x20, 0x12});
        listening.read({0x01, 0x34, 0x12}, 5);
        QCOMPARE(told.panelNames, QStringList{QStringLiteral("1234 grams")});
        QCOMPARE(told.said, QStringList());
        // Who asks meanwhile is told what is there.
        listening.read({0x01, 0x99, 0x12});
        QCOMPARE(QAccessible::queryAccessibleInterface(listening.app.delegate.imageBox)
                     ->text(QAccessible::Name),
                 QStringLiteral("1299 grams"));
        listening.app.delegate.rg1->setFocus();
        QCOMPARE(told.panelNames.constLast(), QStringLiteral("1299 grams"));
    }

    void commandsAreConfirmed()
    {
        ListeningApplication listening;
        listening.app.delegate.tareButton->click();
        listening.app.delegate.powerItem->trigger();
        QCOMPARE(told.said, (QStringList{QStringLiteral("Tare"), QStringLiteral("Power")}));
        listening.app.unplug();
        told = {};
        listening.app.delegate.tareItem->trigger();
        QCOMPARE(told.said, QStringList{QStringLiteral("No scale connected")});
    }
};

TEST_CLASS(ReadingVoiceTest)
#include "ReadingVoiceTest.moc"

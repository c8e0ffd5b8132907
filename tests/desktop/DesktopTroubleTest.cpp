// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/DesktopTrouble.h"

#include "tests/support/TestClasses.h"

namespace {

const QString applicationId = QStringLiteral("org.example.scale");

struct Row
{
    const char *name;
    DesktopSituation situation;
    const char *cure; ///< part of it; null where there is no trouble
};

const Row onTopRows[] = {
    {"window manager that does it", {.desktop = Desktop::X11, .keepsOnTop = true}, nullptr},
    {"one that tells nothing", {.desktop = Desktop::X11}, nullptr},
    {"one that does not",
     {.desktop = Desktop::X11, .keepsOnTop = false},
     "Use one that knows _NET_WM_STATE_ABOVE"},
    {"GNOME",
     {.desktop = Desktop::Wayland, .shell = Shell::Gnome, .hasX11Display = true},
     "Alt+Space and choose Always on Top, or start with QT_QPA_PLATFORM=xcb"},
    {"Plasma without Xwayland",
     {.desktop = Desktop::Wayland, .shell = Shell::Plasma},
     "Alt+F3 and choose More Actions, Keep Above Others."},
    {"sway",
     {.desktop = Desktop::Wayland, .shell = Shell::Sway, .hasX11Display = true},
     "for_window [app_id=\"org.example.scale\"] floating enable, sticky enable"},
    {"sway's Xwayland",
     {.desktop = Desktop::X11, .shell = Shell::Sway, .keepsOnTop = false},
     "for_window [class=\"postal-scale\"] floating enable, sticky enable"},
    {"labwc",
     {.desktop = Desktop::Wayland, .shell = Shell::Labwc},
     "<windowRule identifier=\"org.example.scale\">"},
    {"labwc's Xwayland",
     {.desktop = Desktop::X11, .shell = Shell::Labwc, .keepsOnTop = false},
     "<windowRule identifier=\"postal-scale\">"},
    {"another compositor", {.desktop = Desktop::Wayland}, "Choose it in the window's own menu."},
    {"no desktop", {}, nullptr},
};

const Row clipboardRows[] = {
    {"X11", {.desktop = Desktop::X11}, nullptr},
    {"Wayland", {.desktop = Desktop::Wayland, .hasX11Display = true}, "Start with QT_QPA_PLATFORM"},
    {"without Xwayland", {.desktop = Desktop::Wayland}, "Install Xwayland"},
    {"a compositor that lets programs",
     {.desktop = Desktop::Wayland, .controlsClipboard = true},
     nullptr},
    {"no desktop", {}, nullptr},
};

void compare(const DesktopTrouble &trouble, const char *cure)
{
    QCOMPARE(trouble.isEmpty(), cure == nullptr);
    QCOMPARE(trouble.text().isEmpty(), trouble.isEmpty());
    if (trouble.isEmpty())
        return;
    QVERIFY2(trouble.cure.contains(QLatin1String(cure)), qPrintable(trouble.cure));
    // The status line shows the first sentence, and no more.
    QCOMPARE(trouble.text().section(QStringLiteral(". "), 0, 0) + QLatin1Char('.'), trouble.what);
}

template <size_t Count> void addRows(const Row (&rows)[Count])
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < int(Count); ++index)
        QTest::newRow(rows[index].name) << index;
}

} // namespace

class DesktopTroubleTest : public QObject
{
    Q_OBJECT

private slots:
    void onTop_data() { addRows(onTopRows); }

    void onTop()
    {
        QFETCH(int, index);
        const Row &row = onTopRows[index];
        compare(onTopTrouble(row.situation, applicationId), row.cure);
    }

    void clipboard_data() { addRows(clipboardRows); }

    void clipboard()
    {
        QFETCH(int, index);
        const Row &row = clipboardRows[index];
        compare(clipboardTrouble(row.situation), row.cure);
    }
};

TEST_CLASS(DesktopTroubleTest)
#include "DesktopTroubleTest.moc"

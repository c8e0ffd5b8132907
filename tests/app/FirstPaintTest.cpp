// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/FakeUdev.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QCheckBox>

namespace {

/// How things stand when a window is painted for the first time.
class FirstPaint : public QObject
{
public:
    explicit FirstPaint(QWidget &window) { window.installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::Paint || hasCome)
            return false;
        hasCome = true;
        stored = storedsettings::text();
        hadIcon = !QApplication::windowIcon().isNull();
        return false;
    }

    bool hasCome = false;
    bool hadIcon = false;
    QByteArray stored;
};

QCheckBox *boxWithTag(const PostalScaleAppDelegate &delegate, int tag)
{
    for (QCheckBox *box : delegate.optionBox->findChildren<QCheckBox *>()) {
        if (box->property("tag").toInt() == tag)
            return box;
    }
    return nullptr;
}

} // namespace

/// What the launch puts off until the window is drawn.
class FirstPaintTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        FakeHidapi::reset();
        fakeudev::reset();
    }

    void settingsAndIconComeAfterIt_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("no file") << QByteArray();
        // The carrier takes the clipboard's mark: what is stored after the start is another text.
        QTest::newRow("options") << QByteArray("[defaultValue]\n300=selected\n400=selected\n");
    }

    void settingsAndIconComeAfterIt()
    {
        QFETCH(QByteArray, stored);
        storedsettings::forget();
        if (!stored.isNull())
            storedsettings::store(stored);
        char name[] = "postal-scale";
        char *arguments[] = {name, nullptr};
        int count = 1;
        Application application(count, arguments);
        application.launch({});
        QCOMPARE(storedsettings::text(), stored);
        FirstPaint paint(*application.delegate()->window);

        QTRY_VERIFY(paint.hasCome);
        QCOMPARE(paint.stored, stored);
        QVERIFY(!paint.hadIcon);
        QTRY_VERIFY(!QApplication::windowIcon().isNull());
        QVERIFY(storedsettings::text().contains("lastSelectedValue=0"));
        QCOMPARE(storedsettings::options(),
                 stored.isNull() ? QStringList() : QStringList{QStringLiteral("400")});

        // From now on at once.
        boxWithTag(*application.delegate(), 100)->click();
        QVERIFY(storedsettings::options().contains(QStringLiteral("100")));
    }
};

TEST_CLASS(FirstPaintTest)
#include "FirstPaintTest.moc"

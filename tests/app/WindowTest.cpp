// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <algorithm>
#include <cmath>

using namespace std::chrono_literals;

namespace {

/// Longer than the program waits for a drag to come to rest.
constexpr auto rest = 1000ms;

constexpr QSize designed(900, 424);

/// The controls, and the words beside them.
QList<QWidget *> textWidgets(QMainWindow &window)
{
    QList<QWidget *> widgets;
    for (QWidget *widget : window.centralWidget()->findChildren<QWidget *>()) {
        const bool hasText = qobject_cast<QLabel *>(widget) ||
                             qobject_cast<QAbstractButton *>(widget) ||
                             qobject_cast<QComboBox *>(widget);
        if (hasText && widget->isVisibleTo(&window) && !widget->sizeHint().isEmpty())
            widgets.append(widget);
    }
    return widgets;
}

enum class Words { English, Long };

/// Half as long again, as translations get.
void lengthenWords(QMainWindow &window)
{
    const auto longer = [](const QString &text) { return text + text.left(text.size() / 2); };
    for (auto *button : window.centralWidget()->findChildren<QAbstractButton *>())
        button->setText(longer(button->text()));
    for (auto *label : window.centralWidget()->findChildren<QLabel *>())
        label->setText(longer(label->text()));
}

qreal luminance(const QColor &colour)
{
    const auto linear = [](float part) {
        return part <= 0.04045F ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// As the accessibility guidelines for web content define it.
qreal contrast(const QColor &one, const QColor &other)
{
    const qreal first = luminance(one) + 0.05;
    const qreal second = luminance(other) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

/// Of the text on @p background.
QColor seenColour(const QWidget &widget, QPalette::ColorGroup group, const QColor &background)
{
    const QColor ink = widget.palette().color(group, QPalette::WindowText);
    const auto *small = qobject_cast<const SmallLabel *>(&widget);
    const qreal opacity = ink.alphaF() * (small ? small->opacity() : 1);
    const auto mixed = [&](int inkPart, int backgroundPart) {
        return qRound(backgroundPart + (inkPart - backgroundPart) * opacity);
    };
    return QColor(mixed(ink.red(), background.red()), mixed(ink.green(), background.green()),
                  mixed(ink.blue(), background.blue()));
}

void resizeTo(QMainWindow &window, int width)
{
    window.resize(width, width * designed.height() / designed.width());
    LaunchedApplication::pass(rest);
}

} // namespace

/// Size, place and text of the window, on a desktop that leaves the proportion to the program.
class WindowTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void theOptionBoxLeavesTheWindowItsSize()
    {
        LaunchedApplication app(LaunchedApplication::Scale::Absent);
        QMainWindow &window = *app.delegate.window;
        app.pass(rest);
        const QSize smallest = window.minimumSizeHint();
        const QSize proper = window.sizeHint();
        for (const bool open : {true, false}) {
            app.delegate.optionAction();
            app.pass(rest);
            QCOMPARE(app.delegate.optionBox->isVisible(), open);
            QCOMPARE(window.minimumSizeHint(), smallest);
            QCOMPARE(window.sizeHint(), proper);
        }
    }

    void noTextIsCutOff_data()
    {
        QTest::addColumn<qreal>("pointSize");
        QTest::addColumn<Words>("words");
        QTest::addColumn<bool>("optionsOpen");
        QTest::addColumn<int>("width"); // 0: as narrow as it gets
        for (const bool optionsOpen : {false, true}) {
            for (const int width : {0, 900, 1350, 1800, 2400}) {
                for (const qreal pointSize : {8.0, 10.0, 13.0, 18.0}) {
                    QTest::addRow("%g pt, options %d, %d px", pointSize, optionsOpen, width)
                        << pointSize << Words::English << optionsOpen << width;
                }
                QTest::addRow("long words, options %d, %d px", optionsOpen, width)
                    << 10.0 << Words::Long << optionsOpen << width;
            }
        }
    }

    void noTextIsCutOff()
    {
        QFETCH(const qreal, pointSize);
        QFETCH(const Words, words);
        QFETCH(const bool, optionsOpen);
        QFETCH(const int, width);
        LaunchedApplication program(LaunchedApplication::Scale::Present);
        QFont font = QApplication::font();
        font.setPointSizeF(pointSize);
        QApplication::setFont(font);
        QMainWindow &window = *program.delegate.window;
        if (words == Words::Long)
            lengthenWords(window);
        if (optionsOpen)
            program.delegate.optionAction();
        LaunchedApplication::pass(rest);
        resizeTo(window, width);
        if (width == 0)
            QCOMPARE(window.size(), window.minimumSize());

        const QList<QWidget *> widgets = textWidgets(window);
        QVERIFY(widgets.size() > 15);
        for (QWidget *widget : widgets) {
            const QByteArray name = widget->objectName().toUtf8();
            const QRect place(widget->mapTo(&window, QPoint()), widget->size());
            QVERIFY2(place.width() >= widget->sizeHint().width(), name);
            QVERIFY2(place.height() >= widget->sizeHint().height(), name);
            QVERIFY2(window.rect().contains(place), name);
            for (QWidget *other : widgets) {
                const QRect otherPlace(other->mapTo(&window, QPoint()), other->size());
                QVERIFY2(other == widget || !otherPlace.intersects(place), name);
            }
        }
    }

    void textIsLegible_data()
    {
        QTest::addColumn<QByteArray>("isUSPS");
        QTest::newRow("USPS") << QByteArray("\"YES\"");
        QTest::newRow("plain") << QByteArray("\"NO\"");
    }

    void textIsLegible()
    {
        QFETCH(const QByteArray, isUSPS);
        LaunchedApplication program(LaunchedApplication::Scale::Absent,
                                    bundleInformation(isUSPS, nineModels));
        auto &delegate = program.delegate;
        const QColor background = delegate.boxContainer->palette().color(QPalette::Window);
        const QList<QWidget *> texts = {delegate.lblModel,      delegate.connectionStatuslbl,
                                        delegate.ozLBL,         delegate.lbLBL,
                                        delegate.exportCaption, delegate.settledLbl,
                                        delegate.leavesLbl,     delegate.rg1,
                                        delegate.rg2,           delegate.rg3,
                                        delegate.rg4,           delegate.rg5,
                                        delegate.rg6,           delegate.rg7};
        for (const QWidget *text : texts) {
            for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
                if (group == QPalette::Disabled && !qobject_cast<const QRadioButton *>(text))
                    continue;
                const qreal ratio = contrast(seenColour(*text, group, background), background);
                QVERIFY2(ratio >= 4.5, qPrintable(QStringLiteral("%1 in group %2: %3")
                                                      .arg(text->objectName())
                                                      .arg(group)
                                                      .arg(ratio)));
            }
        }
    }

    void theBrowsersHaveTheirLineWhileACarrierIsTicked()
    {
        LaunchedApplication program(LaunchedApplication::Scale::Absent);
        auto &delegate = program.delegate;
        const QString status = QStringLiteral("No browser linked");
        delegate.showBrowserStatus(status);
        const auto isSaid = [&] {
            const auto labels = delegate.window->statusBar()->findChildren<QLabel *>();
            return std::any_of(labels.begin(), labels.end(), [&](const QLabel *label) {
                return label->text() == status && label->isVisible();
            });
        };
        QVERIFY(!isSaid());
        delegate.checkUPS->click();
        QVERIFY(isSaid());
        delegate.checkFedex->click();
        delegate.checkUPS->click();
        QVERIFY(isSaid());
        delegate.checkFedex->click();
        QVERIFY(!isSaid());
    }

    void proportionIsKept()
    {
        LaunchedApplication program(LaunchedApplication::Scale::Absent);
        QMainWindow &window = *program.delegate.window;
        QCOMPARE(window.size(), designed);
        for (const QSize odd : {QSize(1200, 424), QSize(1000, 700), QSize(960, 440)}) {
            window.resize(odd);
            LaunchedApplication::pass(rest);
            const qreal height = qreal(window.width()) * designed.height() / designed.width();
            QVERIFY2(qAbs(window.height() - height) <= 1,
                     qPrintable(QStringLiteral("%1x%2").arg(window.width()).arg(window.height())));
        }
    }

    void whatAMaximisedWindowHasToSpareIsAroundItsContents()
    {
        LaunchedApplication program(LaunchedApplication::Scale::Absent);
        const auto &delegate = program.delegate;
        QMainWindow &window = *delegate.window;
        const QSize smallest = window.minimumSize();
        const auto aspect = [&] {
            return qreal(delegate.imageBox->width()) / delegate.imageBox->height();
        };
        const auto heightOfContents = [&] {
            const auto middle = [&](const QWidget *part) {
                return part->mapTo(&window, part->rect().center()).y();
            };
            return qreal(middle(delegate.exportCaption) - middle(delegate.lblModel)) /
                   delegate.imageBox->width();
        };
        const qreal designedHeight = heightOfContents();
        resizeTo(window, window.screen()->availableSize().width());
        const qreal undistorted = aspect();
        resizeTo(window, designed.width());
        window.showMaximized(); // to a square
        LaunchedApplication::pass(rest);
        QVERIFY(window.height() > window.width() * 9 / 10);
        QVERIFY2(qAbs(aspect() / undistorted - 1) < 0.02,
                 qPrintable(QStringLiteral("%1, %2").arg(aspect()).arg(undistorted)));
        QVERIFY(heightOfContents() < designedHeight * 1.2);
        QCOMPARE(window.minimumSize(), smallest);
        window.showNormal();
        LaunchedApplication::pass(rest);
        QCOMPARE(window.size(), designed);
        QCOMPARE(heightOfContents(), designedHeight);
    }

    void textGrowsWithTheWindowAndShrinksWithIt()
    {
        LaunchedApplication program(LaunchedApplication::Scale::Absent);
        QMainWindow &window = *program.delegate.window;
        const auto textHeight = [&] { return program.delegate.rg1->fontMetrics().height(); };
        const int designedHeight = textHeight();
        const QSize minimum = window.minimumSize();
        resizeTo(window, 1800);
        QVERIFY(textHeight() > designedHeight * 19 / 10);
        QVERIFY(textHeight() < designedHeight * 21 / 10);
        QCOMPARE(window.menuBar()->fontMetrics().height(), textHeight());
        // In one step, as a window manager does it.
        resizeTo(window, 0);
        QCOMPARE(textHeight(), designedHeight);
        QCOMPARE(window.size(), minimum);
    }

    void sizeAndPlaceComeBack()
    {
        const QRect left(40, 30, 1080, 509);
        {
            LaunchedApplication program(LaunchedApplication::Scale::Absent);
            program.delegate.window->setGeometry(left);
            LaunchedApplication::pass(rest);
            // Not closed: what a crash leaves behind counts too.
        }
        LaunchedApplication program(LaunchedApplication::Scale::Absent);
        QCOMPARE(program.delegate.window->geometry(), left);
    }

    void strangePlacesAreNotRestored()
    {
        for (const char *stored :
             {"@ByteArray()", "nonsense", "@ByteArray(\\x1\\xd9\\xd0\\xcb\\0)"}) {
            storedsettings::store(QByteArray("[General]\nwindowGeometry=") + stored + "\n");
            LaunchedApplication program(LaunchedApplication::Scale::Absent);
            QVERIFY2(program.delegate.window->size() == designed, stored);
        }
    }
};

TEST_CLASS(WindowTest)
#include "WindowTest.moc"

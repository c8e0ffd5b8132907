// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/AutofillForm.h"
#include "tests/rules/PageStates.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

#include <functional>
#include <vector>

namespace {

struct CurrentWeight : WeightTexts
{
    QString pounds() const override { return QString::fromStdString(texts.LB); }
    QString ounces() const override { return QString::fromStdString(texts.OZ); }
    QString exported() const override { return QString::fromStdString(texts.EXPORT); }
    QString grams() const override { return QString::fromStdString(texts.BASIC); }
    QString decimalPounds() const override { return ownPounds; }

    rules::WeightTexts texts;
    QString ownPounds; ///< empty: those of the grams
};

/// Answers from a page that nothing changes, and writes down what it is asked.
class PageBrowser : public BrowserApplication
{
public:
    std::vector<std::shared_ptr<const BrowserWindow>> windows() const override { return {}; }

    std::optional<QString> doJavaScript(const QString &text,
                                        const std::shared_ptr<const BrowserTab> &) override
    {
        scripts.push_back(text.toStdString());
        if (sent)
            sent(text);
        return answer(scripts.back());
    }

    rules::Page page;
    std::vector<std::string> scripts;
    std::function<void(const QString &text)> sent;

private:
    std::optional<QString> answer(const std::string &script) const
    {
        const auto quote = script.find('\'');
        const std::string name = script.substr(quote + 1, script.rfind('\'') - quote - 1);
        if (script.ends_with(".checked")) {
            const auto button = page.checked.find(name);
            if (button == page.checked.end())
                return std::nullopt;
            return button->second ? QStringLiteral("1") : QStringLiteral("0");
        }
        const auto field = page.fields.find(name);
        if (!script.ends_with(".value") || field == page.fields.end())
            return std::nullopt;
        return QString::fromStdString(field->second);
    }
};

const rules::WeightTexts kilogram{.LB = "2", .OZ = "4", .EXPORT = "2.2045", .BASIC = "1000"};

} // namespace

/// What is sent to a page, against the independent statement of the same lists.
class AutofillFormTest : public QObject
{
    Q_OBJECT

private:
    /// The USPS page only: the plain boxes, then the rows.
    void compareUsps(const rules::Page &page, const rules::WeightTexts &texts)
    {
        PageBrowser browser;
        browser.page = page;
        CurrentWeight weight;
        weight.texts = texts;
        LogCapture::lines().clear();
        AutofillForm form(browser, nullptr, weight);
        form.assign(uspsAssignments());
        form.fillUspsRows();

        const auto expected = rules::autofill(0, texts, {.SendtoUSPS = true}, page);
        QCOMPARE(browser.scripts, expected.scripts);
        QStringList log;
        for (const std::string &line : expected.log)
            log.append(QString::fromStdString(line));
        QCOMPARE(LogCapture::lines(), log);
    }

    void compareStates(const rules::PageStates &states)
    {
        compareUsps(rules::pageOf(states), kilogram);
    }

    void compareEach(const std::vector<rules::PageStates> &pages)
    {
        for (const rules::PageStates &states : pages) {
            compareStates(states);
            if (QTest::currentTestFailed())
                return;
        }
    }

    std::optional<LogCapture> m_capture; // the test framework captures the log before each function

private slots:
    /// A scale that has pounds of its own sends them everywhere, and none that were grams between.
    void poundsOfTheScaleItself()
    {
        PageBrowser browser;
        CurrentWeight weight;
        weight.texts = {.LB = "70", .OZ = "0", .EXPORT = "70", .BASIC = "31751.47"};
        const auto sent = [&](auto assignments) {
            browser.scripts.clear();
            AutofillForm(browser, nullptr, weight).assign(assignments);
            std::string all;
            for (const std::string &script : browser.scripts)
                all += script + '\n';
            return QString::fromStdString(all);
        };
        QVERIFY(sent(fedexAssignments()).contains(QStringLiteral("69.99")));
        weight.ownPounds = QStringLiteral("70.000");
        QVERIFY(sent(fedexAssignments()).contains(QStringLiteral("70.000")));
        for (const QString &texts :
             {sent(fedexAssignments()), sent(upsAssignments()), sent(uspsAssignments())}) {
            QVERIFY(texts.contains(QStringLiteral("70")));
            QVERIFY(!texts.contains(QStringLiteral("69.")));
        }
    }

    void init() { m_capture.emplace(); }
    void cleanup() { m_capture.reset(); }

    void assignmentLists_data()
    {
        QTest::addColumn<int>("carrier");
        QTest::newRow("UPS") << 1;
        QTest::newRow("FedEx") << 2;
    }

    void assignmentLists()
    {
        QFETCH(int, carrier);
        const auto list = carrier == 1 ? upsAssignments() : fedexAssignments();
        for (const char *grams : {"0", "1", "453.6", "454", "1000", "9999", "99990"}) {
            PageBrowser browser;
            CurrentWeight weight;
            weight.texts = kilogram;
            weight.texts.BASIC = grams;
            AutofillForm(browser, nullptr, weight).assign(list);
            rules::Page page;
            const auto expected = rules::autofill(carrier, weight.texts,
                                                  {.SendtoUPS = true, .SendtoFedex = true}, page);
            QCOMPARE(browser.scripts, expected.scripts);
        }
    }

    void everyPairOfRows() { compareEach(rules::everyPairOfRows(sweepStep(7))); }

    void everyCombinationOfBoxes() { compareEach(rules::everyCombinationOfBoxes(sweepStep(11))); }

    void everyCombinationOfChosenUnits()
    {
        constexpr int combinations = 4 * 4 * 4 * 4 * 4 * 3;
        for (int combination = 0; combination < combinations; combination += sweepStep(11)) {
            rules::PageStates states{};
            int rest = combination / 3;
            for (std::size_t row = 0; row < rules::pageRows; ++row) {
                states.at(row) = (rest % 2 + 1) * 9 + (rest / 2 % 2 + 1) * 27;
                rest /= 4;
            }
            states.back() = combination % 3;
            compareStates(states);
            if (QTest::currentTestFailed())
                return;
        }
    }

    void weights()
    {
        rules::Page page = rules::pageOf({3, 4, 5, 2, 2, 2}); // boxes in several states
        for (const auto &texts : {
                 rules::WeightTexts{.LB = "0", .OZ = "0", .EXPORT = "0", .BASIC = "0"},
                 rules::WeightTexts{.LB = "0", .OZ = "1", .EXPORT = "1", .BASIC = "1"},
                 rules::WeightTexts{.LB = "22", .OZ = "1", .EXPORT = "22.04", .BASIC = "9999"},
                 rules::WeightTexts{.LB = "220", .OZ = "7", .EXPORT = "220.4", .BASIC = "99990"},
             })
            compareUsps(page, texts);
    }

    void numbers_data()
    {
        QTest::addColumn<float>("number");
        QTest::addColumn<float>("expected");
        QTest::newRow("a kilogram in ounces")
            << totalOunces(QStringLiteral("2"), QStringLiteral("4")) << 36.0F;
        QTest::newRow("a kilogram in pounds")
            << totalPounds(QStringLiteral("2"), QStringLiteral("4")) << 2.25F;
        QTest::newRow("pounds of 1000 g") << poundsFromGrams(QStringLiteral("1000")) << 2.2045F;
        QTest::newRow("no number") << floatValue(QStringLiteral("pounds")) << 0.0F;
        QTest::newRow("no text") << floatValue(QString()) << 0.0F;
        QTest::newRow("leading number") << floatValue(QStringLiteral(" 2.5 lb")) << 2.5F;
    }

    void numbers()
    {
        QFETCH(float, number);
        QFETCH(float, expected);
        QCOMPARE(number, expected);
    }

    void poundsOfFedex_data()
    {
        QTest::addColumn<QString>("grams");
        QTest::addColumn<QString>("pounds");
        const auto row = [](const char *name, const char *grams, const char *pounds) {
            QTest::newRow(name) << QString::fromLatin1(grams) << QString::fromLatin1(pounds);
        };
        row("a pound", "453.6", "1.000");
        row("a kilogram, half of a thousandth lost", "1000", "2.204");
        row("6.613 if multiplied in single precision", "3000", "6.614");
        row("27.483 if multiplied in single precision", "12467", "27.484");
        row("29.737 if not narrowed to single precision", "13489", "29.736");
        row("34.242 if not narrowed to single precision", "15533", "34.243");
    }

    void poundsOfFedex()
    {
        QFETCH(QString, grams);
        CurrentWeight weight;
        weight.texts = kilogram;
        weight.texts.BASIC = grams.toStdString();
        PageBrowser browser;
        AutofillForm(browser, nullptr, weight).assign(fedexAssignments());
        QTEST(QString::fromStdString(browser.scripts.front()).section(QLatin1Char('='), 1),
              "pounds");
    }

    void numberTexts()
    {
        CurrentWeight weight;
        weight.texts = kilogram;
        QCOMPARE(scriptText(uspsRow(RowGroup::G11).total,
                            ProcedureTexts(weight).text(PageValue::TotalOunces)),
                 QStringLiteral("document.getElementsByName('ctl00$ContentPlaceHolder1$ctl11$"
                                "TextBoxWeight')[0].value=36.000000"));
    }

    /// A reading is not frozen at the start: what is sent is what stands when it is sent.
    void valuesAreReadWhenTheyAreSent()
    {
        PageBrowser browser;
        CurrentWeight weight;
        weight.texts = kilogram;
        browser.page = rules::pageOf({2, 2 + 9 * 2, 0, 0, 0, 0}); // 02 empty; 05 also "ounces"
        browser.sent = [&](const QString &text) {
            if (text.contains(QLatin1String("ctl02_ctl01")))
                weight.texts.LB = std::string(1, '3');
        };
        AutofillForm(browser, nullptr, weight).fillUspsRows();
        std::vector<std::string> assignments;
        for (const std::string &script : browser.scripts) {
            if (script.find(".value=") != std::string::npos)
                assignments.push_back(script);
        }
        const auto total = [](RowGroup group, const char *ounces) {
            return scriptText(uspsRow(group).total, QLatin1String(ounces)).toStdString();
        };
        QCOMPARE(assignments, (std::vector<std::string>{total(RowGroup::G05, "36.000000"),
                                                        total(RowGroup::G05, "52.000000"),
                                                        total(RowGroup::G02, "52.000000")}));
    }

    void aChoiceIsLoggedBeforeItIsServed()
    {
        PageBrowser browser;
        CurrentWeight weight;
        weight.texts = kilogram;
        browser.page = rules::pageOf({0, 0, 2 * 9 + 2 * 27, 0, 0, 2});
        browser.sent = [](const QString &text) {
            if (text.contains(QLatin1String(".value=")))
                LogCapture::lines().append(text.section(QLatin1Char('='), 1));
        };
        LogCapture::lines().clear();
        AutofillForm(browser, nullptr, weight).fillUspsRows();
        QCOMPARE(LogCapture::lines(),
                 (QStringList{QStringLiteral("Ounces is selected"), QStringLiteral("36.000000"),
                              QStringLiteral("Pound is selected"), QStringLiteral("2.250000"),
                              QStringLiteral("Enter Weight is selected"), QStringLiteral("2"),
                              QStringLiteral("4")}));
    }
};

TEST_CLASS_INSIDE(QCoreApplication, AutofillFormTest)
#include "AutofillFormTest.moc"

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/PostalScaleAppDelegate.h"
#include "browser/link/Browser.h"
#include "scale/SystemHidDevices.h"
#include "settings/Settings.h"
#include "tests/rules/AutofillRules.h"
#include "tests/support/TestClasses.h"

#include <QStandardPaths>
#include <QTemporaryDir>

namespace {

struct RecordedTab : BrowserTab
{
};

/// The delegate stands alone here, and has no scale.
class ScalelessApplication : public ScaleApplication
{
public:
    ScaleDelegate *delegate() const override { return nullptr; }
    HidDevices &devices() override { return m_machine; }

private:
    SystemHidDevices m_machine;
};

/// A browser that writes down what it is asked, in order, and answers nothing.
class RecordingBridge : public BrowserBridge
{
public:
    std::unique_ptr<BrowserApplication> application() override
    {
        calls.append(QStringLiteral("application"));
        return std::make_unique<Application>(*this);
    }

    void forget()
    {
        calls.clear();
        scripts.clear();
        windowCount = 2;
    }

    QStringList calls;
    std::vector<std::string> scripts;
    int windowCount = 2;

private:
    class Window : public BrowserWindow
    {
    public:
        Window(RecordingBridge &bridge, std::shared_ptr<const BrowserTab> tab, int index)
            : m_recorder(bridge)
            , m_shownTab(std::move(tab))
            , m_number(index)
        {
        }

        std::shared_ptr<const BrowserTab> currentTab() const override
        {
            m_recorder.calls.append(QStringLiteral("currentTab of %1").arg(m_number));
            return m_shownTab;
        }

    private:
        RecordingBridge &m_recorder;
        std::shared_ptr<const BrowserTab> m_shownTab;
        int m_number;
    };

    class Application : public BrowserApplication
    {
    public:
        explicit Application(RecordingBridge &bridge)
            : m_recorder(bridge)
        {
        }

        std::vector<std::shared_ptr<const BrowserWindow>> windows() const override
        {
            m_recorder.calls.append(QStringLiteral("windows"));
            std::vector<std::shared_ptr<const BrowserWindow>> all;
            for (int index = 0; index < m_recorder.windowCount; ++index)
                all.push_back(std::make_shared<Window>(
                    m_recorder, index == 0 ? m_recorder.m_firstTab : m_recorder.m_otherTab, index));
            return all;
        }

        std::optional<QString> doJavaScript(const QString &text,
                                            const std::shared_ptr<const BrowserTab> &tab) override
        {
            expectTab(tab, m_recorder.windowCount > 0 ? m_recorder.m_firstTab : nullptr);
            m_recorder.scripts.push_back(text.toStdString());
            return std::nullopt;
        }

    private:
        static void expectTab(const std::shared_ptr<const BrowserTab> &tab,
                              const std::shared_ptr<const BrowserTab> &expected)
        {
            QCOMPARE(tab, expected);
        }

        RecordingBridge &m_recorder;
    };

    std::shared_ptr<const BrowserTab> m_firstTab = std::make_shared<RecordedTab>();
    std::shared_ptr<const BrowserTab> m_otherTab = std::make_shared<RecordedTab>();
};

const QStringList fetched{QStringLiteral("application"), QStringLiteral("windows"),
                          QStringLiteral("currentTab of 0")};

} // namespace

/// The operation of the delegate over a browser that stands in for the real one.
class AutofillTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_home;
    std::unique_ptr<ScalelessApplication> m_application;
    std::unique_ptr<Settings> m_settings;
    RecordingBridge m_browser;
    std::unique_ptr<PostalScaleAppDelegate> m_delegate;

    const rules::WeightTexts m_weight{.LB = "2", .OZ = "4", .EXPORT = "2.2045", .BASIC = "1000"};

private slots:
    void initTestCase()
    {
        qputenv("XDG_CONFIG_HOME", m_home.path().toLocal8Bit());
        m_application = std::make_unique<ScalelessApplication>();
        m_settings = std::make_unique<Settings>();
        m_delegate = std::make_unique<PostalScaleAppDelegate>(BundleInformation::load(QString()),
                                                              *m_settings, m_browser);
        m_delegate->hid_obj->setSWebDataLB(QString::fromStdString(m_weight.LB));
        m_delegate->hid_obj->setSWebDataOZ(QString::fromStdString(m_weight.OZ));
        m_delegate->hid_obj->setSWebDataBasic(QString::fromStdString(m_weight.BASIC));
        m_delegate->lbLBL->setText(QString::fromStdString(m_weight.EXPORT));
    }

    void cleanupTestCase()
    {
        m_delegate.reset();
        m_settings.reset();
    }

    void everyCarrierUnderEveryFlag()
    {
        for (const int flagUsps : {0, 1, 2, 255}) {
            for (const int flagUps : {0, 1, 2, 255}) {
                for (const int flagFedex : {0, 1, 2, 255}) {
                    for (const int carrier : {-1, 0, 1, 2, 3, 4, 256}) {
                        m_delegate->SendtoUSPS = static_cast<std::uint8_t>(flagUsps);
                        m_delegate->SendtoUPS = static_cast<std::uint8_t>(flagUps);
                        m_delegate->SendtoFedex = static_cast<std::uint8_t>(flagFedex);
                        m_browser.forget();
                        m_delegate->Autofill(carrier);
                        const auto expected = rules::autofill(carrier, m_weight,
                                                              {.SendtoUSPS = flagUsps == 1,
                                                               .SendtoUPS = flagUps == 1,
                                                               .SendtoFedex = flagFedex == 1},
                                                              rules::Page());
                        QCOMPARE(m_browser.scripts, expected.scripts);
                        QCOMPARE(m_browser.calls, fetched);
                    }
                }
            }
        }
    }

    void scriptsPerCarrier_data()
    {
        QTest::addColumn<int>("carrier");
        QTest::addColumn<int>("flag");
        QTest::addColumn<int>("scripts");
        QTest::newRow("USPS off") << 0 << 0 << 6;
        QTest::newRow("USPS on") << 0 << 1 << 6 + 8 + 11;
        QTest::newRow("UPS off") << 1 << 0 << 0;
        QTest::newRow("UPS on") << 1 << 1 << 28;
        QTest::newRow("FedEx off") << 2 << 0 << 0;
        QTest::newRow("FedEx on") << 2 << 1 << 13;
        QTest::newRow("no carrier") << 3 << 1 << 0;
    }

    void scriptsPerCarrier()
    {
        QFETCH(int, carrier);
        QFETCH(int, flag);
        QFETCH(int, scripts);
        const auto value = static_cast<std::uint8_t>(flag);
        m_delegate->SendtoUSPS = m_delegate->SendtoUPS = m_delegate->SendtoFedex = value;
        m_browser.forget();
        m_delegate->Autofill(carrier);
        QCOMPARE(m_browser.scripts.size(), static_cast<std::size_t>(scripts));
    }

    void theFirstWindowIsFetchedEachTime()
    {
        m_browser.forget();
        m_delegate->Autofill(3);
        m_delegate->Autofill(0);
        QCOMPARE(m_browser.calls, fetched + fetched);
    }

    void withoutAWindowTheScriptsGoNowhere()
    {
        m_browser.forget();
        m_browser.windowCount = 0;
        m_delegate->SendtoUPS = 1;
        m_delegate->Autofill(1);
        QCOMPARE(m_browser.scripts.size(), std::size_t(28));
    }
};

TEST_CLASS_INSIDE(QApplication, AutofillTest)
#include "AutofillTest.moc"

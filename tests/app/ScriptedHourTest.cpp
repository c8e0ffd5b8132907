// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/ScaleModel.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QClipboard>
#include <QCryptographicHash>
#include <QFile>
#include <optional>
#include <random>

using namespace std::chrono_literals;

namespace {

using Scale = LaunchedApplication::Scale;

/// Of the program as it was before there were settled weights. Whoever changes on purpose what the
/// program logs, sends or exports finds out here how far that reaches: with
/// POSTAL_SCALE_TRANSCRIPT=FILE the test writes the whole text, to be compared line by line.
const QByteArray expectedTranscript =
    "c819dc90d231476e84fb7d838574ace0f66d023f55e346e1a0e4d3f2ad018d98";

/// What happened, in order. Hours of it are too long to be kept.
class Transcript
{
public:
    Transcript()
    {
        const QString name = qEnvironmentVariable("POSTAL_SCALE_TRANSCRIPT");
        if (name.isEmpty())
            return;
        m_file.setFileName(name);
        if (!m_file.open(QIODevice::WriteOnly))
            qFatal("%s", qPrintable(m_file.errorString()));
    }

    void add(const QString &line)
    {
        const QByteArray bytes = line.toUtf8() + '\n';
        m_hash.addData(bytes);
        m_file.isOpen() ? void(m_file.write(bytes)) : void();
        ++lines;
    }

    QByteArray hash() const { return m_hash.result().toHex(); }

    int lines = 0;

private:
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
    QFile m_file;
};

/// A page in which every other question finds an empty field or a ticked box.
class TranscribedBrowser : public BrowserBridge
{
public:
    explicit TranscribedBrowser(Transcript &transcript)
        : m_written(transcript)
    {
    }

    std::unique_ptr<BrowserApplication> application() override
    {
        return std::make_unique<Application>(m_written);
    }

private:
    class Window : public BrowserWindow
    {
    public:
        std::shared_ptr<const BrowserTab> currentTab() const override
        {
            return std::make_shared<BrowserTab>();
        }
    };

    class Application : public BrowserApplication
    {
    public:
        explicit Application(Transcript &transcript)
            : m_written(transcript)
        {
        }

        std::vector<std::shared_ptr<const BrowserWindow>> windows() const override
        {
            return {std::make_shared<Window>()};
        }

        std::optional<QString> doJavaScript(const QString &text,
                                            const std::shared_ptr<const BrowserTab> &) override
        {
            m_written.add(QStringLiteral("script ") + text);
            if (text.size() % 2 == 0)
                return std::nullopt;
            return text.endsWith(QLatin1String("checked")) ? QStringLiteral("1") : QString();
        }

    private:
        Transcript &m_written;
    };

    Transcript &m_written;
};

/// A person at a scale, who does something every now and then, always the same things.
class ScriptedHour
{
public:
    ScriptedHour()
        : m_browser(m_transcript)
        , m_app(Scale::Present, {}, {}, &m_browser)
    {
        QGuiApplication::clipboard()->setText(QStringLiteral("something else"));
        m_app.hidapi.duringSend = [this] { answer(); };
        m_app.forgetTraffic(); // it names the machine's system
    }

    void pass(std::chrono::seconds time)
    {
        for (auto gone = 0s; gone < time; ++gone) {
            if (m_random() % 4 == 0)
                actOnce();
            LaunchedApplication::pass(1000ms, 50ms);
            write();
        }
    }

    const Transcript &transcript() const { return m_transcript; }

private:
    /// As the firmware does.
    void answer()
    {
        const auto report = m_app.hidapi.sent.back();
        QString text = QStringLiteral("report");
        for (const std::uint8_t byte : report)
            text += QStringLiteral(" %1").arg(byte, 2, 16, QLatin1Char('0'));
        m_transcript.add(text);
        const auto reply = m_scale.receive(std::span(report).subspan(1));
        if (reply)
            m_app.hidapi.reports.emplace_back(reply->begin(), reply->end());
    }

    /// Parcels for the most part.
    void actOnce()
    {
        const auto which = static_cast<unsigned>(m_random() % 24);
        PostalScaleAppDelegate &window = m_app.delegate;
        m_transcript.add(QStringLiteral("act %1").arg(which));
        if (which < 9)
            m_scale.setLoad(which % 2 == 0 ? 0 : int(m_random() % 5000));
        else if (which < 13)
            clickUnit(int(m_random() % 7));
        else if (which == 13)
            window.holdButton->click();
        else if (which == 14)
            window.tareButton->click();
        else if (which == 15)
            window.powerButton->click();
        else if (which == 16)
            m_app.hidapi.readFails = !m_app.hidapi.readFails;
        else if (which == 17)
            plugAnew();
        else if (which == 18)
            chooseModel(int(m_random() % 9));
        else if (which < 22)
            clickBox(int(m_random() % 5) + 1);
        else
            triggerItem(int(m_random() % 5));
    }

    void clickUnit(int row)
    {
        QAbstractButton *cell = m_app.delegate.radiogroup->buttons().at(row);
        if (cell->isEnabled())
            cell->click();
    }

    void plugAnew()
    {
        m_app.unplug();
        // The timer notices; otherwise each plug would add one.
        LaunchedApplication::pass(1000ms, 50ms);
        m_scale.setType(m_random() % 2 == 0 ? ScaleModel::Type::PackedDecimal
                                            : ScaleModel::Type::BinaryTenthOunces);
        m_scale.plugIn();
        m_app.plug();
    }

    void chooseModel(int index)
    {
        m_app.delegate.optionButton->setCurrentIndex(index);
        m_app.delegate.modelSelectionAction();
    }

    void clickBox(int index)
    {
        const PostalScaleAppDelegate &form = m_app.delegate;
        QList{form.checkOnTop, form.checkRoundTo, form.checkClipboard,
              form.checkUSPS,  form.checkUPS,     form.checkFedex}
            .at(index)
            ->click();
    }

    void triggerItem(int index)
    {
        const PostalScaleAppDelegate &form = m_app.delegate;
        QList{form.mnuRoundToInt, form.mnuSendToClip, form.mnuSendToUSPS, form.mnuSendToUPS,
              form.mnuSendToFEDX}
            .at(index)
            ->trigger();
    }

    void write()
    {
        for (const QString &line : std::as_const(m_app.log.lines()))
            m_transcript.add(line);
        m_app.log.lines().clear();
        m_app.hidapi.sent.clear();
        const PostalScaleAppDelegate &form = m_app.delegate;
        m_transcript.add(QStringLiteral("label %1, clipboard %2, panel %3, status %4, title %5, "
                                        "last option %6, flags %7 %8 %9")
                             .arg(form.lbLBL->text(), QGuiApplication::clipboard()->text(),
                                  form.imageBox->accessibleName(), form.connectionStatuslbl->text(),
                                  form.window->windowTitle(), form.selectionLbl->text())
                             .arg(form.SendtoUSPS)
                             .arg(form.SendtoUPS)
                             .arg(form.SendtoFedex));
    }

    std::mt19937 m_random{20261121};
    Transcript m_transcript;
    TranscribedBrowser m_browser;
    ScaleModel m_scale;
    LaunchedApplication m_app;
};

} // namespace

/// Nothing of what the program logs, sends and exports depends on what was added beside it.
class ScriptedHourTest : public QObject
{
    Q_OBJECT

private slots:
    void anHour()
    {
        storedsettings::forget();
        std::optional<ScriptedHour> hour;
        hour.emplace();
        hour->pass(3600s);
        QVERIFY(hour->transcript().lines > 100'000);
        QCOMPARE(hour->transcript().hash(), expectedTranscript);
    }
};

TEST_CLASS(ScriptedHourTest)
#include "ScriptedHourTest.moc"

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserLink.h"

#include <QLocalSocket>
#include <algorithm>

using namespace std::chrono_literals;

namespace {

/// As long as three readings take. When none has come by then, no option is on any more, and the
/// page counts as merely open.
constexpr auto readingShown = 1200ms;

/// Pages whose latest reading is remembered: enough for those that a person turns to and fro.
constexpr qsizetype mostPageReadings = 16;

const QLatin1String assignmentMark("].value=");

bool isAssignment(const QString &text)
{
    return text.contains(assignmentMark);
}

class LinkedTab : public BrowserTab
{
public:
    LinkedTab(BrowserClient *browser, std::uint32_t page)
        : client(browser)
        , pageId(page)
    {
    }

    QPointer<BrowserClient> client;
    std::uint32_t pageId;
};

class LinkedWindow : public BrowserWindow
{
public:
    explicit LinkedWindow(BrowserClient *browser)
        : m_client(browser)
    {
    }

    std::shared_ptr<const BrowserTab> currentTab() const override
    {
        if (!m_client || !m_client->currentPage())
            return nullptr;
        return std::make_shared<LinkedTab>(m_client, m_client->currentPage()->id);
    }

private:
    QPointer<BrowserClient> m_client;
};

} // namespace

class LinkedApplication : public BrowserApplication
{
public:
    explicit LinkedApplication(BrowserLink &link)
        : m_link(link)
    {
    }

    std::vector<std::shared_ptr<const BrowserWindow>> windows() const override
    {
        BrowserClient *front = m_link.frontClient();
        if (front == nullptr)
            return {};
        return {std::make_shared<LinkedWindow>(front)};
    }

    std::optional<QString> doJavaScript(const QString &text,
                                        const std::shared_ptr<const BrowserTab> &tab) override
    {
        if (!isAssignment(text))
            return ask({text}, tab).constFirst();
        if (const auto linked = openTab(tab)) {
            linked->client->post(linked->pageId, text);
            m_hasSent = true;
        }
        return std::nullopt;
    }

    bool hasSent() const override { return m_hasSent; }

    QList<BrowserResult> ask(const QStringList &questions,
                             const std::shared_ptr<const BrowserTab> &tab) override
    {
        const QList<BrowserResult> unanswered(questions.size(), std::nullopt);
        const auto linked = openTab(tab);
        if (!linked)
            return unanswered;
        m_hasSent = true;
        const QList<BrowserResult> results =
            linked->client->ask(linked->pageId, questions, m_link.m_readingDeadline);
        if (!results.isEmpty())
            return results;
        // Whatever follows for this page would rest on the answers. What was posted before went
        // out with the questions, or goes with the end of the reading: it rests on nothing.
        abandon(*linked);
        return unanswered;
    }

private:
    /// Null where nothing more of this reading is to be sent.
    std::shared_ptr<const LinkedTab> openTab(const std::shared_ptr<const BrowserTab> &tab)
    {
        auto linked = std::dynamic_pointer_cast<const LinkedTab>(tab);
        if (!linked || !linked->client || !linked->client->isLinked() ||
            linked->client->isSilent(linked->pageId))
            return nullptr;
        m_link.joinReading();
        const auto &reading = m_link.joinPage(linked->client, linked->pageId);
        return reading.course == BrowserLink::PageReading::Course::Whole ? linked : nullptr;
    }

    void abandon(const LinkedTab &tab)
    {
        using Course = BrowserLink::PageReading::Course;
        // A browser whose page is gone says so at once.
        const bool isLate = m_link.m_readingDeadline.hasExpired() ||
                            tab.client->isAwaited(tab.pageId) || tab.client->isSilent(tab.pageId);
        m_link.joinPage(tab.client, tab.pageId).course =
            isLate ? Course::AnswerMissed : Course::PageGone;
    }

    BrowserLink &m_link;
    bool m_hasSent = false;
};

BrowserLink::BrowserLink(QObject *parent)
    : QObject(parent)
    , m_server([this](QLocalSocket *peer) { attach(peer); })
{
    m_readingFade.setSingleShot(true);
    m_readingFade.setInterval(readingShown);
    connect(&m_readingFade, &QTimer::timeout, this, &BrowserLink::updateSituation);
    m_silenceCheck.setSingleShot(true);
    m_silenceCheck.setInterval(BrowserClient::answerTime + 20ms);
    connect(&m_silenceCheck, &QTimer::timeout, this, &BrowserLink::updateSituation);
}

BrowserLink::~BrowserLink() = default;

std::unique_ptr<BrowserApplication> BrowserLink::application()
{
    return std::make_unique<LinkedApplication>(*this);
}

bool BrowserLink::listenAt(const QString &path)
{
    const bool listens = m_server.listenAt(path);
    updateSituation();
    return listens;
}

void BrowserLink::attach(QLocalSocket *peer)
{
    if (m_clients.size() >= PeerLimits::mostPeers) {
        peer->abort();
        peer->deleteLater();
        return;
    }
    auto *client = new BrowserClient(peer, this);
    m_clients.append(client);
    connect(client, &BrowserClient::changed, this, &BrowserLink::updateSituation);
    connect(client, &BrowserClient::ran, this,
            [this, client](std::uint32_t page, const QStringList &texts,
                           const QList<BrowserResult> &results) {
                countFields(client, page, texts, results);
            });
    connect(client, &BrowserClient::sent, &m_silenceCheck, qOverload<>(&QTimer::start));
    connect(client, &BrowserClient::closed, this, [this, client] { detach(client); });
}

void BrowserLink::detach(BrowserClient *client)
{
    m_clients.removeOne(client);
    client->deleteLater();
    updateSituation();
}

BrowserClient *BrowserLink::frontClient() const
{
    BrowserClient *front = nullptr;
    for (BrowserClient *client : m_clients) {
        if (client->isLinked() && (front == nullptr || client->lastFocus() > front->lastFocus()))
            front = client;
    }
    return front;
}

void BrowserLink::joinReading()
{
    if (m_inReading)
        return;
    m_inReading = true;
    ++m_readingNumber;
    m_readingDeadline.setRemainingTime(BrowserClient::answerTime);
    QMetaObject::invokeMethod(this, &BrowserLink::endReading, Qt::QueuedConnection);
}

void BrowserLink::endReading()
{
    m_inReading = false;
    const QList<BrowserClient *> attached = m_clients; // one that is gone takes itself off the list
    for (BrowserClient *client : attached)
        client->flush();
    m_readingFade.start();
    updateSituation();
}

BrowserLink::PageReading &BrowserLink::joinPage(BrowserClient *client, std::uint32_t page)
{
    const qsizetype place = placeOfReading(client, page);
    if (place >= 0 && m_pageReadings.at(place).number == m_readingNumber)
        return m_pageReadings[place];
    if (place >= 0)
        m_pageReadings.removeAt(place);
    else if (m_pageReadings.size() >= mostPageReadings)
        m_pageReadings.removeFirst();
    m_pageReadings.append({.client = client, .page = page, .number = m_readingNumber});
    return m_pageReadings.last();
}

qsizetype BrowserLink::placeOfReading(const BrowserClient *client, std::uint32_t page) const
{
    const auto found = std::find_if(m_pageReadings.begin(), m_pageReadings.end(),
                                    [client, page](const PageReading &each) {
                                        return each.client == client && each.page == page;
                                    });
    return found == m_pageReadings.end() ? -1 : found - m_pageReadings.begin();
}

void BrowserLink::countFields(const BrowserClient *client, std::uint32_t page,
                              const QStringList &texts, const QList<BrowserResult> &results)
{
    const qsizetype place = placeOfReading(client, page);
    if (place < 0)
        return;
    QSet<QString> &written = m_pageReadings[place].writtenFields;
    const qsizetype writtenBefore = written.size();
    for (qsizetype index = 0; index < results.size(); ++index) {
        const QString &text = texts.at(index);
        if (results.at(index) && isAssignment(text))
            written.insert(text.left(text.indexOf(assignmentMark)));
    }
    const std::optional<BrowserPage> &current = client->currentPage();
    if (written.size() > writtenBefore && current && current->id == page)
        emit pageWritten(carrierName(current->host));
    // A page that was silent gets its next reading from now on.
    m_readingFade.start();
}

void BrowserLink::updateSituation()
{
    if (isFilling())
        return;
    const QString before = statusText();
    m_situation = currentSituation();
    if (statusText() != before)
        emit statusTextChanged(statusText());
}

bool BrowserLink::isFilling() const
{
    const BrowserClient *front = frontClient();
    return m_inReading ||
           (front != nullptr && front->currentPage() && front->isAwaited(front->currentPage()->id));
}

BrowserSituation BrowserLink::currentSituation() const
{
    using Kind = BrowserSituation::Kind;
    const BrowserClient *front = frontClient();
    if (front == nullptr) {
        const auto stranger =
            std::find_if(m_clients.begin(), m_clients.end(),
                         [](const auto *client) { return client->extension().has_value(); });
        if (!m_server.trouble().isEmpty())
            return {.kind = Kind::Impossible, .name = m_server.trouble()};
        if (stranger == m_clients.end())
            return {.kind = Kind::NoBrowser};
        return {.kind = Kind::WrongVersion, .name = (*stranger)->extension()->version};
    }
    if (!front->currentPage())
        return {.kind = Kind::NoCarrierPage};
    return situationOfPage(*front, *front->currentPage());
}

BrowserSituation BrowserLink::situationOfPage(const BrowserClient &client,
                                              const BrowserPage &page) const
{
    using Kind = BrowserSituation::Kind;
    if (client.isSilent(page.id))
        return {.kind = Kind::NotAnswering};
    const qsizetype place = placeOfReading(&client, page.id);
    if (place < 0 || !m_readingFade.isActive())
        return {.kind = Kind::PageOpen, .name = page.host};
    const PageReading &latest = m_pageReadings.at(place);
    if (latest.course == PageReading::Course::AnswerMissed)
        return {.kind = Kind::NotAnswering};
    if (latest.writtenFields.isEmpty())
        return {.kind = Kind::PageOpen, .name = page.host};
    return {.kind = Kind::Filling, .name = page.host, .fields = latest.writtenFields.size()};
}

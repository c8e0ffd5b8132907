// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserLink.h"

#include "sockets/LocalSocket.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// As long as three readings take. When none has come by then, no option is on any more, and the
/// page counts as merely open.
constexpr auto readingShown = 1200ms;

/// Pages whose latest reading is remembered: enough for those that a person turns to and fro.
constexpr qsizetype mostPageReadings = 16;

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

    std::optional<QString> doJavaScript(const QString &,
                                        const std::shared_ptr<const BrowserTab> &) override
    {
        return std::nullopt;
    }

    bool takesPlans() const override { return true; }

    void post(const FillPlan &plan, const std::shared_ptr<const BrowserTab> &tab) override
    {
        const auto linked = std::dynamic_pointer_cast<const LinkedTab>(tab);
        if (!linked || !linked->client || !linked->client->isLinked() || plan.steps.isEmpty())
            return;
        m_link.joinReading();
        m_link.m_latestPlans.append(plan);
        linked->client->post(linked->pageId, plan);
        m_hasSent = true;
    }

    bool hasSent() const override { return m_hasSent; }

private:
    BrowserLink &m_link;
    bool m_hasSent = false;
};

BrowserLink::BrowserLink(QObject *parent)
    : QObject(parent)
    , m_server([this](LocalSocket *peer) { attach(peer); })
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

void BrowserLink::forgetWaiting()
{
    for (BrowserClient *client : std::as_const(m_clients))
        client->forgetWaiting();
}

void BrowserLink::stopFilling(const QString &carrier)
{
    for (BrowserClient *client : std::as_const(m_clients))
        client->forgetWaiting(carrier);
    m_wentOff.append(carrier);
    updateSituation();
}

void BrowserLink::setWeightSource(std::function<BrowserWeight()> source)
{
    m_weightSource = std::move(source);
}

bool BrowserLink::isWeightFollowed() const
{
    const BrowserClient *front = frontClient();
    return front != nullptr && front->followsWeight();
}

void BrowserLink::tellWeight(const BrowserWeight &weight)
{
    if (isWeightFollowed())
        frontClient()->tell(weight);
}

bool BrowserLink::listenAt(const QString &path)
{
    const bool listens = m_server.listenAt(path);
    updateSituation();
    return listens;
}

void BrowserLink::attach(LocalSocket *peer)
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
            [this, client](std::uint32_t page, const QList<FillPlan> &plans,
                           const std::optional<FilledFields> &fields) {
                noteFields(client, page, plans, fields);
            });
    connect(client, &BrowserClient::weightAsked, this,
            [this, client] { client->tell(m_weightSource ? m_weightSource() : BrowserWeight()); });
    connect(client, &BrowserClient::sent, &m_silenceCheck, qOverload<>(&QTimer::start));
    connect(client, &BrowserClient::closed, this, [this, client] { detach(client); });
    // Whoever only looked whether somebody serves here had gone before it was greeted.
    if (!peer->isConnected())
        detach(client);
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
    m_latestPlans.clear();
    m_wentOff.clear();
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

qsizetype BrowserLink::placeOfReading(const BrowserClient *client, std::uint32_t page) const
{
    const auto found = std::find_if(m_pageReadings.begin(), m_pageReadings.end(),
                                    [client, page](const PageReading &each) {
                                        return each.client == client && each.page == page;
                                    });
    return found == m_pageReadings.end() ? -1 : found - m_pageReadings.begin();
}

bool BrowserLink::isOfLatestReading(const QList<FillPlan> &plans) const
{
    return std::all_of(plans.begin(), plans.end(),
                       [this](const FillPlan &plan) { return m_latestPlans.contains(plan); });
}

bool BrowserLink::isWanted(const BrowserPage &page) const
{
    const auto isServed = [this](const FillPlan &plan) {
        return !m_wentOff.contains(plan.carrier);
    };
    return !m_wentOff.contains(carrierName(page.host)) &&
           std::any_of(m_latestPlans.begin(), m_latestPlans.end(), isServed);
}

void BrowserLink::noteFields(BrowserClient *client, std::uint32_t page,
                             const QList<FillPlan> &plans,
                             const std::optional<FilledFields> &fields)
{
    if (const qsizetype place = placeOfReading(client, page); place >= 0)
        m_pageReadings.removeAt(place);
    else if (m_pageReadings.size() >= mostPageReadings)
        m_pageReadings.removeFirst();
    m_pageReadings.append(
        {.client = client, .page = page, .fields = fields.value_or(FilledFields())});
    const std::optional<BrowserPage> &current = client->currentPage();
    // A late answer is of an earlier reading, unless that had the same texts.
    if (fields && fields->written > fields->changed && isOfLatestReading(plans) && current &&
        current->id == page)
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
    const FilledFields fields = place < 0 ? FilledFields() : m_pageReadings.at(place).fields;
    // Another number stands there until the next reading, however long that takes.
    const bool isShown = m_readingFade.isActive() || (isWanted(page) && fields.changed > 0);
    if (fields.written == 0 || !isShown)
        return {.kind = Kind::PageOpen, .name = page.host};
    return {.kind = Kind::Filling,
            .name = page.host,
            .fields = fields.written,
            .otherNumbers = fields.changed};
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/CarrierPages.h"

#include "export/AutofillForm.h"
#include "export/ExportState.h"
#include "scale/ScaleLink.h"
#include "scale/ScaleSession.h"

#include <QLabel>

namespace {

class LatestReading : public WeightTexts
{
public:
    LatestReading(const ScaleSession &session, const QLabel &exportLabel)
        : m_texts(session.link().webTexts())
        , m_exportLabel(exportLabel)
    {
    }

    QString pounds() const override { return m_texts.pounds; }
    QString ounces() const override { return m_texts.ounces; }
    QString exported() const override { return m_exportLabel.text(); }
    QString grams() const override { return m_texts.basic; }
    QString decimalPounds() const override { return m_texts.decimalPounds; }

private:
    WebStrings m_texts;
    const QLabel &m_exportLabel;
};

/// Empty for a number that is none.
QString nameOfCarrier(int number)
{
    switch (number) {
    case carrier::usps: return QStringLiteral("USPS");
    case carrier::ups: return QStringLiteral("UPS");
    case carrier::fedex: return QStringLiteral("FedEx");
    default: return {};
    }
}

} // namespace

CarrierPages::CarrierPages(BrowserBridge &browsers, const ScaleSession &session,
                           const QLabel &exportLabel, ExportState &state)
    : m_browsers(browsers)
    , m_session(session)
    , m_exportLabel(exportLabel)
    , m_state(state)
{
}

void CarrierPages::Autofill(int number)
{
    // All of it anew each time: the user may have changed window or tab since.
    m_state.safari = m_browsers.application();
    m_state.windows = m_state.safari->windows();
    m_state.currentTab = m_state.windows.empty() ? nullptr : m_state.windows.front()->currentTab();

    const LatestReading weight(m_session, m_exportLabel);
    AutofillForm form(*m_state.safari, m_state.currentTab, weight, nameOfCarrier(number));
    switch (number) {
    case carrier::fedex:
        if (m_state.SendtoFedex == 1)
            form.assign(fedexAssignments());
        break;
    case carrier::ups:
        if (m_state.SendtoUPS == 1)
            form.assign(upsAssignments());
        break;
    case carrier::usps:
        form.assign(uspsAssignments());
        if (m_state.SendtoUSPS == 1)
            form.fillUspsRows();
        break;
    default: break;
    }
}

void CarrierPages::forgetWaiting()
{
    m_browsers.forgetWaiting();
}

void CarrierPages::stopFilling(int number)
{
    m_browsers.stopFilling(nameOfCarrier(number));
}

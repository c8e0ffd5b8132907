// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/browser/CarrierFill.h"

#include "browser/link/BrowserLink.h"
#include "export/AutofillForm.h"

#include <QCoreApplication>

namespace {

class Kilogram : public WeightTexts
{
public:
    QString pounds() const override { return QStringLiteral("2"); }
    QString ounces() const override { return QStringLiteral("4"); }
    QString exported() const override { return QStringLiteral("2.205"); }
    QString grams() const override { return QStringLiteral("1000"); }
};

class PlanTaker : public BrowserApplication
{
public:
    std::vector<std::shared_ptr<const BrowserWindow>> windows() const override { return {}; }

    std::optional<QString> doJavaScript(const QString &,
                                        const std::shared_ptr<const BrowserTab> &) override
    {
        return std::nullopt;
    }

    bool takesPlans() const override { return true; }

    void post(const FillPlan &posted, const std::shared_ptr<const BrowserTab> &) override
    {
        plan.append(posted);
    }

    FillPlan plan;
};

} // namespace

void fillCarrier(const QString &carrier, BrowserApplication &browser)
{
    const auto windows = browser.windows();
    const auto tab = windows.empty() ? nullptr : windows.front()->currentTab();
    const Kilogram weight;
    AutofillForm form(browser, tab, weight);
    if (carrier == QLatin1String("UPS")) {
        form.assign(upsAssignments());
    } else if (carrier == QLatin1String("FedEx")) {
        form.assign(fedexAssignments());
    } else {
        form.assign(uspsAssignments());
        form.fillUspsRows();
    }
}

FillPlan carrierPlan(const QString &carrier)
{
    PlanTaker browser;
    fillCarrier(carrier, browser);
    return browser.plan;
}

void waitForPage(const BrowserLink &link)
{
    while (!link.statusText().contains(QLatin1String("page open")))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

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

void waitForPage(const BrowserLink &link)
{
    while (!link.statusText().contains(QLatin1String("page open")))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

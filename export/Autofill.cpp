// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The weight on the carrier's page.

#include "app/PostalScaleAppDelegate.h"

#include "export/AutofillForm.h"
#include "scale/HIDManager.h"

namespace {

enum Carrier { USPS = 0, UPS = 1, Fedex = 2 };

class LatestReading : public WeightTexts
{
public:
    LatestReading(const HIDManager &scaleLink, const QLabel &exportLabel)
        : link(scaleLink)
        , label(exportLabel)
    {
    }

    QString pounds() const override { return link.sWebDataLB(); }
    QString ounces() const override { return link.sWebDataOZ(); }
    QString exported() const override { return label.text(); }
    QString grams() const override { return link.sWebDataBasic(); }

private:
    const HIDManager &link;
    const QLabel &label;
};

} // namespace

void PostalScaleAppDelegate::Autofill(int carrier)
{
    // All of it anew each time: the user may have changed window or tab since.
    safari = BrowserBridge::application();
    windows = safari->windows();
    currentTab = windows.empty() ? nullptr : windows.front()->currentTab();

    const LatestReading weight(*hid_obj, *lbLBL);
    AutofillForm form(*safari, currentTab, weight);
    switch (carrier) {
    case Fedex:
        if (SendtoFedex == 1)
            form.assign(fedexAssignments());
        break;
    case UPS:
        if (SendtoUPS == 1)
            form.assign(upsAssignments());
        break;
    case USPS:
        form.assign(uspsAssignments());
        if (SendtoUSPS == 1)
            form.fillUspsRows();
        break;
    default: break;
    }
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The six options of the menu bar. They are not saved, and neither they nor the option boxes
// follow each other.

#include "app/PostalScaleAppDelegate.h"

#include "scale/HIDManager.h"
#include "scale/Log.h"

void PostalScaleAppDelegate::connectMenuItem(QAction *item,
                                             void (PostalScaleAppDelegate::*action)())
{
    connect(item, &QAction::triggered, this, [this, item, action] {
        // The toolkit has switched the item already; that is the action's decision.
        item->setChecked(!item->isChecked());
        (this->*action)();
    });
}

PostalScaleAppDelegate::MenuSwitch PostalScaleAppDelegate::toggleMenuItem(QAction *item)
{
    if (!isDeviceAlive()) {
        logLine(QStringLiteral("Device Not Connected/Detected!!!"));
        return MenuSwitch::Refused;
    }
    item->setChecked(!item->isChecked());
    return item->isChecked() ? MenuSwitch::On : MenuSwitch::Off;
}

void PostalScaleAppDelegate::onTopClicked()
{
    const MenuSwitch switched = toggleMenuItem(mnuOnTop);
    if (switched == MenuSwitch::Refused)
        return;
    if (switched == MenuSwitch::On)
        selectionLbl->setText(QStringLiteral("On Top"));
    setOnTop(switched == MenuSwitch::On);
}

void PostalScaleAppDelegate::roundToIntClicked()
{
    const MenuSwitch switched = toggleMenuItem(mnuRoundToInt);
    if (switched == MenuSwitch::Refused)
        return;
    if (switched == MenuSwitch::On)
        selectionLbl->setText(QStringLiteral("Round to"));
    hid_obj->setSetRound(switched == MenuSwitch::On);
}

void PostalScaleAppDelegate::sendToClipClicked()
{
    const MenuSwitch switched = toggleMenuItem(mnuSendToClip);
    if (switched == MenuSwitch::Refused)
        return;
    switchClipboard(switched == MenuSwitch::On);
    if (switched == MenuSwitch::Off)
        return;
    // Check marks only: the carriers go on.
    for (QAction *carrier : {mnuSendToUSPS, mnuSendToUPS, mnuSendToFEDX})
        carrier->setChecked(false);
}

void PostalScaleAppDelegate::sendToUSPSClicked()
{
    toggleCarrier(mnuSendToUSPS, SendtoUSPS, QStringLiteral("USPS"));
}

void PostalScaleAppDelegate::sendToUPSClicked()
{
    toggleCarrier(mnuSendToUPS, SendtoUPS, QStringLiteral("UPS"));
}

void PostalScaleAppDelegate::sendToFEDXClicked()
{
    toggleCarrier(mnuSendToFEDX, SendtoFedex, QStringLiteral("FEDX"));
}

void PostalScaleAppDelegate::toggleCarrier(QAction *item, std::uint8_t &flag, const QString &name)
{
    const MenuSwitch switched = toggleMenuItem(item);
    if (switched == MenuSwitch::Refused)
        return;
    flag = switched == MenuSwitch::On;
    if (switched == MenuSwitch::Off)
        return;
    // The check mark only: the clipboard is still written.
    mnuSendToClip->setChecked(false);
    selectionLbl->setText(name);
}

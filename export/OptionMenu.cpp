// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The six options of the menu bar. They are not saved, and neither they nor the option boxes
// follow each other.

#include "export/Options.h"

#include "base/Log.h"
#include "export/CarrierPages.h"
#include "export/ExportClipboard.h"
#include "export/ExportState.h"
#include "scale/HIDManager.h"
#include "scale/ScaleSession.h"
#include "ui_MainWindow.h"

void Options::connectMenu()
{
    const Ui::MainWindow &form = m_around.form;
    connectMenuItem(form.mnuOnTop, &Options::onTopClicked);
    connectMenuItem(form.mnuRoundToInt, &Options::roundToIntClicked);
    connectMenuItem(form.mnuSendToClip, &Options::sendToClipClicked);
    connectMenuItem(form.mnuSendToUSPS, &Options::sendToUSPSClicked);
    connectMenuItem(form.mnuSendToUPS, &Options::sendToUPSClicked);
    connectMenuItem(form.mnuSendToFEDX, &Options::sendToFEDXClicked);
}

void Options::connectMenuItem(QAction *item, void (Options::*action)())
{
    connect(item, &QAction::triggered, this, [this, item, action] {
        // The toolkit has switched the item already; that is the action's decision.
        item->setChecked(!item->isChecked());
        (this->*action)();
    });
}

Options::MenuSwitch Options::toggleMenuItem(QAction *item)
{
    if (!m_around.session.isDeviceAlive()) {
        logLine(QStringLiteral("Device Not Connected/Detected!!!"));
        return MenuSwitch::Refused;
    }
    item->setChecked(!item->isChecked());
    return item->isChecked() ? MenuSwitch::On : MenuSwitch::Off;
}

void Options::onTopClicked()
{
    const MenuSwitch switched = toggleMenuItem(m_around.form.mnuOnTop);
    if (switched == MenuSwitch::Refused)
        return;
    if (switched == MenuSwitch::On)
        showLatest(QStringLiteral("On Top"));
    setOnTop(switched == MenuSwitch::On);
}

void Options::roundToIntClicked()
{
    const MenuSwitch switched = toggleMenuItem(m_around.form.mnuRoundToInt);
    if (switched == MenuSwitch::Refused)
        return;
    if (switched == MenuSwitch::On)
        showLatest(QStringLiteral("Round to"));
    m_around.link.setSetRound(switched == MenuSwitch::On);
}

void Options::sendToClipClicked()
{
    const MenuSwitch switched = toggleMenuItem(m_around.form.mnuSendToClip);
    if (switched == MenuSwitch::Refused)
        return;
    m_around.clipboard.switchTo(switched == MenuSwitch::On);
    if (switched == MenuSwitch::Off)
        return;
    // Check marks only: the carriers go on.
    for (QAction *carrier :
         {m_around.form.mnuSendToUSPS, m_around.form.mnuSendToUPS, m_around.form.mnuSendToFEDX})
        carrier->setChecked(false);
}

void Options::sendToUSPSClicked()
{
    toggleCarrier(m_around.form.mnuSendToUSPS, carrier::usps, QStringLiteral("USPS"));
}

void Options::sendToUPSClicked()
{
    toggleCarrier(m_around.form.mnuSendToUPS, carrier::ups, QStringLiteral("UPS"));
}

void Options::sendToFEDXClicked()
{
    toggleCarrier(m_around.form.mnuSendToFEDX, carrier::fedex, QStringLiteral("FEDX"));
}

void Options::toggleCarrier(QAction *item, int number, const QString &name)
{
    const MenuSwitch switched = toggleMenuItem(item);
    if (switched == MenuSwitch::Refused)
        return;
    setCarrier(number, switched == MenuSwitch::On);
    if (switched == MenuSwitch::Off)
        return;
    // The check mark only: the clipboard is still written.
    m_around.form.mnuSendToClip->setChecked(false);
    showLatest(name);
}

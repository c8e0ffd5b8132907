// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The choice of the scale's model, from the pop-up or from the menu bar.

#include "app/ModelIndex.h"
#include "app/PostalScaleAppDelegate.h"
#include "base/Log.h"
#include "controls/UnitRows.h"

#include <QThread>

void PostalScaleAppDelegate::modelSelectionAction()
{
    setSelectedModelName(optionButton->currentText());
    sendStartingUnit();
    setWindowTitle(optionButton->currentText());
    if (const auto index = modelIndex(optionButton->currentText(), ModelSource::PopUp))
        enableDisableWeight(*index);
}

void PostalScaleAppDelegate::modelSelected(QAction *sender)
{
    if (!isDeviceAlive()) {
        logLine(QStringLiteral("Device Not Connected/Detected!!!"));
        return;
    }
    for (QAction *item : modelMenu->actions())
        item->setChecked(false);
    sender->setChecked(true);
    m_markedModel = sender;
    setSelectedModelName(sender->data().toString());
    sendStartingUnit();
    setWindowTitle(selectedModelName());
    if (const auto index = modelIndex(selectedModelName(), ModelSource::Menu))
        enableDisableWeight(*index);
}

void PostalScaleAppDelegate::sendStartingUnit()
{
    // Every model but one offers it.
    constexpr int startingUnit = unittag::poundsOuncesB;
    m_units.showRow(*rowOfUnit(startingUnit));
    pausereadtimer = true;
    hid_obj->setUnitnumber(startingUnit);
    hid_obj->setDotunit(startingUnit);
    hid_obj->setCurrentUnit(unitindex::poundsOuncesB);
    hid_obj->set_Unit(unitindex::poundsOuncesB);
    QThread::yieldCurrentThread();
    pausereadtimer = false;
}

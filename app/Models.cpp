// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The choice of the scale's model, from the pop-up or from the menu bar.

#include "app/ModelIndex.h"
#include "app/PostalScaleAppDelegate.h"
#include "scale/HIDManager.h"
#include "scale/Log.h"

#include <QThread>

namespace {

/// Pounds and ounces with the fraction: every model but one offers it.
constexpr int startingRow = 2;

} // namespace

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
    markedModel = sender;
    setSelectedModelName(sender->data().toString());
    sendStartingUnit();
    setWindowTitle(selectedModelName());
    if (const auto index = modelIndex(selectedModelName(), ModelSource::Menu))
        enableDisableWeight(*index);
}

void PostalScaleAppDelegate::sendStartingUnit()
{
    showUnitRow(startingRow);
    pausereadtimer = true;
    hid_obj->setUnitnumber(3);
    hid_obj->setDotunit(3);
    hid_obj->setCurrentUnit(4);
    hid_obj->set_Unit(4);
    QThread::yieldCurrentThread();
    pausereadtimer = false;
}

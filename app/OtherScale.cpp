// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// A scale that tells number, unit and name itself.

#include "app/PostalScaleAppDelegate.h"
#include "lcd/StatedContents.h"
#include "scale/ScaleLink.h"

void PostalScaleAppDelegate::useLink(ScaleLink &link, const QString &name)
{
    // Each link begins with its own timer, and on a panel on which nothing of the other is left.
    endPolling();
    setLink(link);
    m_scaleName = name;
    m_isUnconfirmed = false;
    onhold = link.isHolding();
    m_panel.show({});
    m_statusArea.setNotice(StatusArea::Notice::Scale, {});
    optionButton->setScaleName(name);
    modelMenu->setEnabled(name.isEmpty());
    showScaleInTitle();
    followAbilities();
}

void PostalScaleAppDelegate::showScaleInTitle()
{
    setWindowTitle(m_scaleName.isEmpty() ? optionButton->currentText() : m_scaleName);
}

void PostalScaleAppDelegate::takeReading(const ScaleReading &reading)
{
    unitLBl->setHidden(reading.statement.unit == WeightUnit::Unknown);
    onhold = reading.isHeld; // one that is opened anew holds nothing
    m_panel.show(statedContents(reading));
    m_isUnconfirmed = !reading.isConfirmed;
    showStaleness();
    m_statusArea.setNotice(StatusArea::Notice::Scale, statedNotice(reading),
                           statedTrouble(reading));
    m_parcel.takeReading(reading);
    followAbilities();
}

void PostalScaleAppDelegate::followAbilities()
{
    const ScaleAbilities abilities = link().abilities();
    if (abilities == m_abilities)
        return;
    m_abilities = abilities;
    m_buttons.follow(abilities);
    m_units.follow(abilities);
}

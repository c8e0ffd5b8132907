// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the window asks of any scale, in the terms of this one.

#include "scale/HIDManager.h"

namespace {

/// The writes stand in the order in which the link gets them; the last one of each field counts.
void setUnitFields(HIDManager &link, int tag)
{
    using namespace unittag;
    link.setUnitnumber(tag);
    link.setDotunit(tag);
    if (tag <= poundsOuncesB) {
        link.setCurrentUnit(tag + 1);
        link.setLbOZlast(false);
    } else if (tag == decimalPounds) {
        link.setCurrentUnit(unitindex::poundsOuncesB);
        link.setLbOZlast(false);
    } else if (tag == kilograms) {
        link.setCurrentUnit(unitindex::metric);
        link.setLbOZlast(false);
    } else if (tag == poundsWholeOunces) {
        link.setUnitindex(unitindex::poundsOuncesA);
        link.setUnitnumber(poundsWholeOunces);
        link.setLbOZlast(true);
    }
}

void setUnitIndex(HIDManager &link, int tag)
{
    using namespace unittag;
    if (tag <= poundsOuncesB) {
        link.setUnitindex(tag + 1);
    } else if (tag == decimalPounds) {
        link.setUnitindex(unitindex::poundsOuncesB);
        link.setLbOZlast(false);
    } else if (tag == kilograms) {
        link.setLbOZlast(false);
        link.setUnitindex(unitindex::metric);
    }
    // Decimal pounds are worked out here: the scale is asked for pounds and ounces.
    if (tag == decimalPounds && link.unitindex() == unitindex::poundsOuncesB)
        link.setUnitindex(unitindex::poundsOuncesA);
    if (link.currentScale() == scaletype::binary) {
        if (tag == decimalPounds)
            link.setUnitindex(unitindex::ounces);
        if (tag == poundsWholeOunces)
            link.setUnitindex(unitindex::poundsOuncesA);
    }
}

} // namespace

void HIDManager::chooseUnit(int tag)
{
    setUnitFields(*this, tag);
    setUnitIndex(*this, tag);
    set_Unit(unitindex());
}

UnitChoice HIDManager::units() const
{
    return {.unitnumber = m_state.unitnumber,
            .unitindex = m_state.unitindex,
            .currentUnit = m_state.currentUnit,
            .dotunit = m_dotunit,
            .lbOZlast = m_lbOZlast};
}

void HIDManager::setUnits(const UnitChoice &units)
{
    m_state.unitnumber = units.unitnumber;
    m_state.unitindex = units.unitindex;
    m_state.currentUnit = units.currentUnit;
    m_dotunit = units.dotunit;
    m_lbOZlast = units.lbOZlast;
}

ExportForm HIDManager::chosenForm() const
{
    return exportForm(delegate()->selectedRadioButtonIndex());
}

void HIDManager::setHeld(bool held)
{
    if (held)
        set_device_HOLD();
    else
        set_device_HOLDOFF();
}

WebStrings HIDManager::webTexts() const
{
    return {.pounds = m_sWebDataLB, .ounces = m_sWebDataOZ, .basic = m_sWebDataBasic};
}

LeavingForm HIDManager::leavingForm() const
{
    const ExportForm form = chosenForm();
    // The binary scale's kilograms are worked out while it reports them, and only then.
    const bool isForeign = form == ExportForm::Kilograms &&
                           m_state.currentScale == scaletype::binary &&
                           m_state.currentUnit != unitindex::metric;
    return {.form = form, .fitsScale = !isForeign};
}

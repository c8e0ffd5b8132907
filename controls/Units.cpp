// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The column of weighing units.

#include "app/PostalScaleAppDelegate.h"

#include "controls/UnitRows.h"
#include "export/Settings.h"
#include "scale/HIDManager.h"
#include "scale/Log.h"

#include <QActionGroup>
#include <QThread>

namespace {

/// The writes stand in the order in which the link gets them; the last one of each field counts.
void setUnitFields(HIDManager &link, int tag)
{
    link.setUnitnumber(tag);
    link.setDotunit(tag);
    if (tag <= 3) {
        link.setCurrentUnit(tag + 1);
        link.setLbOZlast(false);
    } else if (tag == 4) {
        link.setCurrentUnit(4);
        link.setLbOZlast(false);
    } else if (tag == 5) {
        link.setCurrentUnit(1);
        link.setLbOZlast(false);
    } else if (tag == 6) {
        link.setUnitindex(3);
        link.setUnitnumber(6);
        link.setLbOZlast(true);
    }
}

void setUnitIndex(HIDManager &link, int tag)
{
    if (tag <= 3) {
        link.setUnitindex(tag + 1);
    } else if (tag == 4) {
        link.setUnitindex(4);
        link.setLbOZlast(false);
    } else if (tag == 5) {
        link.setLbOZlast(false);
        link.setUnitindex(1);
    }
    // Decimal pounds are worked out here: the scale is asked for pounds and ounces.
    if (tag == 4 && link.unitindex() == 4)
        link.setUnitindex(3);
    if (link.currentScale() == 1) {
        if (tag == 4)
            link.setUnitindex(2);
        if (tag == 6)
            link.setUnitindex(3);
    }
}

} // namespace

void PostalScaleAppDelegate::connectUnits()
{
    connect(radiogroup, &QButtonGroup::buttonClicked, this,
            &PostalScaleAppDelegate::radioSelection);
    unitMenu->setToolTipsVisible(true);
    auto *choice = new QActionGroup(this);
    for (QAbstractButton *cell : unitCells()) {
        QAction *item = unitMenu->addAction(cell->text());
        item->setShortcut(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + unitMenu->actions().size()));
        item->setAutoRepeat(false);
        item->setCheckable(true);
        item->setChecked(cell->isChecked());
        choice->addAction(item);
        connect(item, &QAction::triggered, cell, &QAbstractButton::click);
        connect(cell, &QAbstractButton::toggled, item, &QAction::setChecked);
        connectAssistiveToggle(cell);
        connect(cell, &QAbstractButton::toggled, this, &PostalScaleAppDelegate::placeTabStop);
    }
    placeTabStop();
}

void PostalScaleAppDelegate::connectAssistiveToggle(QAbstractButton *cell)
{
    // Assistive technology toggles a cell where a person clicks it. A click is told apart by the
    // press that goes before it.
    connect(cell, &QAbstractButton::pressed, this, [this] { unitIsPressed = true; });
    connect(cell, &QAbstractButton::released, this, [this] { unitIsPressed = false; });
    connect(cell, &QAbstractButton::toggled, this, [this](bool on) {
        if (on && !unitIsPressed)
            radioSelection();
    });
}

void PostalScaleAppDelegate::radioSelection()
{
    logLine(QStringLiteral("---------------------->Done radioSelection!!!!!"));
    if (!isDeviceConnected)
        return;
    const int tag = radiogroup->checkedButton()->property("tag").toInt();
    logLine(QStringLiteral("selectedTag: %1").arg(tag));
    setSelectedRadioButtonIndex(tag);
    pausereadtimer = true;
    setUnitFields(*hid_obj, tag);
    setUnitIndex(*hid_obj, tag);
    hid_obj->set_Unit(hid_obj->unitindex());
    QThread::yieldCurrentThread();
    pausereadtimer = false;
}

void PostalScaleAppDelegate::enableDisableWeight(int modelIndex)
{
    const auto enabled = enabledRows(modelIndex);
    for (int row = 0; row < unitRowCount; ++row)
        setUnitEnabled(row, enabled.at(static_cast<std::size_t>(row)));
    placeTabStop();
    settings.setLastSelectedValue(modelIndex);
}

void PostalScaleAppDelegate::setUnitEnabled(int row, bool enabled)
{
    QAction *item = unitMenu->actions().at(row);
    item->setEnabled(enabled);
    QAbstractButton *cell = unitCells().at(row);
    cell->setEnabled(enabled);
    cell->setToolTip(enabled ? item->shortcut().toString(QKeySequence::NativeText)
                             : tr("The chosen model does not weigh in this unit"));
    item->setToolTip(enabled ? QString() : cell->toolTip());
}

void PostalScaleAppDelegate::setRadioButton()
{
    if (const auto row = rowOfUnit(hid_obj->unitnumber()))
        showUnitRow(*row);
}

void PostalScaleAppDelegate::showUnitRow(int row)
{
    QAbstractButton *cell = unitCells().at(row);
    const QSignalBlocker noAction(cell);
    cell->setChecked(true);
    unitMenu->actions().at(row)->setChecked(true);
    placeTabStop();
}

void PostalScaleAppDelegate::placeTabStop()
{
    // A disabled choice cannot take the keyboard; then any row may.
    const bool choiceIsOpen = radiogroup->checkedButton()->isEnabled();
    for (QAbstractButton *cell : unitCells()) {
        const bool isStop = cell->isChecked() || !choiceIsOpen;
        cell->setFocusPolicy(isStop ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

QList<QAbstractButton *> PostalScaleAppDelegate::unitCells() const
{
    return {rg1, rg2, rg3, rg4, rg5, rg6, rg7};
}

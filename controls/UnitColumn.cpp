// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "controls/UnitColumn.h"

#include "base/Log.h"
#include "controls/UnitRows.h"
#include "scale/HIDManager.h"
#include "scale/ScaleCodes.h"
#include "scale/ScaleSession.h"
#include "ui_MainWindow.h"

#include <QActionGroup>
#include <QThread>
#include <utility>

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

UnitColumn::UnitColumn(const Ui::MainWindow &form, HIDManager &link, ScaleSession &session,
                       std::function<void(int modelIndex)> saveModel, QObject *parent)
    : QObject(parent)
    , m_form(form)
    , m_link(link)
    , m_session(session)
    , m_saveModel(std::move(saveModel))
{
    connect(form.radiogroup, &QButtonGroup::buttonClicked, this, &UnitColumn::radioSelection);
    form.unitMenu->setToolTipsVisible(true);
    auto *choice = new QActionGroup(this);
    for (QAbstractButton *cell : cells()) {
        connectRow(cell);
        choice->addAction(form.unitMenu->actions().constLast());
    }
    placeTabStop();
}

void UnitColumn::connectRow(QAbstractButton *cell)
{
    QAction *item = m_form.unitMenu->addAction(cell->text());
    const auto number = static_cast<int>(m_form.unitMenu->actions().size());
    item->setShortcut(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + number));
    item->setAutoRepeat(false);
    item->setCheckable(true);
    item->setChecked(cell->isChecked());
    connect(item, &QAction::triggered, cell, &QAbstractButton::click);
    connect(cell, &QAbstractButton::toggled, item, &QAction::setChecked);
    connectAssistiveToggle(cell);
    connect(cell, &QAbstractButton::toggled, this, &UnitColumn::placeTabStop);
}

void UnitColumn::connectAssistiveToggle(QAbstractButton *cell)
{
    // Assistive technology toggles a cell where a person clicks it. A click is told apart by the
    // press that goes before it.
    connect(cell, &QAbstractButton::pressed, this, [this] { m_isPressed = true; });
    connect(cell, &QAbstractButton::released, this, [this] { m_isPressed = false; });
    connect(cell, &QAbstractButton::toggled, this, [this](bool on) {
        if (on && !m_isPressed)
            radioSelection();
    });
}

void UnitColumn::radioSelection()
{
    logLine(QStringLiteral("---------------------->Done radioSelection!!!!!"));
    if (!m_session.isDeviceConnected)
        return;
    const int tag = m_form.radiogroup->checkedButton()->property("tag").toInt();
    logLine(QStringLiteral("selectedTag: %1").arg(tag));
    m_session.setSelectedRadioButtonIndex(tag);
    m_session.pausereadtimer = true;
    setUnitFields(m_link, tag);
    setUnitIndex(m_link, tag);
    m_link.set_Unit(m_link.unitindex());
    QThread::yieldCurrentThread();
    m_session.pausereadtimer = false;
}

void UnitColumn::enableDisableWeight(int modelIndex)
{
    const auto enabled = enabledRows(modelIndex);
    for (int row = 0; row < unitRowCount; ++row)
        setRowEnabled(row, enabled.at(static_cast<std::size_t>(row)));
    placeTabStop();
    m_saveModel(modelIndex);
}

void UnitColumn::setRowEnabled(int row, bool enabled)
{
    QAction *item = m_form.unitMenu->actions().at(row);
    item->setEnabled(enabled);
    QAbstractButton *cell = cells().at(row);
    cell->setEnabled(enabled);
    cell->setToolTip(enabled ? item->shortcut().toString(QKeySequence::NativeText)
                             : QStringLiteral("The chosen model does not weigh in this unit"));
    item->setToolTip(enabled ? QString() : cell->toolTip());
}

void UnitColumn::setRadioButton()
{
    if (const auto row = rowOfUnit(m_link.unitnumber()))
        showRow(*row);
}

void UnitColumn::showRow(int row)
{
    QAbstractButton *cell = cells().at(row);
    const QSignalBlocker noAction(cell);
    cell->setChecked(true);
    m_form.unitMenu->actions().at(row)->setChecked(true);
    placeTabStop();
}

void UnitColumn::placeTabStop()
{
    // A disabled choice cannot take the keyboard; then any row may.
    const bool choiceIsOpen = m_form.radiogroup->checkedButton()->isEnabled();
    for (QAbstractButton *cell : cells()) {
        const bool isStop = cell->isChecked() || !choiceIsOpen;
        cell->setFocusPolicy(isStop ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

QList<QAbstractButton *> UnitColumn::cells() const
{
    return m_form.radiogroup->buttons();
}

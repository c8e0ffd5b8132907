// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "controls/UnitColumn.h"

#include "base/Log.h"
#include "scale/HIDManager.h"
#include "scale/ScaleLink.h"
#include "scale/ScaleSession.h"
#include "ui_MainWindow.h"

#include <QActionGroup>
#include <QThread>
#include <utility>

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
    m_session.link().chooseUnit(tag);
    QThread::yieldCurrentThread();
    m_session.pausereadtimer = false;
}

void UnitColumn::enableDisableWeight(int modelIndex)
{
    m_modelRows = enabledRows(modelIndex);
    enableRows(m_modelRows, QStringLiteral("The chosen model does not weigh in this unit"));
    m_saveModel(modelIndex);
}

void UnitColumn::follow(const ScaleAbilities &abilities)
{
    if (!abilities.units) {
        enableRows(m_modelRows, QStringLiteral("The chosen model does not weigh in this unit"));
        restoreChoice();
        return;
    }
    if (!m_choiceBefore)
        m_choiceBefore =
            ChosenRow{.row = checkedRow(), .tag = m_session.selectedRadioButtonIndex()};
    UnitRowSet rows{};
    for (const int tag : *abilities.units)
        rows.at(static_cast<std::size_t>(*rowOfUnit(tag))) = true;
    enableRows(rows, QStringLiteral("The unit is chosen on the scale"));
    if (abilities.unitShown)
        showRow(*rowOfUnit(*abilities.unitShown));
    else
        showNoRow();
}

void UnitColumn::restoreChoice()
{
    if (!m_choiceBefore)
        return;
    m_session.setSelectedRadioButtonIndex(m_choiceBefore->tag);
    showRow(m_choiceBefore->row);
    m_choiceBefore.reset();
}

int UnitColumn::checkedRow() const
{
    return static_cast<int>(cells().indexOf(m_form.radiogroup->checkedButton()));
}

void UnitColumn::enableRows(const UnitRowSet &rows, const QString &whyNot)
{
    for (int row = 0; row < unitRowCount; ++row)
        setRowEnabled(row, rows.at(static_cast<std::size_t>(row)), whyNot);
    placeTabStop();
}

void UnitColumn::setRowEnabled(int row, bool enabled, const QString &whyNot)
{
    QAction *item = m_form.unitMenu->actions().at(row);
    item->setEnabled(enabled);
    QAbstractButton *cell = cells().at(row);
    cell->setEnabled(enabled);
    cell->setToolTip(enabled ? item->shortcut().toString(QKeySequence::NativeText) : whyNot);
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

// A group that is exclusive always keeps one.
void UnitColumn::showNoRow()
{
    m_form.radiogroup->setExclusive(false);
    for (int row = 0; row < unitRowCount; ++row) {
        QAbstractButton *cell = cells().at(row);
        const QSignalBlocker noAction(cell);
        cell->setChecked(false);
        m_form.unitMenu->actions().at(row)->setChecked(false);
    }
    m_form.radiogroup->setExclusive(true);
    placeTabStop();
}

void UnitColumn::placeTabStop()
{
    // A disabled choice cannot take the keyboard; then any row may.
    const QAbstractButton *choice = m_form.radiogroup->checkedButton();
    const bool choiceIsOpen = choice != nullptr && choice->isEnabled();
    for (QAbstractButton *cell : cells()) {
        const bool isStop = cell->isChecked() || !choiceIsOpen;
        cell->setFocusPolicy(isStop ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

QList<QAbstractButton *> UnitColumn::cells() const
{
    return m_form.radiogroup->buttons();
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "controls/UnitRows.h"

#include <QList>
#include <QObject>
#include <functional>
#include <optional>

class HIDManager;
class QAbstractButton;
class ScaleSession;
struct ScaleAbilities;

namespace Ui {
class MainWindow;
}

/// A marked row, and the unit tag that the user chose last: they need not be the same.
struct ChosenRow
{
    int row = 0;
    int tag = 0;
};

/// The column of weighing units, and the same choice in the menu bar.
class UnitColumn : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the column.
    /// @param saveModel keeps the model index for the next start
    UnitColumn(const Ui::MainWindow &form, HIDManager &link, ScaleSession &session,
               std::function<void(int modelIndex)> saveModel, QObject *parent);

    void radioSelection();
    /// @param modelIndex one of modelindex::; any other enables what c300 has
    void enableDisableWeight(int modelIndex);
    void setRadioButton();
    /// Only the rows that the scale in use can be asked for may be chosen. Where it tells its unit
    /// itself, that row is marked.
    void follow(const ScaleAbilities &abilities);

    /// Without the row's action.
    void showRow(int row);

private:
    void connectRow(QAbstractButton *cell);
    void connectAssistiveToggle(QAbstractButton *cell);
    void enableRows(const UnitRowSet &rows, const QString &whyNot);
    void setRowEnabled(int row, bool enabled, const QString &whyNot);
    /// The scale weighs in a unit that none of the rows is.
    void showNoRow();
    /// The Tab key stops at the chosen unit; arrow keys go on from there.
    void placeTabStop();
    QList<QAbstractButton *> cells() const; ///< in row order

    const Ui::MainWindow &m_form;
    HIDManager &m_link;
    ScaleSession &m_session;
    std::function<void(int modelIndex)> m_saveModel;
    void restoreChoice();
    int checkedRow() const;

    UnitRowSet m_modelRows{};
    std::optional<ChosenRow> m_choiceBefore; ///< of the described scale, while another is in use
    bool m_isPressed = false;
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QObject>
#include <functional>

class HIDManager;
class QAbstractButton;
class ScaleSession;

namespace Ui {
class MainWindow;
}

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

    /// Without the row's action.
    void showRow(int row);

private:
    void connectRow(QAbstractButton *cell);
    void connectAssistiveToggle(QAbstractButton *cell);
    void setRowEnabled(int row, bool enabled);
    /// The Tab key stops at the chosen unit; arrow keys go on from there.
    void placeTabStop();
    QList<QAbstractButton *> cells() const; ///< in row order

    const Ui::MainWindow &m_form;
    HIDManager &m_link;
    ScaleSession &m_session;
    std::function<void(int modelIndex)> m_saveModel;
    bool m_isPressed = false;
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QKeySequence>
#include <QObject>

class HIDManager;
class Panel;
class QAbstractButton;
class QAction;
class QTimer;
class ScaleSession;
struct ScaleAbilities;
class UnitColumn;

namespace Ui {
class MainWindow;
}

/// The three buttons that operate the scale from afar.
class ScaleButtons : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the buttons.
    ScaleButtons(const Ui::MainWindow &form, HIDManager &link, ScaleSession &session, Panel &panel,
                 UnitColumn &units, QObject *parent);

    void ON_Off_TareAction();
    void holdAction();
    void TareAction();
    /// One blink; the second one stops @p timer.
    void TareTimer(QTimer *timer);
    /// Only what the scale in use can be told may be pressed.
    void follow(const ScaleAbilities &abilities);

private:
    /// One command, reached from a button and from the menu bar.
    void connectCommand(QAbstractButton *button, QAction *item, QKeySequence shortcut,
                        void (ScaleButtons::*action)());

    const Ui::MainWindow &m_form;
    HIDManager &m_link;
    ScaleSession &m_session;
    Panel &m_panel;
    UnitColumn &m_units;
};

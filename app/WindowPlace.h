// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QTimer>

class QWidget;
class Settings;

/// Puts a window where it was, and remembers each new size and place shortly after the change, so
/// that a crash forgets nothing either.
class WindowPlace : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive the object, which becomes a child of @p window.
    WindowPlace(QWidget *window, Settings &settings);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void remember();

    QWidget *m_window;
    Settings &m_settings;
    QTimer m_atRest;
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QTimer>

class QWidget;
class Settings;

/// Each has a size and a place of its own.
enum class WindowForm { Whole, Compact };

/// Puts a window where it was, and remembers each new size and place shortly after the change, so
/// that a crash forgets nothing either.
class WindowPlace : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive the object, which becomes a child of @p window.
    WindowPlace(QWidget *window, Settings &settings);

    /// Keeps the place of the form that the window has now, and tells where the other one was.
    /// Empty where that is not known.
    QByteArray switchForm(WindowForm form);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void remember();
    QByteArray stored() const;

    QWidget *m_window;
    Settings &m_settings;
    WindowForm m_form = WindowForm::Whole;
    QTimer m_atRest;
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

class QWidget;

/// Does what can wait until a window has been drawn for the first time, and then goes. A window
/// that nobody gets to see at first has it done within a second all the same, and so has one that
/// a slow desktop lets be seen later still: it is drawn then, and nothing is done again.
class FirstFrame : public QObject
{
    Q_OBJECT

public:
    /// @param window shown already; becomes the parent
    FirstFrame(QWidget &window, std::function<void()> work);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void come();

    std::function<void()> m_work;
    bool m_isLastTurn = false; ///< the next one does the work
    QTimer m_due;
};

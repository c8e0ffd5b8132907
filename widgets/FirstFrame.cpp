// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/FirstFrame.h"

#include <QEvent>
#include <QWidget>
#include <QWindow>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto longestWait = 1000ms;

} // namespace

FirstFrame::FirstFrame(QWidget &window, std::function<void()> work)
    : QObject(&window)
    , m_work(std::move(work))
{
    m_due.setSingleShot(true);
    connect(&m_due, &QTimer::timeout, this, &FirstFrame::come);
    m_due.start(longestWait);
    window.windowHandle()->installEventFilter(this);
}

void FirstFrame::come()
{
    // Where the thread was held for all that time, the frame is what it does next.
    if (!std::exchange(m_isLastTurn, true)) {
        m_due.start(0ms);
        return;
    }
    m_work();
    deleteLater();
}

bool FirstFrame::eventFilter(QObject *watched, QEvent *event)
{
    // Whoever is exposed is drawn before the event loop comes round.
    if (event->type() == QEvent::Expose && static_cast<QWindow *>(watched)->isExposed()) {
        watched->removeEventFilter(this);
        m_isLastTurn = true;
        m_due.start(0ms);
    }
    return false;
}

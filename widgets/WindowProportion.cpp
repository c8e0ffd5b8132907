// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/WindowProportion.h"

#include <QApplication>
#include <QEvent>
#include <QFontInfo>
#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QtGui/qguiapplication_platform.h>

#include <xcb/xcb.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>

namespace {

using namespace std::chrono_literals;

// Longer than the pause between two sizes of one drag, short enough to seem immediate.
constexpr auto restAfterResize = 150ms;

// In points: a drag sets the text anew at some of its sizes only.
constexpr qreal textStep = 0.5;

xcb_connection_t *x11Connection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

bool hasAspect(const xcb_size_hints_t &hints, QSize proportion)
{
    return (hints.flags & XCB_ICCCM_SIZE_HINT_P_ASPECT) != 0 &&
           hints.min_aspect_num == proportion.width() &&
           hints.min_aspect_den == proportion.height() &&
           hints.max_aspect_num == proportion.width() &&
           hints.max_aspect_den == proportion.height();
}

} // namespace

WindowProportion::WindowProportion(QMainWindow *window, QSize designedSize, Correction correction)
    : QObject(window)
    , m_window(window)
    , m_proportion(designedSize)
{
    m_window->installEventFilter(this);
    if (x11Connection()) {
        qGuiApp->installNativeEventFilter(this);
    } else if (correction == Correction::Allowed) {
        m_isCorrecting = true;
        m_atRest.setSingleShot(true);
        m_atRest.setInterval(restAfterResize);
        connect(&m_atRest, &QTimer::timeout, this, &WindowProportion::correctSize);
    }
    keepMinimum();
}

WindowProportion::~WindowProportion() = default;

void WindowProportion::setSpareRoom(QWidget *box)
{
    m_spareRoom = box;
    placeSpareRoom();
}

void WindowProportion::setDesignedSize(QSize size)
{
    m_proportion = size;
    m_lastCorrected = {};
    // What counted for the other contents must not hold the window up.
    m_window->setMinimumSize(0, 0);
    setText(1);
    keepMinimum();
    placeSpareRoom();
}

bool WindowProportion::eventFilter(QObject *watched, QEvent *event)
{
    // The layouts inside have requests of their own waiting, and tell their old sizes until then.
    if (watched == m_window && event->type() == QEvent::LayoutRequest)
        QMetaObject::invokeMethod(this, &WindowProportion::keepMinimum, Qt::QueuedConnection);
    if (watched == m_window && event->type() == QEvent::Resize) {
        scaleText();
        placeSpareRoom();
        if (!x11Connection())
            noticeResize();
    }
    return QObject::eventFilter(watched, event);
}

// Qt writes the hints anew, without an aspect, whenever the window is shown or its limits change.
// The server reports each writing, also that of publishHints(), which then finds nothing to do.
bool WindowProportion::nativeEventFilter(const QByteArray &type, void *message, qintptr *)
{
    if (type != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & ~0x80) != XCB_PROPERTY_NOTIFY)
        return false;
    const auto *changed = reinterpret_cast<const xcb_property_notify_event_t *>(event);
    if (changed->atom == XCB_ATOM_WM_NORMAL_HINTS && changed->state == XCB_PROPERTY_NEW_VALUE &&
        changed->window == m_window->internalWinId())
        publishHints();
    return false;
}

void WindowProportion::publishHints() const
{
    xcb_connection_t *connection = x11Connection();
    const auto window = static_cast<xcb_window_t>(m_window->internalWinId());
    xcb_size_hints_t hints = {};
    const auto cookie = xcb_icccm_get_wm_normal_hints(connection, window);
    if (!xcb_icccm_get_wm_normal_hints_reply(connection, cookie, &hints, nullptr) ||
        hasAspect(hints, m_proportion))
        return;
    xcb_icccm_size_hints_set_aspect(&hints, m_proportion.width(), m_proportion.height(),
                                    m_proportion.width(), m_proportion.height());
    xcb_icccm_set_wm_normal_hints(connection, window, &hints);
    xcb_flush(connection);
}

// A minimum of another proportion could not be kept together with the aspect.
void WindowProportion::keepMinimum()
{
    // Larger text is no reason to keep the window large.
    if (m_textScale > 1)
        return;
    const QSize needed = neededSize();
    const qint64 widthForHeight =
        (qint64(needed.height()) * m_proportion.width() + m_proportion.height() - 1) /
        m_proportion.height();
    const QSize minimum = proportioned(std::max(needed.width(), int(widthForHeight)));
    if (minimum != m_window->minimumSize())
        m_window->setMinimumSize(minimum);
}

// Of the parts: the window's own layout remembers them as they were before the latest change of
// text, and a window that has just become small would be made larger again. What the parts have
// waiting themselves is done first.
QSize WindowProportion::neededSize() const
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QSize needed(0, 0);
    for (const QWidget *part :
         QWidgetList{m_window->menuBar(), m_window->centralWidget(), m_window->statusBar()}) {
        if (part->isHidden())
            continue;
        const QSize size = part->minimumSizeHint();
        needed = QSize(std::max(needed.width(), size.width()), needed.height() + size.height());
    }
    return m_spareRoom ? needed.shrunkBy(m_spareRoom->contentsMargins()) : needed;
}

void WindowProportion::placeSpareRoom()
{
    if (!m_spareRoom)
        return;
    const QSize size = m_window->size();
    QSize spare(0, 0);
    if (isOff(size))
        spare = size - m_proportion.scaled(size, Qt::KeepAspectRatio)
                           .expandedTo(m_window->minimumSize())
                           .boundedTo(size);
    const int left = spare.width() / 2;
    const int above = spare.height() / 2;
    m_spareRoom->setContentsMargins(left, above, spare.width() - left, spare.height() - above);
}

void WindowProportion::scaleText()
{
    const qreal designed = QFontInfo(QApplication::font()).pointSizeF();
    // With a desktop's large text, the window is no smaller than that text needs.
    const QSize reference = m_proportion.expandedTo(m_window->minimumSize());
    const qreal scale = std::min(qreal(m_window->width()) / reference.width(),
                                 qreal(m_window->height()) / reference.height());
    const qreal size = std::max(designed, std::floor(designed * scale / textStep) * textStep);
    if (size / designed == m_textScale)
        return;
    setText(size / designed);
}

void WindowProportion::setText(qreal scale)
{
    m_textScale = scale;
    QFont font;
    if (scale > 1)
        font.setPointSizeF(QFontInfo(QApplication::font()).pointSizeF() * scale);
    m_window->menuBar()->setFont(font);
    m_window->centralWidget()->setFont(font);
    m_window->statusBar()->setFont(font);
}

void WindowProportion::noticeResize()
{
    const QSize size = m_window->size();
    if (m_isCorrecting && isOff(size) && size != m_lastCorrected)
        m_atRest.start();
    else
        m_atRest.stop();
}

void WindowProportion::correctSize()
{
    const Qt::WindowStates givenByDesktop =
        Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized;
    if ((m_window->windowState() & givenByDesktop) != 0 || !isOff(m_window->size()))
        return;
    QSize wanted = proportioned(m_window->width());
    const int available = m_window->screen()->availableSize().height();
    if (wanted.height() > available)
        wanted = proportioned(available * m_proportion.width() / m_proportion.height());
    m_lastCorrected = m_window->size();
    m_window->resize(wanted);
}

bool WindowProportion::isOff(QSize size) const
{
    // Half a pixel of rounding on either side.
    return std::abs(proportioned(size.width()).height() - size.height()) > 1;
}

QSize WindowProportion::proportioned(int width) const
{
    return QSize(width, qRound(qreal(width) * m_proportion.height() / m_proportion.width()));
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QSize>
#include <QTimer>

class QMainWindow;

/// Keeps a window's client area at a proportion while a person resizes it, and the text in it at
/// its share of that area once this is larger than designed. Maximised and full-screen windows keep
/// the size that the desktop gives them, and their contents stay together in the middle.
///
/// On X11 the window manager is told (WM_NORMAL_HINTS) and does the work. Elsewhere a size that is
/// off is corrected once the resizing has come to rest. A desktop that answers with the same size
/// again, such as a tiling one, gets its way.
class WindowProportion : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Whether a size that is off may be corrected where no window manager does it. A tiling
    /// desktop lets a window be smaller than its tile, and shows a hole.
    enum class Correction { Allowed, Forbidden };

    /// The object becomes a child of @p window. @p designedSize also gives the proportion.
    WindowProportion(QMainWindow *window, QSize designedSize,
                     Correction correction = Correction::Allowed);
    ~WindowProportion() override;

    /// What a window of another proportion has to spare goes around the contents of @p box, so that
    /// they stay together: maximised windows, tiles. It must outlive the object.
    void setSpareRoom(QWidget *box);

    /// Another proportion from now on, and the size at which the text has its usual size. The
    /// window keeps its size, as far as its new contents fit.
    void setDesignedSize(QSize size);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;
    void publishHints() const;
    void keepMinimum();
    QSize neededSize() const;
    void scaleText();
    void placeSpareRoom();
    void setText(qreal scale);
    void noticeResize();
    void correctSize();
    bool isOff(QSize size) const;
    QSize proportioned(int width) const;

    QMainWindow *m_window;
    QWidget *m_spareRoom = nullptr;
    QSize m_proportion;
    qreal m_textScale = 1;
    bool m_isCorrecting = false;
    QTimer m_atRest;
    QSize m_lastCorrected;
};

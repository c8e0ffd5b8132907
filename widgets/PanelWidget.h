// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "widgets/PictureCache.h"

#include <QPixmap>
#include <QWidget>

#include <vector>

class ImageView;

/// The glass of the display. Its children stand where the window file puts them at `designSize`
/// and are scaled together with the glass, in proportion and centred; a label's text is as tall as
/// its place allows.
///
/// The place of the tenths is also that of the stacked fraction: while `lineImg` is not hidden,
/// `numeratorImg` is the upper half, opposite of `denomImg`.
class PanelWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QSize designSize READ designSize WRITE setDesignSize)

public:
    explicit PanelWidget(QWidget *parent = nullptr);

    QSize designSize() const { return m_designSize; }
    void setDesignSize(QSize size);

    /// The reading in words, for screen readers; they are told only of changes. With the keyboard
    /// on the panel some read each of them out, so then they are told when it has gone. Who asks
    /// has the present one at any time.
    void setReadingText(const QString &words);
    QString readingText() const { return m_readingText; }

    /// Lit segments become faint, and stay legible.
    void setDimmed(bool dimmed);
    bool isDimmed() const { return m_isDimmed; }

    /// @param part of the designed size that is the least; 3/4 unless it is told
    void setSmallest(qreal part);

    QSize sizeHint() const override { return m_designSize; }
    QSize minimumSizeHint() const override;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void focusOutEvent(QFocusEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Place
    {
        QWidget *widget = nullptr;
        QRect designed;
    };

    /// The glass and the fixed segments' unlit shapes are one picture, made once for a size.
    enum class Segments { Fixed, OfFraction };

    void tellReading();
    void rememberDesign();
    void arrange();
    void placeNumerator();
    QRect designedPlace(const Place &place) const;
    QRect scaled(const QRect &designed) const;
    qreal scale() const;
    bool isOfFraction(const QWidget *view) const;
    bool showsFraction() const;
    QPixmap backdrop();
    void paintFocus(QPainter &painter) const;
    void paintUnlitSegments(QPainter &painter, Segments segments);

    QSize m_designSize;
    qreal m_smallest = 0.75;
    bool m_isDimmed = false;
    QString m_readingText;
    std::vector<Place> m_places;
    QWidget *m_numerator = nullptr;
    QWidget *m_line = nullptr;
    QWidget *m_denominator = nullptr;
    QPixmap m_backdrop;
    PictureCache m_pictures;
};

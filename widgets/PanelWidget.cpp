// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/PanelWidget.h"

#include "widgets/Glass.h"
#include "widgets/ImageView.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QLabel>
#include <QPainter>

#include <algorithm>

namespace {

// Strong enough to be made out, too weak to be taken for a digit at a glance.
constexpr qreal unlitOpacity = 0.055;

// Grey against the black of a present reading, and well above what is unlit.
constexpr qreal dimmedOpacity = 0.4;

// What is left of a label's height for the letters, so that no descender is cut off.
constexpr qreal textPartOfHeight = 0.72;

/// The display as one text. Its segments are no objects of their own to a screen reader.
class PanelAccessible : public QAccessibleWidget
{
public:
    explicit PanelAccessible(PanelWidget *panel)
        : QAccessibleWidget(panel, QAccessible::StaticText)
    {
    }

    // Whoever asks is told what is there now.
    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Name)
            return static_cast<const PanelWidget *>(widget())->readingText();
        return QAccessibleWidget::text(kind);
    }

    int childCount() const override { return static_cast<int>(audibleChildren().size()); }

    QAccessibleInterface *child(int index) const override
    {
        QWidget *found = audibleChildren().value(index);
        return found ? QAccessible::queryAccessibleInterface(found) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface *wanted) const override
    {
        return wanted ? static_cast<int>(
                            audibleChildren().indexOf(qobject_cast<QWidget *>(wanted->object())))
                      : -1;
    }

private:
    QList<QWidget *> audibleChildren() const
    {
        QList<QWidget *> children =
            widget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        children.removeIf([](QWidget *child) { return qobject_cast<ImageView *>(child); });
        return children;
    }
};

QAccessibleInterface *makePanelAccessible(const QString &, QObject *object)
{
    auto *panel = qobject_cast<PanelWidget *>(object);
    return panel ? new PanelAccessible(panel) : nullptr;
}

} // namespace

PanelWidget::PanelWidget(QWidget *parent)
    : QWidget(parent)
{
    // Known already unless this is the application's first; each application forgets its own.
    QAccessible::installFactory(makePanelAccessible);
}

void PanelWidget::setDesignSize(QSize size)
{
    m_designSize = size;
    updateGeometry();
}

void PanelWidget::setReadingText(const QString &words)
{
    m_readingText = words;
    if (!hasFocus())
        tellReading();
}

void PanelWidget::tellReading()
{
    // setAccessibleName tells screen readers, also when the name stays the same.
    if (m_readingText != accessibleName())
        setAccessibleName(m_readingText);
}

void PanelWidget::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    tellReading();
}

void PanelWidget::setDimmed(bool dimmed)
{
    m_isDimmed = dimmed;
    for (ImageView *view : findChildren<ImageView *>(QString(), Qt::FindDirectChildrenOnly))
        view->setOpacity(dimmed ? dimmedOpacity : 1);
}

QSize PanelWidget::minimumSizeHint() const
{
    return (QSizeF(m_designSize) * m_smallest).toSize();
}

void PanelWidget::setSmallest(qreal part)
{
    m_smallest = part;
    updateGeometry();
}

bool PanelWidget::eventFilter(QObject *watched, QEvent *event)
{
    const bool toggled =
        event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent;
    if (watched == m_line && toggled)
        placeNumerator();
    return QWidget::eventFilter(watched, event);
}

void PanelWidget::resizeEvent(QResizeEvent *)
{
    arrange();
}

void PanelWidget::showEvent(QShowEvent *)
{
    arrange();
}

// The window file gives the places only after this widget is made, so they are taken at first use.
void PanelWidget::rememberDesign()
{
    if (!m_places.empty())
        return;
    for (QWidget *child : findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        m_places.push_back({child, child->geometry()});
    for (ImageView *view : findChildren<ImageView *>(QString(), Qt::FindDirectChildrenOnly))
        view->setPictures(&m_pictures);
    m_numerator = findChild<QWidget *>(QStringLiteral("numeratorImg"));
    m_line = findChild<QWidget *>(QStringLiteral("lineImg"));
    m_denominator = findChild<QWidget *>(QStringLiteral("denomImg"));
    if (m_line)
        m_line->installEventFilter(this);
}

void PanelWidget::arrange()
{
    rememberDesign();
    for (const Place &place : m_places) {
        const QRect geometry = scaled(designedPlace(place));
        place.widget->setGeometry(geometry);
        if (qobject_cast<QLabel *>(place.widget)) {
            QFont font = place.widget->font();
            font.setPixelSize(std::max(1, qRound(geometry.height() * textPartOfHeight)));
            place.widget->setFont(font);
        }
    }
    m_pictures.clear();
    m_backdrop = QPixmap();
    update();
}

// Readings bring and take the fraction, even both within one: no more is done anew than it changes.
void PanelWidget::placeNumerator()
{
    for (const Place &place : m_places) {
        if (place.widget == m_numerator)
            m_numerator->setGeometry(scaled(designedPlace(place)));
        if (isOfFraction(place.widget))
            update(scaled(place.designed));
    }
}

QRect PanelWidget::designedPlace(const Place &place) const
{
    if (place.widget != m_numerator || !showsFraction())
        return place.designed;
    QRect line;
    QRect denominator;
    for (const Place &other : m_places) {
        if (other.widget == m_line)
            line = other.designed;
        else if (other.widget == m_denominator)
            denominator = other.designed;
    }
    // The far end of the denominator's place, seen through the middle of the line: it follows the
    // slant of the digits by itself.
    const QPoint twiceMiddle(2 * line.x() + line.width(), 2 * line.y() + line.height());
    const QPoint end(denominator.x() + denominator.width(), denominator.y() + denominator.height());
    return QRect(twiceMiddle - end, denominator.size());
}

qreal PanelWidget::scale() const
{
    return std::min(qreal(width()) / m_designSize.width(), qreal(height()) / m_designSize.height());
}

QRect PanelWidget::scaled(const QRect &designed) const
{
    const qreal factor = scale();
    const QPointF origin((width() - m_designSize.width() * factor) / 2,
                         (height() - m_designSize.height() * factor) / 2);
    // Corner and size are rounded apart, so that equal pictures stay equal in size.
    return QRect((origin + QPointF(designed.topLeft()) * factor).toPoint(),
                 (QSizeF(designed.size()) * factor).toSize());
}

bool PanelWidget::isOfFraction(const QWidget *view) const
{
    return view == m_numerator || view == m_line || view == m_denominator;
}

bool PanelWidget::showsFraction() const
{
    return m_line && !m_line->isHidden();
}

void PanelWidget::paintEvent(QPaintEvent *)
{
    const QSize needed = (QSizeF(size()) * devicePixelRatio()).toSize();
    if (m_backdrop.size() != needed)
        m_backdrop = backdrop();
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_backdrop);
    paintUnlitSegments(painter, Segments::OfFraction);
    if (hasFocus())
        paintFocus(painter);
}

void PanelWidget::paintFocus(QPainter &painter) const
{
    const qreal bezel = glassBezel * scale();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, bezel / 3));
    const QRectF middleOfBezel =
        QRectF(rect()).adjusted(bezel / 2, bezel / 2, -bezel / 2, -bezel / 2);
    painter.drawRoundedRect(middleOfBezel, bezel, bezel);
}

// The glass in device pixels, which its rim is sharp in; the segments as they are painted later.
QPixmap PanelWidget::backdrop()
{
    const qreal ratio = devicePixelRatio();
    QPixmap pixmap((QSizeF(size()) * ratio).toSize());
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        paintGlass(painter, pixmap.size(), scale() * ratio);
    }
    pixmap.setDevicePixelRatio(ratio);
    QPainter painter(&pixmap);
    paintUnlitSegments(painter, Segments::Fixed);
    return pixmap;
}

void PanelWidget::paintUnlitSegments(QPainter &painter, Segments segments)
{
    painter.setOpacity(unlitOpacity);
    for (const Place &place : m_places) {
        const auto *view = qobject_cast<const ImageView *>(place.widget);
        const bool ofFraction = isOfFraction(place.widget);
        if (!view || ofFraction != (segments == Segments::OfFraction))
            continue;
        if (showsFraction() || !ofFraction || place.widget == m_numerator)
            m_pictures.paint(painter, view->unlitImageName(), view->geometry());
    }
}

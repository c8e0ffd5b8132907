// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/LateIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <optional>
#include <utility>

namespace {

class LateIconEngine : public QIconEngine
{
public:
    explicit LateIconEngine(std::function<QIcon()> make)
        : m_make(std::move(make))
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().pixmap(size, 1, mode, state);
    }

    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().actualSize(size, mode, state);
    }

    QIconEngine *clone() const override { return new LateIconEngine(*this); }

private:
    const QIcon &icon()
    {
        if (!m_icon)
            m_icon = m_make();
        return *m_icon;
    }

    std::function<QIcon()> m_make;
    std::optional<QIcon> m_icon;
};

} // namespace

QIcon lateIcon(std::function<QIcon()> make)
{
    return QIcon(new LateIconEngine(std::move(make)));
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <map>

/// Pictures by name, at the sizes in which they have been painted: painting one again costs a
/// look-up. The toolkit's own cache drops what is not on the screen for half a minute, and wakes up
/// for it.
class PictureCache
{
public:
    /// The picture at exactly `size` device pixels, made from the smallest variant that is not
    /// smaller; null when there is no such picture. Made anew by each call.
    static QPixmap picture(const QString &name, QSize size);
    /// Size at 1x; empty when there is no such picture.
    static QSize pictureSize(const QString &name);

    /// Fills `place`, given in the painter's logical pixels.
    void paint(QPainter &painter, const QString &name, const QRect &place);
    /// To be called when the places' sizes change.
    void clear() { m_painted.clear(); }

private:
    struct Painted
    {
        QSize size;
        QPixmap pixmap;
    };

    QPixmap painted(const QString &name, QSize size);

    std::multimap<QString, Painted> m_painted; ///< by name
};

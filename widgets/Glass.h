// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QSizeF>

class QPainter;

/// Width of the bezel, in units of the designed glass.
inline constexpr qreal glassBezel = 10;

/// The empty glass in its bezel, at the painter's origin. Drawn, not a picture: it is by far the
/// largest shape of the display, and a picture of it takes as long to unpack as all others.
/// @param unit pixels of a unit of the designed glass, of which corners and bezel have a fixed
/// number; what is between them is stretched
void paintGlass(QPainter &painter, QSizeF size, qreal unit);

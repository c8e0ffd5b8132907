// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The panel for those who cannot see it.

#include "app/PostalScaleAppDelegate.h"

#include "lcd/ReadingWords.h"

namespace {

QString digitOf(const ImageView *view)
{
    if (view->isHidden() || view->isEmpty())
        return {};
    return view->imageName().section(QLatin1Char('.'), 0, 0);
}

bool isLit(const ImageView *view)
{
    return !view->isHidden();
}

} // namespace

void PostalScaleAppDelegate::announceReading()
{
    // Once everything of this turn is drawn: a panel is blanked before an overload is shown on it.
    if (!announcement.isActive())
        announcement.start();
}

void PostalScaleAppDelegate::announceNow()
{
    if (!isDeviceConnected) {
        imageBox->setReadingText(tr("no scale connected"));
        return;
    }
    imageBox->setReadingText(readingWords({
        .digits = {digitOf(digZero), digitOf(digOne), digitOf(digTwo), digitOf(digThree)},
        .numerator = digitOf(numeratorImg),
        .denominator = digitOf(denomImg),
        .points = {isLit(dot1Img), isLit(dot2Img), isLit(dot3Img), isLit(dot4Img)},
        .bar = isLit(lineImg),
        .colon = isLit(colonImg),
        .minus = isLit(minusIMg),
        .overload = isLit(errorIMG),
        .grams = isLit(gmImg),
        .kilograms = isLit(kgImg),
        .pounds = isLit(lbImg),
        .ounces = isLit(ozImg),
        .hold = isLit(lockImg),
    }));
}

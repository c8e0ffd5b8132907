// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The delegate's digits: applies what the layout rules decide to the panel's views.

#include "app/PostalScaleAppDelegate.h"

#include "lcd/DigitLayout.h"
#include "lcd/SegmentPattern.h"
#include "scale/HIDManager.h"
#include "scale/Log.h"

namespace {

ImageView *viewOf(const Ui::MainWindow &panel, DigitView view)
{
    switch (view) {
    case DigitView::digZero: return panel.digZero;
    case DigitView::digOne: return panel.digOne;
    case DigitView::digTwo: return panel.digTwo;
    case DigitView::digThree: return panel.digThree;
    case DigitView::numeratorImg: return panel.numeratorImg;
    case DigitView::lineImg: return panel.lineImg;
    case DigitView::denomImg: return panel.denomImg;
    }
    return panel.digZero;
}

} // namespace

void PostalScaleAppDelegate::Draw5Digit(qint64 nValue)
{
    const DigitPlan plan =
        layoutDigits(nValue, {.currentScale = hid_obj->currentScale(),
                              .currentUnit = hid_obj->currentUnit(),
                              .unitnumber = hid_obj->unitnumber(),
                              .dotunit = hid_obj->dotunit(),
                              .lbOZlast = hid_obj->lbOZlast(),
                              .highCapacity = isHighCapacityModel(selectedModelName())});
    for (const DigitStep &step : plan.steps()) {
        ImageView *view = viewOf(*this, step.view);
        switch (step.kind) {
        case DigitStep::Kind::Log: logLine(step.line.toString()); break;
        case DigitStep::Kind::Show:
            view->setHidden(false);
            view->setImage(digitPicture(step.number));
            break;
        case DigitStep::Kind::Hide: view->setHidden(true); break;
        case DigitStep::Kind::Unhide: view->setHidden(false); break;
        case DigitStep::Kind::SetDigit: view->setImage(digitPicture(step.number)); break;
        case DigitStep::Kind::SetRoundedDigit:
            view->setImage(roundedDigitPicture(step.rounded));
            break;
        case DigitStep::Kind::ClearFractionField: displayforLBOZsimple(); break;
        }
    }
}

void PostalScaleAppDelegate::Draw5DigitOverload()
{
    logLine(QStringLiteral("Draw5DigitOverload"));
    const bool hidden = !hid_obj->OverloadFlag();
    for (ImageView *view : {errorIMG, errdasOne, errdastwo, errdasThree})
        view->setHidden(hidden);
}

void PostalScaleAppDelegate::shownegativeSign(bool negative)
{
    logLine(QStringLiteral("shownegativeSign"));
    logLine(negative ? QStringLiteral("True") : QStringLiteral("FALSE"));
    minusIMg->setHidden(!negative);
}

void PostalScaleAppDelegate::clearAll()
{
    for (const char *name : blankedSegments())
        DrawIcon(QLatin1String(name), false);
    for (ImageView *view :
         {minusIMg, digOne, digTwo, digThree, digZero, numeratorImg, denomImg, lineImg})
        view->setHidden(true);
    lbLBL->setText({});
    lbUnitlbl->setHidden(true);
    announceReading();
}

void PostalScaleAppDelegate::displayforLBOZsimple()
{
    for (ImageView *view : {numeratorImg, denomImg, lineImg, dot4Img})
        view->setHidden(true);
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/Panel.h"

#include "base/Log.h"
#include "lcd/ReadingWords.h"
#include "lcd/SegmentPattern.h"
#include "scale/HIDManager.h"
#include "scale/ScaleSession.h"
#include "ui_MainWindow.h"

#include <cmath>

namespace {

/// A number that is none, or is infinite, is no digit either.
PanelContents::Digit digitOf(double number)
{
    if (!(number >= 0 && number <= 9))
        return {};
    return static_cast<int>(number);
}

} // namespace

Panel::Panel(const Ui::MainWindow &form, const HIDManager &link, const ScaleSession &session,
             QObject *parent)
    : QObject(parent)
    , m_form(form)
    , m_link(link)
    , m_session(session)
    , m_cells{{{form.digZero},
               {form.digOne},
               {form.digTwo},
               {form.digThree},
               {form.numeratorImg},
               {form.lineImg},
               {form.denomImg}}}
    , m_segments{{{segment::colon, form.colonImg, &m_fixed.colon},
                  {segment::dot1, form.dot1Img, &m_fixed.points[0]},
                  {segment::dot2, form.dot2Img, &m_fixed.points[1]},
                  {segment::dot3, form.dot3Img, &m_fixed.points[2]},
                  {segment::dot4, form.dot4Img, &m_fixed.points[3]},
                  {segment::grams, form.gmImg, &m_fixed.grams},
                  {segment::kilograms, form.kgImg, &m_fixed.kilograms},
                  {segment::pounds, form.lbImg, &m_fixed.pounds},
                  {segment::ounces, form.ozImg, &m_fixed.ounces},
                  {segment::hold, form.lockImg, &m_fixed.hold},
                  {segment::mains, form.plugImg, nullptr},
                  {segment::battery, form.batteryImg, nullptr},
                  {segment::usb, form.USBImg, nullptr}}}
{
    m_announcement.setSingleShot(true);
    connect(&m_announcement, &QTimer::timeout, this, &Panel::announceNow);
    announceReading();
}

DigitContext Panel::digitContext() const
{
    return {.currentScale = m_link.currentScale(),
            .currentUnit = m_link.currentUnit(),
            .unitnumber = m_link.unitnumber(),
            .dotunit = m_link.dotunit(),
            .lbOZlast = m_link.lbOZlast(),
            .capacity = capacityOf(m_session.selectedModelName())};
}

void Panel::Draw5Digit(qint64 nValue)
{
    for (const DigitStep &step : layoutDigits(nValue, digitContext()))
        perform(step);
}

void Panel::perform(const DigitStep &step)
{
    const auto number = static_cast<double>(step.number);
    switch (step.kind) {
    case DigitStep::Kind::Log: logLine(step.line.toString()); break;
    case DigitStep::Kind::Show:
        setLit(step.view, true);
        setDigit(step.view, digitPicture(step.number), number);
        break;
    case DigitStep::Kind::Hide: setLit(step.view, false); break;
    case DigitStep::Kind::Unhide: setLit(step.view, true); break;
    case DigitStep::Kind::SetDigit: setDigit(step.view, digitPicture(step.number), number); break;
    case DigitStep::Kind::SetRoundedDigit:
        setDigit(step.view, roundedDigitPicture(step.rounded),
                 std::nearbyint(std::abs(step.rounded)));
        break;
    case DigitStep::Kind::ClearFractionField: displayforLBOZsimple(); break;
    }
}

void Panel::setDigit(DigitView view, const QString &picture, double number)
{
    cell(view).view->setImage(picture);
    cell(view).digit = digitOf(number);
}

void Panel::setLit(DigitView view, bool lit)
{
    cell(view).view->setHidden(!lit);
    cell(view).lit = lit;
}

void Panel::Draw5DigitOverload()
{
    logLine(QStringLiteral("Draw5DigitOverload"));
    m_fixed.overload = m_link.OverloadFlag();
    showOverload();
}

void Panel::shownegativeSign(bool negative)
{
    logLine(QStringLiteral("shownegativeSign"));
    logLine(negative ? QStringLiteral("True") : QStringLiteral("FALSE"));
    showMinus(negative);
}

void Panel::showMinus(bool shown)
{
    m_form.minusIMg->setHidden(!shown);
    m_fixed.minus = shown;
}

void Panel::clearAll()
{
    using enum DigitView;
    for (const char *name : blankedSegments())
        DrawIcon(QLatin1String(name), false);
    showMinus(false);
    for (const DigitView view :
         {digOne, digTwo, digThree, digZero, numeratorImg, denomImg, lineImg})
        setLit(view, false);
    m_form.lbLBL->setText({});
    m_form.lbUnitlbl->setHidden(true);
    announceReading();
}

void Panel::displayforLBOZsimple()
{
    using enum DigitView;
    for (const DigitView view : {numeratorImg, denomImg, lineImg})
        setLit(view, false);
    DrawIcon(QLatin1String(segment::dot4), false);
}

void Panel::DrawIcon(QLatin1String name, bool show)
{
    // The binary scale knows no grams: their word stays as an earlier scale left it.
    if (m_link.currentScale() == scaletype::binary && name == QLatin1String(segment::grams))
        return;
    for (const FixedSegment &each : m_segments) {
        if (name != QLatin1String(each.name))
            continue;
        each.view->setHidden(!show);
        if (each.lit != nullptr)
            *each.lit = show;
        return;
    }
}

void Panel::DisplayUnit(int unit)
{
    const SegmentPlan plan =
        segmentPattern(unit, {.currentScale = m_link.currentScale(),
                              .unitnumber = m_link.unitnumber(),
                              .scaleCommand = m_link.scaleCommand(),
                              .capacity = capacityOf(m_session.selectedModelName())});
    for (const SegmentStep &step : plan) {
        if (step.name == nullptr)
            logLine(step.line.toString());
        else
            DrawIcon(QLatin1String(step.name), step.action == Segment::Show);
    }
}

void Panel::show(const PanelContents &contents)
{
    using enum DigitView;
    const auto showDigit = [this](DigitView view, PanelContents::Digit digit) {
        setLit(view, digit.has_value());
        if (digit)
            setDigit(view, digitPicture(*digit), *digit);
    };
    showDigit(digZero, contents.digits[0]);
    showDigit(digOne, contents.digits[1]);
    showDigit(digTwo, contents.digits[2]);
    showDigit(digThree, contents.digits[3]);
    showDigit(numeratorImg, contents.numerator);
    showDigit(denomImg, contents.denominator);
    setLit(lineImg, contents.bar);
    m_fixed = contents;
    // The power supply is nothing that such contents tell of.
    for (const FixedSegment &each : m_segments)
        each.view->setHidden(each.lit == nullptr || !*each.lit);
    m_form.minusIMg->setHidden(!contents.minus);
    showOverload();
    announceReading();
}

void Panel::showOverload()
{
    for (ImageView *view :
         {m_form.errorIMG, m_form.errdasOne, m_form.errdastwo, m_form.errdasThree})
        view->setHidden(!m_fixed.overload);
}

PanelContents::Digit Panel::litDigit(DigitView view) const
{
    return isLit(view) ? cell(view).digit : PanelContents::Digit();
}

PanelContents Panel::contents() const
{
    using enum DigitView;
    PanelContents contents = m_fixed;
    contents.digits = {litDigit(digZero), litDigit(digOne), litDigit(digTwo), litDigit(digThree)};
    contents.numerator = litDigit(numeratorImg);
    contents.denominator = litDigit(denomImg);
    contents.bar = isLit(lineImg);
    return contents;
}

void Panel::setDoubt(Doubt doubt)
{
    m_doubt = doubt;
    m_form.imageBox->setDimmed(doubt != Doubt::None);
    announceReading();
}

void Panel::announceReading()
{
    // Once everything of this turn is drawn: a panel is blanked before an overload is shown on it.
    if (!m_announcement.isActive())
        m_announcement.start();
}

void Panel::announceNow()
{
    m_announced = contents();
    QString words = m_session.isDeviceConnected ? readingWords(m_announced)
                                                : QStringLiteral("no scale connected");
    if (m_doubt == Doubt::Silence)
        words += QStringLiteral(", the scale does not answer");
    if (m_doubt == Doubt::Unconfirmed)
        words += QStringLiteral(", not confirmed yet");
    m_form.imageBox->setReadingText(words);
    emit readingAnnounced();
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The box of six options, which are kept between runs.

#include "app/PostalScaleAppDelegate.h"

#include "export/OptionTag.h"
#include "export/Settings.h"
#include "scale/HIDManager.h"
#include "scale/Log.h"

#include <QGuiApplication>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto boxClosingDelay = 400ms;

int tagOf(const QCheckBox *box)
{
    return box == nullptr ? 0 : box->property("tag").toInt();
}

} // namespace

void PostalScaleAppDelegate::connectOptions()
{
    for (QCheckBox *box : optionBoxes())
        connect(box, &QAbstractButton::toggled, this, [this, box] { checkBoxAction(box); });
    connect(optionsToggle, &QAbstractButton::clicked, this, &PostalScaleAppDelegate::optionAction);
    connect(optionLbl, &QAbstractButton::clicked, this, &PostalScaleAppDelegate::optionLblAction);
    keepOptionBoxPlace();
    explainOnTop();
    connectMenuItem(mnuOnTop, &PostalScaleAppDelegate::onTopClicked);
    connectMenuItem(mnuRoundToInt, &PostalScaleAppDelegate::roundToIntClicked);
    connectMenuItem(mnuSendToClip, &PostalScaleAppDelegate::sendToClipClicked);
    connectMenuItem(mnuSendToUSPS, &PostalScaleAppDelegate::sendToUSPSClicked);
    connectMenuItem(mnuSendToUPS, &PostalScaleAppDelegate::sendToUPSClicked);
    connectMenuItem(mnuSendToFEDX, &PostalScaleAppDelegate::sendToFEDXClicked);
}

/// The window would grow and shrink with the box.
void PostalScaleAppDelegate::keepOptionBoxPlace()
{
    QSizePolicy policy = optionBox->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    optionBox->setSizePolicy(policy);
}

void PostalScaleAppDelegate::explainOnTop()
{
    // Wayland gives a client no such right.
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return;
    const QString explanation = tr("On this desktop, the desktop decides what stays on top");
    checkOnTop->setToolTip(explanation);
    mnuOnTop->setToolTip(explanation);
    optionsMenu->setToolTipsVisible(true);
}

void PostalScaleAppDelegate::checkBoxAction(QCheckBox *box)
{
    const int tag = tagOf(box);
    logLine(QStringLiteral("checkBoxAction_WithTag:%1").arg(tag));
    applyOption(tag, box != nullptr && box->isChecked());
    saveOptions();
    setWindowTitle(optionButton->currentText());
    QTimer::singleShot(boxClosingDelay, Qt::PreciseTimer, this,
                       &PostalScaleAppDelegate::hideoPtionBox);
}

void PostalScaleAppDelegate::applyOption(int tag, bool on)
{
    switch (tag) {
    case option::onTop: applyOnTop(on); break;
    case option::roundTo: applyRoundTo(on); break;
    case option::clipboard: applyClipboard(on); break;
    case option::usps: applyUSPS(on); break;
    case option::ups: applyUPS(on); break;
    default: applyFedex(on); break;
    }
}

void PostalScaleAppDelegate::applyOnTop(bool on)
{
    logLine(on ? QStringLiteral("ON") : QStringLiteral("OFF"));
    setOnTop(on);
    if (on)
        selectionLbl->setText(QStringLiteral("On Top"));
}

void PostalScaleAppDelegate::applyRoundTo(bool on)
{
    logLine(QStringLiteral("Round to "));
    // Options are restored before there is a scale link.
    if (hid_obj)
        hid_obj->setSetRound(on);
    if (on)
        selectionLbl->setText(QStringLiteral("Round to"));
}

void PostalScaleAppDelegate::applyClipboard(bool on)
{
    logLine(QStringLiteral("Send weight to clipboard"));
    switchClipboard(on);
    if (!on)
        return;
    // Only what the other boxes show: their options stay as they are.
    for (const int carrier : {option::usps, option::ups, option::fedex})
        markBox(optionWithTag(carrier), false);
    selectionLbl->setText(QStringLiteral("Clipboard"));
}

void PostalScaleAppDelegate::markBox(QCheckBox *box, bool on)
{
    const QSignalBlocker noAction(box);
    box->setChecked(on);
}

void PostalScaleAppDelegate::applyUSPS(bool on)
{
    logLine(QStringLiteral("Send weight to USPS page"));
    markBox(optionWithTag(option::clipboard), false);
    SendtoUSPS = on;
    if (on)
        selectionLbl->setText(QStringLiteral("USPS"));
}

void PostalScaleAppDelegate::applyUPS(bool on)
{
    logLine(QStringLiteral("Send weight to UPS page"));
    markBox(optionWithTag(option::clipboard), false);
    SendtoUPS = on;
    if (on)
        selectionLbl->setText(QStringLiteral("UPS"));
}

void PostalScaleAppDelegate::applyFedex(bool on)
{
    logLine(QStringLiteral("Send weight to Fedex page"));
    markBox(optionWithTag(option::clipboard), false);
    SendtoFedex = on;
}

void PostalScaleAppDelegate::saveOptions()
{
    QList<int> selected;
    for (const QCheckBox *box : optionBoxes()) {
        if (box->isChecked())
            selected.append(tagOf(box));
    }
    settings.setSelectedOptions(selected);
}

void PostalScaleAppDelegate::hideoPtionBox()
{
    optionBox->setHidden(true);
    showOption = !showOption;
    optionBox->setHidden(!showOption);
}

void PostalScaleAppDelegate::optionAction()
{
    logLine(QStringLiteral("optionAction"));
    showOption = !showOption;
    optionBox->setHidden(!showOption);
}

void PostalScaleAppDelegate::optionLblAction()
{
    logLine(QStringLiteral("optionLblAction"));
}

void PostalScaleAppDelegate::setOnTop(bool onTop)
{
    // Before the first show the widget's flags count; afterwards the QWindow's, since the widget
    // would hide and show itself to change its own.
    const Qt::WindowFlags flags = window->windowFlags().setFlag(Qt::WindowStaysOnTopHint, onTop);
    window->overrideWindowFlags(flags);
    if (QWindow *shown = window->windowHandle())
        shown->setFlag(Qt::WindowStaysOnTopHint, onTop);
}

QList<QCheckBox *> PostalScaleAppDelegate::optionBoxes() const
{
    QList<QCheckBox *> boxes = optionBox->findChildren<QCheckBox *>();
    std::sort(boxes.begin(), boxes.end(), [](const QCheckBox *one, const QCheckBox *other) {
        return tagOf(one) < tagOf(other);
    });
    return boxes;
}

QCheckBox *PostalScaleAppDelegate::optionWithTag(int tag) const
{
    const QList<QCheckBox *> boxes = optionBoxes();
    const auto found = std::find_if(boxes.begin(), boxes.end(),
                                    [tag](const QCheckBox *box) { return tagOf(box) == tag; });
    return found == boxes.end() ? nullptr : *found;
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The box of six options, which are kept between runs.

#include "export/Options.h"

#include "base/Log.h"
#include "export/CarrierPages.h"
#include "export/ExportClipboard.h"
#include "export/ExportState.h"
#include "export/OptionTag.h"
#include "scale/HIDManager.h"
#include "settings/Settings.h"
#include "ui_MainWindow.h"

#include <QTimer>
#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto boxClosingDelay = 400ms;

int tagOf(const QCheckBox *box)
{
    return box == nullptr ? 0 : box->property("tag").toInt();
}

QList<QCheckBox *> boxesOf(const Ui::MainWindow &form)
{
    QList<QCheckBox *> found = form.optionBox->findChildren<QCheckBox *>();
    // It stands among them, but is kept in another way, and shows the same as its menu item.
    found.removeOne(form.checkSettledOnly);
    std::sort(found.begin(), found.end(), [](const QCheckBox *one, const QCheckBox *other) {
        return tagOf(one) < tagOf(other);
    });
    return found;
}

} // namespace

void Options::connectBox()
{
    m_boxes = boxesOf(m_around.form);
    const Ui::MainWindow &form = m_around.form;
    for (QCheckBox *box : m_boxes)
        connect(box, &QAbstractButton::toggled, this, [this, box] { checkBoxAction(box); });
    connect(form.optionsToggle, &QAbstractButton::clicked, this, &Options::optionAction);
    connect(form.optionLbl, &QAbstractButton::clicked, this, &Options::optionLblAction);
    // The window would grow and shrink with the box.
    QSizePolicy policy = form.optionBox->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    form.optionBox->setSizePolicy(policy);
}

void Options::restore(const QList<int> &tags)
{
    for (const int tag : tags) {
        QCheckBox *box = boxWithTag(tag);
        if (box != nullptr)
            markBox(box, true);
        checkBoxAction(box);
    }
}

void Options::checkBoxAction(QCheckBox *box)
{
    const int tag = tagOf(box);
    logLine(QStringLiteral("checkBoxAction_WithTag:%1").arg(tag));
    applyOption(tag, box != nullptr && box->isChecked());
    saveOptions();
    m_around.showModelInTitle();
    QTimer::singleShot(boxClosingDelay, Qt::PreciseTimer, this, &Options::hideoPtionBox);
}

void Options::applyOption(int tag, bool on)
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

void Options::applyOnTop(bool on)
{
    logLine(on ? QStringLiteral("ON") : QStringLiteral("OFF"));
    setOnTop(on);
    if (on)
        showLatest(QStringLiteral("On Top"));
}

void Options::applyRoundTo(bool on)
{
    logLine(QStringLiteral("Round to "));
    m_around.link.setSetRound(on);
    if (on)
        showLatest(QStringLiteral("Round to"));
}

void Options::applyClipboard(bool on)
{
    logLine(QStringLiteral("Send weight to clipboard"));
    m_around.clipboard.switchTo(on);
    if (!on)
        return;
    // Only what the other boxes show: their options stay as they are.
    for (const int carrier : {option::usps, option::ups, option::fedex})
        markBox(boxWithTag(carrier), false);
    showLatest(QStringLiteral("Clipboard"));
}

void Options::markBox(QCheckBox *box, bool on)
{
    const QSignalBlocker noAction(box);
    box->setChecked(on);
}

void Options::applyUSPS(bool on)
{
    logLine(QStringLiteral("Send weight to USPS page"));
    markBox(boxWithTag(option::clipboard), false);
    setCarrier(carrier::usps, on);
    if (on)
        showLatest(QStringLiteral("USPS"));
}

void Options::applyUPS(bool on)
{
    logLine(QStringLiteral("Send weight to UPS page"));
    markBox(boxWithTag(option::clipboard), false);
    setCarrier(carrier::ups, on);
    if (on)
        showLatest(QStringLiteral("UPS"));
}

void Options::applyFedex(bool on)
{
    logLine(QStringLiteral("Send weight to Fedex page"));
    markBox(boxWithTag(option::clipboard), false);
    setCarrier(carrier::fedex, on);
}

void Options::saveOptions()
{
    QList<int> selected;
    for (const QCheckBox *box : m_boxes) {
        if (box->isChecked())
            selected.append(tagOf(box));
    }
    m_around.settings.setSelectedOptions(selected);
}

void Options::hideoPtionBox()
{
    m_around.form.optionBox->setHidden(true);
    m_around.state.showOption = !m_around.state.showOption;
    m_around.form.optionBox->setHidden(!m_around.state.showOption);
}

void Options::optionAction()
{
    logLine(QStringLiteral("optionAction"));
    m_around.state.showOption = !m_around.state.showOption;
    m_around.form.optionBox->setHidden(!m_around.state.showOption);
}

void Options::optionLblAction()
{
    logLine(QStringLiteral("optionLblAction"));
}

QCheckBox *Options::boxWithTag(int tag) const
{
    const auto found = std::find_if(m_boxes.begin(), m_boxes.end(),
                                    [tag](const QCheckBox *box) { return tagOf(box) == tag; });
    return found == m_boxes.end() ? nullptr : *found;
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// From the launch to the moment when the scale is watched for.

#include "app/PostalScaleAppDelegate.h"
#include "app/WindowPlace.h"
#include "base/Log.h"
#include "desktop/WindowDesktop.h"
#include "settings/Settings.h"
#include "widgets/WindowProportion.h"

#include <QActionGroup>
#include <QSysInfo>

namespace {

struct SystemVersion
{
    int major = 0;
    int minor = 0;
    int bugFix = 0;
};

/// The distribution's release; numbers that it leaves out are 0.
SystemVersion systemVersion()
{
    const QStringList parts = QSysInfo::productVersion().split(QLatin1Char('.'));
    return {.major = parts.value(0).toInt(),
            .minor = parts.value(1).toInt(),
            .bugFix = parts.value(2).toInt()};
}

QString systemVersionText(const SystemVersion &version)
{
    return QStringLiteral("Mac OS X %1.%2.%3")
        .arg(version.major)
        .arg(version.minor)
        .arg(version.bugFix);
}

/// As a dictionary is written, on one line.
QString describeOptions(const QList<int> &tags)
{
    QStringList entries;
    for (const int tag : tags)
        entries.append(QStringLiteral("%1 = selected;").arg(tag));
    return QStringLiteral("{ %1 }").arg(entries.join(QLatin1Char(' ')));
}

/// As near to blue as legible text may be, 4.5 to 1: a disabled unit's, and what nobody has to
/// read.
constexpr int paleOpacity = 160;

/// The same on grey, where black itself has 5.3 to 1 only.
constexpr int paleOpacityOnGrey = 217;

void setTextColour(QWidget *widget, const QColor &colour)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, colour);
    QColor disabled = colour;
    disabled.setAlpha(paleOpacity);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, disabled);
    widget->setPalette(palette);
}

void setFillColour(QWidget *box, const QColor &colour)
{
    QPalette palette = box->palette();
    palette.setColor(QPalette::Window, colour);
    box->setPalette(palette);
    box->setAutoFillBackground(true);
}

} // namespace

void PostalScaleAppDelegate::awakeFromNib()
{
    const DesktopSituation situation = situationOfWindows();
    auto *proportion = new WindowProportion(window.get(), window->size(),
                                            mayTile(situation.desktop, situation.shell)
                                                ? WindowProportion::Correction::Forbidden
                                                : WindowProportion::Correction::Allowed);
    proportion->setSpareRoom(boxContainer);
    auto *place = new WindowPlace(window.get(), m_settings);
    m_compactForm =
        std::make_unique<CompactForm>(CompactForm::Surroundings{.form = *this,
                                                                .window = *window,
                                                                .proportion = *proportion,
                                                                .place = *place,
                                                                .statusArea = m_statusArea,
                                                                .settings = m_settings},
                                      nullptr);
}

void PostalScaleAppDelegate::applicationDidFinishLaunching()
{
    m_statusArea.setNotice(StatusArea::Notice::Information, m_information.trouble());
    setSelectedRadioButtonIndex(unittag::poundsOuncesB);
    const SystemVersion version = systemVersion();
    logLine(QStringLiteral("OS version is %1").arg(systemVersionText(version)));
    ozLBL->setText(systemVersionText(version));
    logLine(QStringLiteral("Select %1").arg(m_information.appNameDisplay()));
    if (m_information.isUSPS())
        applyUSPSBranding();
    else
        applyPlainBranding();
    restoreOptions();
    // Rounding is not among what comes back, though its box shows it: it waits for the next click.
    hid_obj->setSetRound(false);
    hid_obj->get_device_handle();
    restoreModel();
}

void PostalScaleAppDelegate::applyUSPSBranding()
{
    setFillColour(boxContainer, QColor(1, 62, 145));
    for (QLabel *label : std::initializer_list<QLabel *>{
             connectionStatuslbl, ozLBL, lbLBL, exportCaption, lblModel, settledLbl, leavesLbl})
        setTextColour(label, Qt::white);
    // Its colour stays what it is.
    ozLBL->setOpacity(paleOpacity / 255.0);
    for (QAbstractButton *cell : radiogroup->buttons())
        setTextColour(cell, Qt::white);
    if (m_information.modelNames().isEmpty())
        return;
    setWindowTitle(optionButton->currentText());
    listModels(ItemLog::Silent);
}

void PostalScaleAppDelegate::applyPlainBranding()
{
    if (m_information.modelNames().isEmpty())
        return;
    setWindowTitle(optionButton->currentText());
    setFillColour(boxContainer, QColor(128, 128, 128));
    ozLBL->setOpacity(paleOpacityOnGrey / 255.0);
    listModels(ItemLog::Named);
}

void PostalScaleAppDelegate::listModels(ItemLog log)
{
    optionButton->setPlaceholderText(QStringLiteral("Select"));
    optionButton->clear();
    modelMenu->clear();
    auto *choice = new QActionGroup(modelMenu);
    for (const QString &name : m_information.modelNames()) {
        if (log == ItemLog::Named)
            logLine(QStringLiteral("item:%1").arg(name));
        optionButton->addItem(name);
        // In a menu's text an ampersand marks the next letter.
        QAction *item =
            modelMenu->addAction(QString(name).replace(QLatin1Char('&'), QLatin1String("&&")));
        item->setData(name);
        item->setCheckable(true);
        choice->addAction(item);
        connect(item, &QAction::triggered, this, [this, item] {
            // The toolkit has marked the item already; a refused choice must leave no trace.
            m_markedModel->setChecked(true);
            modelSelected(item);
        });
    }
    optionButton->setCurrentIndex(0);
    m_markedModel = modelMenu->actions().constFirst();
    m_markedModel->setChecked(true);
    setWindowTitle(modelMenu->actions().constFirst()->data().toString());
}

void PostalScaleAppDelegate::restoreOptions()
{
    const QList<int> tags = m_settings.selectedOptions();
    if (tags.isEmpty())
        return;
    logLine(QStringLiteral("defaultDic Found"));
    logLine(QStringLiteral("default_Check:%1").arg(describeOptions(tags)));
    m_options.restore(tags);
}

void PostalScaleAppDelegate::restoreModel()
{
    const int index = m_settings.lastSelectedValue().value_or(0);
    if (index >= 0 && index < optionButton->count())
        optionButton->setCurrentIndex(index);
    enableDisableWeight(index);
}

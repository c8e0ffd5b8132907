// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/PostalScaleAppDelegate.h"

#include "export/Settings.h"
#include "scale/HIDManager.h"

PostalScaleAppDelegate::PostalScaleAppDelegate(const BundleInformation &bundleInformation,
                                               Settings &userSettings)
    : window(std::make_unique<QMainWindow>())
    , information(bundleInformation)
    , settings(userSettings)
{
    setupUi(window.get());
    connectActions();
    connectUnits();
    connectOptions();
    makeStatusArea();
    announcement.setSingleShot(true);
    connect(&announcement, &QTimer::timeout, this, &PostalScaleAppDelegate::announceNow);
    announceReading();
}

PostalScaleAppDelegate::~PostalScaleAppDelegate() = default;

bool PostalScaleAppDelegate::applicationShouldTerminateAfterLastWindowClosed()
{
    if (isDeviceConnected && hid_obj->currentStatue())
        hid_obj->set_device_OFF();
    return true;
}

void PostalScaleAppDelegate::connectActions()
{
    quitItem->setShortcut(QKeySequence::Quit);
    connect(quitItem, &QAction::triggered, window.get(), &QWidget::close);
    connect(optionButton, &QComboBox::activated, this,
            &PostalScaleAppDelegate::modelSelectionAction);
    connectCommand(powerButton, powerItem, Qt::CTRL | Qt::Key_P,
                   &PostalScaleAppDelegate::ON_Off_TareAction);
    connectCommand(tareButton, tareItem, Qt::CTRL | Qt::Key_T, &PostalScaleAppDelegate::TareAction);
    connectCommand(holdButton, holdItem, Qt::CTRL | Qt::Key_H, &PostalScaleAppDelegate::holdAction);
}

void PostalScaleAppDelegate::connectCommand(QAbstractButton *button, QAction *item,
                                            QKeySequence shortcut,
                                            void (PostalScaleAppDelegate::*action)())
{
    item->setShortcut(shortcut);
    // A key held down is one command.
    item->setAutoRepeat(false);
    button->setToolTip(
        tr("%1 (%2)").arg(button->toolTip(), shortcut.toString(QKeySequence::NativeText)));
    connect(button, &QAbstractButton::clicked, this, action);
    connect(item, &QAction::triggered, this, action);
}

void PostalScaleAppDelegate::setUnitCaptionHidden(bool hidden)
{
    unitLBl->setHidden(hidden);
}

QString PostalScaleAppDelegate::exportLabelText() const
{
    return lbLBL->text();
}

void PostalScaleAppDelegate::setExportLabelText(const QString &text)
{
    lbLBL->setText(text);
}

void PostalScaleAppDelegate::setWindowTitle(const QString &model)
{
    window->setWindowTitle(information.windowTitle(model));
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/PostalScaleAppDelegate.h"

#include "export/Settings.h"
#include "scale/HIDManager.h"

PostalScaleAppDelegate::PostalScaleAppDelegate(const BundleInformation &bundleInformation,
                                               Settings &userSettings)
    : window(std::make_unique<QMainWindow>()), information(bundleInformation),
      settings(userSettings)
{
    setupUi(window.get());
    connectActions();
    connectUnits();
    connectOptions();
    makeStatusArea();
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
    connect(quitItem, &QAction::triggered, window.get(), &QWidget::close);
    connect(optionButton, &QComboBox::activated, this,
            &PostalScaleAppDelegate::modelSelectionAction);
    connect(powerButton, &QAbstractButton::clicked, this,
            &PostalScaleAppDelegate::ON_Off_TareAction);
    connect(powerItem, &QAction::triggered, this, &PostalScaleAppDelegate::ON_Off_TareAction);
    connect(tareButton, &QAbstractButton::clicked, this, &PostalScaleAppDelegate::TareAction);
    connect(tareItem, &QAction::triggered, this, &PostalScaleAppDelegate::TareAction);
    connect(holdButton, &QAbstractButton::clicked, this, &PostalScaleAppDelegate::holdAction);
    connect(holdItem, &QAction::triggered, this, &PostalScaleAppDelegate::holdAction);
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

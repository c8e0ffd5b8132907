// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the box and the menu have in common.

#include "export/Options.h"

#include "desktop/WindowDesktop.h"
#include "export/CarrierPages.h"
#include "export/ExportState.h"
#include "ui_MainWindow.h"

#include <QWindow>

Options::Options(const Surroundings &surroundings, QObject *parent)
    : QObject(parent)
    , m_around(surroundings)
{
    connectBox();
    explainOnTop();
    connectMenu();
    // Quiet until there is one.
    for (QWidget *part : {static_cast<QWidget *>(m_around.form.optionLbl),
                          static_cast<QWidget *>(m_around.form.selectionLbl)})
        part->setForegroundRole(QPalette::PlaceholderText);
}

void Options::explainOnTop()
{
    // Wayland gives a client no such right.
    if (desktopOfWindows() != Desktop::Wayland)
        return;
    const QString explanation =
        QStringLiteral("On this desktop, the desktop decides what stays on top");
    m_around.form.checkOnTop->setToolTip(explanation);
    m_around.form.mnuOnTop->setToolTip(explanation);
    m_around.form.optionsMenu->setToolTipsVisible(true);
}

void Options::setOnTop(bool onTop)
{
    // Before the first show the widget's flags count; afterwards the QWindow's, since the widget
    // would hide and show itself to change its own.
    QWidget &window = m_around.window;
    window.overrideWindowFlags(window.windowFlags().setFlag(Qt::WindowStaysOnTopHint, onTop));
    if (QWindow *shown = window.windowHandle())
        shown->setFlag(Qt::WindowStaysOnTopHint, onTop);
    m_around.showOnTopNotice(onTop ? onTopTroubleOfWindows().text() : QString());
}

std::uint8_t &Options::carrierFlag(int number) const
{
    if (number == carrier::usps)
        return m_around.state.SendtoUSPS;
    return number == carrier::ups ? m_around.state.SendtoUPS : m_around.state.SendtoFedex;
}

void Options::setCarrier(int number, bool on)
{
    carrierFlag(number) = on;
    if (!on)
        m_around.carrierWentOff(number);
    m_around.carriersChanged();
}

void Options::showLatest(const QString &option)
{
    m_around.form.selectionLbl->setText(option);
    m_around.form.selectionLbl->setForegroundRole(QPalette::WindowText);
    m_around.form.optionLbl->setForegroundRole(QPalette::ButtonText);
}

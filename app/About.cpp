// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/About.h"

#include <QCoreApplication>
#include <QMessageBox>

void showAbout(QWidget &window)
{
    auto *box = new QMessageBox(
        QMessageBox::NoIcon, QStringLiteral("About Postal Scale"),
        QStringLiteral("Postal Scale %1").arg(QCoreApplication::applicationVersion()),
        QMessageBox::Close, &window);
    box->setInformativeText(QStringLiteral(
        "Shows the weight of a USB postal scale, and sends it on.\n\n"
        "Not for trade: neither the program nor the scale is verified, and no price may be asked "
        "by what they show.\n\nMIT licence."));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

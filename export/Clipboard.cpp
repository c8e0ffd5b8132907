// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The weight on the clipboard.

#include "app/PostalScaleAppDelegate.h"

#include <QClipboard>
#include <QGuiApplication>

void PostalScaleAppDelegate::switchClipboard(bool on)
{
    setSetClip(on);
    if (!on)
        setNotice(Notice::Clipboard, {});
}

void PostalScaleAppDelegate::copyToClipboard(const QString &text)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setText(text);
    setNotice(Notice::Clipboard,
              clipboard->ownsClipboard()
                  ? QString()
                  : QStringLiteral("The desktop does not let this window write the clipboard "
                                   "while it is not in front."));
}

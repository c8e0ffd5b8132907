// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the user should know of, on one line along the window's edge.

#include "app/PostalScaleAppDelegate.h"

#include "export/Settings.h"

#include <QStatusBar>

void PostalScaleAppDelegate::makeStatusArea()
{
    noticeLbl = new QLabel(window.get());
    // A long notice is cut off rather than widen the window.
    noticeLbl->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    window->statusBar()->addWidget(noticeLbl, 1);
    browserLbl = new QLabel(window.get());
    // The notice has the room first, and a narrow window cuts this off rather than be held open.
    browserLbl->setMinimumWidth(1);
    window->statusBar()->addPermanentWidget(browserLbl);
    setNotice(Notice::Settings, settings.trouble());
    connect(&settings, &Settings::troubleChanged, this,
            [this](const QString &trouble) { setNotice(Notice::Settings, trouble); });
}

void PostalScaleAppDelegate::setNotice(Notice topic, const QString &text)
{
    if (notices.value(topic) == text)
        return;
    notices.insert(topic, text);
    QStringList shown;
    QStringList explained;
    for (const QString &notice : std::as_const(notices)) {
        if (notice.isEmpty())
            continue;
        shown.append(notice.section(QStringLiteral(". "), 0, 0));
        explained.append(notice);
    }
    noticeLbl->setText(shown.join(QStringLiteral(" \u00b7 ")));
    noticeLbl->setToolTip(explained.join(QStringLiteral("\n\n")));
}

void PostalScaleAppDelegate::showBrowserStatus(const QString &text)
{
    browserLbl->setText(text);
    browserLbl->setToolTip(text);
}

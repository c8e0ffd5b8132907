// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the user should know of, on one line along the window's edge.

#include "app/PostalScaleAppDelegate.h"

#include "app/ElidedLabel.h"
#include "export/Settings.h"

#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

void PostalScaleAppDelegate::makeStatusArea()
{
    QStatusBar &area = *window->statusBar();
    // In line with what stands above.
    const QMargins above = controlColumns->contentsMargins();
    area.setContentsMargins(above.left(), 0, above.right(), 0);
    area.setSizeGripEnabled(false);
    noticeLbl = new ElidedLabel(window.get());
    area.addWidget(noticeLbl);
    noticeDetails = new QPushButton(tr("&Details"), window.get());
    area.addWidget(noticeDetails);
    connect(noticeDetails, &QPushButton::clicked, this, &PostalScaleAppDelegate::explainNotices);
    browserLbl = new ElidedLabel(window.get());
    browserLbl->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    area.addPermanentWidget(browserLbl, 1);
    showNotices();
    setNotice(Notice::Settings, settings.trouble());
    connect(&settings, &Settings::troubleChanged, this,
            [this](const QString &trouble) { setNotice(Notice::Settings, trouble); });
}

void PostalScaleAppDelegate::setNotice(Notice topic, const QString &text)
{
    if (notices.value(topic) == text)
        return;
    notices.insert(topic, text);
    showNotices();
}

void PostalScaleAppDelegate::showNotices()
{
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
    noticeDetails->setHidden(explained.isEmpty());
}

void PostalScaleAppDelegate::explainNotices()
{
    auto *box = new QMessageBox(QMessageBox::Information, noticeLbl->text(), noticeLbl->toolTip(),
                                QMessageBox::Close, window.get());
    box->setTextFormat(Qt::PlainText);
    // To be copied into a terminal.
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void PostalScaleAppDelegate::showBrowserStatus(const QString &text)
{
    browserLbl->setText(text);
    browserLbl->setToolTip(text);
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/RecentWeightsMenu.h"

#include <QAction>
#include <QMenu>
#include <utility>

RecentWeightsMenu::RecentWeightsMenu(QMenu &menu, std::function<void(const QString &text)> copy,
                                     QObject *parent)
    : QObject(parent)
    , m_menu(menu)
    , m_copy(std::move(copy))
{
    m_menu.setEnabled(false);
    m_menu.setToolTipsVisible(true);
    connect(&m_menu, &QMenu::triggered, this,
            [this](const QAction *item) { m_copy(item->data().toString()); });
    // Not before the item that closes the menu was triggered.
    connect(&m_menu, &QMenu::aboutToHide, this, &RecentWeightsMenu::showLatest,
            Qt::QueuedConnection);
}

void RecentWeightsMenu::show(const QList<RecentWeight> &weights)
{
    m_latest = weights;
    showLatest();
}

void RecentWeightsMenu::showLatest()
{
    // Nothing moves below the pointer of a person who aims at a weight.
    if (m_latest == m_shown || m_menu.isVisible())
        return;
    m_shown = m_latest;
    while (m_menu.actions().size() > m_shown.size())
        delete m_menu.actions().constLast();
    while (m_menu.actions().size() < m_shown.size())
        m_menu.addAction(QString());
    // The items stay the same for a screen reader that is reading them.
    for (qsizetype index = 0; index < m_shown.size(); ++index) {
        const RecentWeight &weight = m_shown.at(index);
        QAction *item = m_menu.actions().at(index);
        item->setText(weight.words());
        item->setToolTip(QStringLiteral("Copy %1").arg(weight.text));
        item->setData(weight.text);
    }
    m_menu.setEnabled(!m_shown.isEmpty());
}

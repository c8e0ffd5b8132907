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
}

void RecentWeightsMenu::show(const QList<RecentWeight> &weights)
{
    if (weights == m_shown)
        return;
    m_shown = weights;
    m_menu.clear();
    for (const RecentWeight &weight : weights) {
        QAction *item = m_menu.addAction(weight.words());
        item->setToolTip(QStringLiteral("Copy %1").arg(weight.text));
        connect(item, &QAction::triggered, this, [this, text = weight.text] { m_copy(text); });
    }
    m_menu.setEnabled(!weights.isEmpty());
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "parcel/RecentWeights.h"

#include <QObject>
#include <functional>

class QMenu;

/// The recent weights, to be copied once more.
class RecentWeightsMenu : public QObject
{
    Q_OBJECT

public:
    /// @param menu must outlive the object
    /// @param copy gets the text of the item that was clicked
    RecentWeightsMenu(QMenu &menu, std::function<void(const QString &text)> copy, QObject *parent);

    /// At once; when the menu is open, as soon as it is closed.
    void show(const QList<RecentWeight> &weights);

private:
    void showLatest();

    QMenu &m_menu;
    std::function<void(const QString &text)> m_copy;
    QList<RecentWeight> m_latest;
    QList<RecentWeight> m_shown;
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QMargins>
#include <QObject>

class QMainWindow;
class QMenu;
class Settings;
class StatusArea;
class WindowPlace;
class WindowProportion;

namespace Ui {
class MainWindow;
}

/// The window with its display and its state alone, a third as high: to be kept on top beside other
/// windows. Key, menu item and context menu switch it, and it comes back at the next start. Each
/// form has its own size and place.
class CompactForm : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object.
    struct Surroundings
    {
        const Ui::MainWindow &form;
        QMainWindow &window;
        WindowProportion &proportion;
        WindowPlace &place;
        StatusArea &statusArea;
        Settings &settings;
    };
    CompactForm(const Surroundings &surroundings, QObject *parent);

    bool isCompact() const { return m_isCompact; }
    void setCompact(bool compact);

private:
    void offerInContextMenu();
    void keepShortcuts(const QList<QMenu *> &menus);
    void hideParts(bool hidden);
    void arrange(bool compact);

    Surroundings m_around;
    QMenu *m_contextMenu;
    QMargins m_wholeMargins;
    int m_wholeSpacing;
    bool m_isCompact = false;
};

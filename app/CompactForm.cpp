// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/CompactForm.h"

#include "app/StatusArea.h"
#include "app/WindowPlace.h"
#include "settings/Settings.h"
#include "ui_MainWindow.h"
#include "widgets/WindowProportion.h"

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace {

/// A third of the whole window's height.
constexpr QSize compactSize(320, 141);
constexpr QSize wholeSize(900, 424);

/// Of the designed display: what is still to be read at arm's length.
constexpr qreal smallestWhole = 0.75;
constexpr qreal smallestCompact = 0.33;

constexpr QMargins compactMargins(8, 4, 8, 6);
constexpr int compactSpacing = 4;

} // namespace

CompactForm::CompactForm(const Surroundings &surroundings, QObject *parent)
    : QObject(parent)
    , m_around(surroundings)
    , m_contextMenu(new QMenu(&surroundings.window))
    , m_wholeMargins(surroundings.form.boxGrid->contentsMargins())
    , m_wholeSpacing(surroundings.form.boxGrid->verticalSpacing())
{
    QAction *item = m_around.form.compactItem;
    item->setShortcut(Qt::CTRL | Qt::Key_M);
    item->setAutoRepeat(false);
    connect(item, &QAction::toggled, this, &CompactForm::setCompact);
    keepShortcuts(m_around.form.menuBar->findChildren<QMenu *>());
    offerInContextMenu();
    setCompact(m_around.settings.compact());
}

// A menu bar that is hidden has no keys.
void CompactForm::keepShortcuts(const QList<QMenu *> &menus)
{
    for (const QMenu *menu : menus) {
        for (QAction *item : menu->actions()) {
            if (!item->shortcut().isEmpty())
                m_around.window.addAction(item);
        }
    }
}

void CompactForm::offerInContextMenu()
{
    const Ui::MainWindow &form = m_around.form;
    m_contextMenu->addActions({form.powerItem, form.tareItem, form.holdItem});
    m_contextMenu->addSeparator();
    m_contextMenu->addActions({form.mnuOnTop, form.compactItem});
    m_around.window.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(
        &m_around.window, &QWidget::customContextMenuRequested, this,
        [this](const QPoint &place) { m_contextMenu->popup(m_around.window.mapToGlobal(place)); });
}

void CompactForm::setCompact(bool compact)
{
    if (compact == m_isCompact)
        return;
    m_isCompact = compact;
    m_around.form.compactItem->setChecked(compact);
    const QByteArray place =
        m_around.place.switchForm(compact ? WindowForm::Compact : WindowForm::Whole);
    // A size of the desktop's is none to begin with.
    QMainWindow &window = m_around.window;
    window.setWindowState(window.windowState() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
    hideParts(compact);
    arrange(compact);
    m_around.proportion.setDesignedSize(compact ? compactSize : wholeSize);
    if (!window.restoreGeometry(place))
        window.resize((compact ? compactSize : wholeSize).expandedTo(window.minimumSize()));
    m_around.settings.setCompact(compact);
}

void CompactForm::hideParts(bool hidden)
{
    const Ui::MainWindow &form = m_around.form;
    for (QWidget *part : std::initializer_list<QWidget *>{
             form.menuBar, form.controlBar, form.lblModel, form.optionButton, form.settledLbl,
             form.unitColumn, form.exportCaption, form.lbLBL, form.leavesLbl, form.ozLBL})
        part->setHidden(hidden);
    m_around.statusArea.setSparing(hidden);
}

void CompactForm::arrange(bool compact)
{
    const Ui::MainWindow &form = m_around.form;
    // Beside nothing it would hold its column open.
    form.boxGrid->removeItem(form.connectionRow);
    form.boxGrid->addItem(form.connectionRow, 0, compact ? 0 : 1);
    form.boxGrid->setContentsMargins(compact ? compactMargins : m_wholeMargins);
    form.boxGrid->setVerticalSpacing(compact ? compactSpacing : m_wholeSpacing);
    form.imageBox->setSmallest(compact ? smallestCompact : smallestWhole);
    // Layouts further out remember what those inside needed.
    form.boxContent->updateGeometry();
    form.boxContainer->updateGeometry();
}

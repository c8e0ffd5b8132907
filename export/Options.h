// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QObject>
#include <cstdint>
#include <functional>

class ExportClipboard;
class ExportState;
class HIDManager;
class QAction;
class QCheckBox;
class QWidget;
class ScaleSession;
class Settings;

namespace Ui {
class MainWindow;
}

/// The six options: their box, which is kept between runs, and their menu. Neither follows the
/// other.
class Options : public QObject
{
    Q_OBJECT

public:
    /// What the options work on, and what they need of the window. All must outlive them.
    struct Surroundings
    {
        const Ui::MainWindow &form;
        QWidget &window;
        HIDManager &link;
        const ScaleSession &session;
        ExportState &state;
        ExportClipboard &clipboard;
        Settings &settings;
        std::function<void()> showModelInTitle;
        std::function<void(int carrier)> carrierWentOff; ///< one of carrier::
        std::function<void()> carriersChanged;
        /// Gets an empty text when there is nothing to be said any more.
        std::function<void(const QString &text)> showOnTopNotice;
    };
    Options(const Surroundings &surroundings, QObject *parent);

    /// @param tags of the options that were on, as if each box were ticked now
    void restore(const QList<int> &tags);

    /// @param box null stands for a stored option that has no box
    void checkBoxAction(QCheckBox *box);
    void hideoPtionBox();
    void optionAction();
    void optionLblAction();

    // The menu's items: without a scale, they only say so in the log.
    void onTopClicked();
    void roundToIntClicked();
    void sendToClipClicked();
    void sendToUSPSClicked();
    void sendToUPSClicked();
    void sendToFEDXClicked();

private:
    enum class MenuSwitch { Refused, Off, On };

    void connectBox();
    void connectMenu();
    /// Undoes the toolkit's own toggling: @p action decides on the check mark.
    void connectMenuItem(QAction *item, void (Options::*action)());
    void explainOnTop();

    void applyOption(int tag, bool on);
    void applyOnTop(bool on);
    void applyRoundTo(bool on);
    void applyClipboard(bool on);
    void applyUSPS(bool on);
    void applyUPS(bool on);
    void applyFedex(bool on);
    /// @param number one of carrier::
    void setCarrier(int number, bool on);
    std::uint8_t &carrierFlag(int number) const;
    void saveOptions();
    void setOnTop(bool onTop);
    void showLatest(const QString &option);

    /// Without the box's action.
    static void markBox(QCheckBox *box, bool on);
    QCheckBox *boxWithTag(int tag) const;

    MenuSwitch toggleMenuItem(QAction *item);
    void toggleCarrier(QAction *item, int number, const QString &name);

    Surroundings m_around;
    QList<QCheckBox *> m_boxes; ///< ascending by tag
};

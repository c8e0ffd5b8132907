// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BundleInformation.h"
#include "export/Browser.h"
#include "scale/ScaleDelegate.h"
#include "ui_MainWindow.h"

#include <QList>
#include <QMainWindow>
#include <QMap>
#include <QObject>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <memory>
#include <vector>

class HIDManager;
class Settings;

/// The application's one delegate: it owns the main window's controls (its outlets are the widgets
/// of MainWindow.ui), the option flags and the scale link. Each operation is defined in the folder
/// of its subsystem. Lives on the main thread.
class PostalScaleAppDelegate : public QObject, public ScaleDelegate, public Ui::MainWindow
{
    Q_OBJECT

public:
    PostalScaleAppDelegate(const BundleInformation &information, Settings &settings);
    ~PostalScaleAppDelegate() override;

    // app/: start-up and main window
    void awakeFromNib();
    void applicationDidFinishLaunching();
    /// Always true. A connected scale that is on is switched off first.
    bool applicationShouldTerminateAfterLastWindowClosed();

    // app/: models
    void modelSelectionAction();
    void modelSelected(QAction *sender);

    // app/: connection status, poll timer, disconnect alert
    void setStatusString(bool connected) override;
    void setConnectionTrouble(const QString &trouble) override;
    void readData(QTimer *timer);
    void showAlert();
    void someMethodDidEnd(int returnCode);

    // controls/: units
    void radioSelection();
    /// @param modelIndex 0 to 7; any other enables what the last model has
    void enableDisableWeight(int modelIndex);
    void setRadioButton();

    // controls/: power, tare, hold
    void ON_Off_TareAction();
    void holdAction();
    void TareAction();
    void TareTimer(QTimer *timer);

    // lcd/: digits
    void Draw5Digit(qint64 nValue) override;
    void Draw5DigitOverload() override;
    void shownegativeSign(bool negative) override;
    void clearAll() override;
    void displayforLBOZsimple();
    /// Tells screen readers what the panel shows, once this turn of the event loop is over.
    void announceReading();

    // lcd/: segments
    /// @param name a short name of segment::; others do nothing
    void DrawIcon(QLatin1String name, bool show);
    void DisplayUnit(int unit) override;

    // export/: options
    /// @param box null stands for a stored option that has no box
    void checkBoxAction(QCheckBox *box);
    void hideoPtionBox();
    void optionAction();
    void optionLblAction();
    void onTopClicked();
    void roundToIntClicked();
    void sendToClipClicked();
    void sendToUSPSClicked();
    void sendToUPSClicked();
    void sendToFEDXClicked();

    // export/: carrier pages
    /// @param carrier 0 USPS, 1 UPS, 2 FedEx
    void Autofill(int carrier);
    /// @param text one short line on the link to the user's browsers
    void showBrowserStatus(const QString &text);

    // what the scale link reads and writes
    void setUnitCaptionHidden(bool hidden) override;
    QString exportLabelText() const override;
    void setExportLabelText(const QString &text) override;
    void copyToClipboard(const QString &text) override;
    void setIsDeviceAlive(bool alive) override { deviceAlive = alive; }
    bool isDeviceAlive() const { return deviceAlive; }
    QString selectedModelName() const override { return modelName; }
    void setSelectedModelName(const QString &name) { modelName = name; }
    int selectedRadioButtonIndex() const override { return radioButtonIndex; }
    void setSelectedRadioButtonIndex(int tag) { radioButtonIndex = tag; }
    bool SetClip() const override { return clip; }
    void setSetClip(bool copyReadings) { clip = copyReadings; }

    std::unique_ptr<QMainWindow> window;
    std::unique_ptr<HIDManager> hid_obj; ///< null until the application has launched

    bool isDeviceConnected = false;
    bool onhold = false;
    bool pausereadtimer = false;
    bool showOption = false;
    bool openOnce = false;
    int tareflashtime = 0; ///< ticks since the latest tare; shared by all blink timers
    // A carrier is served while its flag is exactly 1.
    std::uint8_t SendtoUSPS = 0;
    std::uint8_t SendtoUPS = 0;
    std::uint8_t SendtoFedex = 0;
    QString webData;
    QString clibBoardStr;
    // What the latest Autofill went to.
    std::unique_ptr<BrowserApplication> safari;
    std::vector<std::shared_ptr<const BrowserWindow>> windows;
    std::shared_ptr<const BrowserTab> currentTab; ///< null where there was none

private:
    enum class ItemLog { Silent, Named };
    enum class MenuSwitch { Refused, Off, On };
    /// What the user should know of, beside the connection status.
    enum class Notice { Connection, Settings, Clipboard };

    void connectActions();
    /// One command, reached from a button and from the menu bar.
    void connectCommand(QAbstractButton *button, QAction *item, QKeySequence shortcut,
                        void (PostalScaleAppDelegate::*action)());
    void connectUnits();
    void connectOptions();
    /// Undoes the toolkit's own toggling: @p action decides on the check mark.
    void connectMenuItem(QAction *item, void (PostalScaleAppDelegate::*action)());

    void applyUSPSBranding();
    void applyPlainBranding();
    void listModels(ItemLog log);
    void restoreOptions();
    void restoreModel();
    void setWindowTitle(const QString &model);
    void sendStartingUnit();
    void showConnectionLamp();
    void makeStatusArea();
    /// The first sentence is shown, the whole text on hover; empty takes the notice away.
    void setNotice(Notice topic, const QString &text);
    void showNotices();
    /// The whole texts, in a window of their own.
    void explainNotices();

    void announceNow();
    /// The Tab key stops at the chosen unit; arrow keys go on from there.
    void placeTabStop();
    void connectAssistiveToggle(QAbstractButton *cell);
    void setUnitEnabled(int row, bool enabled);
    /// Without the row's action.
    void showUnitRow(int row);
    QList<QAbstractButton *> unitCells() const; ///< in row order

    void keepOptionBoxPlace();
    void explainOnTop();
    void applyOption(int tag, bool on);
    void applyOnTop(bool on);
    void applyRoundTo(bool on);
    void applyClipboard(bool on);
    void switchClipboard(bool on);
    void applyUSPS(bool on);
    void applyUPS(bool on);
    void applyFedex(bool on);
    void saveOptions();
    /// Without the box's action.
    static void markBox(QCheckBox *box, bool on);
    void setOnTop(bool onTop);
    QList<QCheckBox *> optionBoxes() const; ///< ascending by tag
    QCheckBox *optionWithTag(int tag) const;
    MenuSwitch toggleMenuItem(QAction *item);
    void toggleCarrier(QAction *item, std::uint8_t &flag, const QString &name);

    BundleInformation information;
    Settings &settings;
    bool unitIsPressed = false;
    bool deviceAlive = false;
    bool clip = false;
    int radioButtonIndex = 0;
    QString modelName;              ///< empty until the user chooses a model
    QAction *markedModel = nullptr; ///< in the menu bar; null without models
    QMap<Notice, QString> notices;
    QLabel *noticeLbl = nullptr;
    QPushButton *noticeDetails = nullptr;
    QLabel *browserLbl = nullptr;
    QTimer announcement;
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BundleInformation.h"
#include "app/CompactForm.h"
#include "app/SleepRest.h"
#include "app/StatusArea.h"
#include "controls/ScaleButtons.h"
#include "controls/UnitColumn.h"
#include "export/CarrierPages.h"
#include "export/ExportClipboard.h"
#include "export/ExportState.h"
#include "export/Options.h"
#include "lcd/Panel.h"
#include "parcel/NoteLabels.h"
#include "parcel/ParcelWatch.h"
#include "parcel/RecentWeightsMenu.h"
#include "parcel/SettledOption.h"
#include "scale/HIDManager.h"
#include "scale/ScaleDelegate.h"
#include "scale/ScaleSession.h"
#include "scale/pointofsale/PointOfSaleLink.h"
#include "scale/pointofsale/ScaleChoice.h"
#include "ui_MainWindow.h"

#include <QMainWindow>
#include <QString>
#include <QTimer>
#include <memory>

class Settings;

/// The application's one delegate: it owns the main window's controls (its outlets are the widgets
/// of MainWindow.ui), the state of the scale's use and of the exports, and the scale link. It is
/// the place where all operations are found; those that are not the application's own are done by
/// the object of their subsystem. Lives on the main thread.
/// What has become of a weight that was to leave at once.
enum class CaptureOutcome {
    Left,
    NotAllowed,       ///< it has not settled, or its texts do not tell it; nothing has left
    ClipboardRefused, ///< by the desktop; it has left to all other places
};

class PostalScaleAppDelegate : public QObject,
                               public ScaleDelegate,
                               public Ui::MainWindow,
                               public ScaleSession,
                               public ExportState
{
    Q_OBJECT

public:
    /// Settings and browsers must outlive the delegate.
    PostalScaleAppDelegate(const BundleInformation &information, Settings &settings,
                           BrowserBridge &browsers);
    ~PostalScaleAppDelegate() override;

    // Start-up and main window
    void awakeFromNib();
    void applicationDidFinishLaunching();
    /// Always true. A connected scale that is on is switched off first.
    bool applicationShouldTerminateAfterLastWindowClosed();
    /// Does nothing unless a scale is connected and on.
    void switchScaleOff();

    // Sleep of the machine
    /// From here on the scale is not polled, and its latest reading counts as old.
    void prepareForSleep();
    /// Looks for the scale anew, and polls it again from then on.
    void wakeUp();

    // Form of the window
    bool isCompact() const { return m_compactForm && m_compactForm->isCompact(); }
    /// Not before awakeFromNib().
    void setCompact(bool compact) { m_compactForm->setCompact(compact); }

    // Models
    void modelSelectionAction();
    void modelSelected(QAction *sender);

    // Connection status, poll timer, disconnect alert
    void setStatusString(bool connected) override;
    void setConnectionTrouble(const QString &trouble) override;
    void showWatchTrouble(const QString &trouble) override
    {
        m_statusArea.setNotice(StatusArea::Notice::Watching, trouble);
    }
    void readData(QTimer *timer);
    void showAlert();
    void someMethodDidEnd(int returnCode);

    // Units
    void radioSelection() { m_units.radioSelection(); }
    void enableDisableWeight(int modelIndex) { m_units.enableDisableWeight(modelIndex); }
    void setRadioButton() { m_units.setRadioButton(); }

    // Power, tare, hold
    void ON_Off_TareAction() { m_buttons.ON_Off_TareAction(); }
    void holdAction() { m_buttons.holdAction(); }
    void TareAction() { m_buttons.TareAction(); }
    void TareTimer(QTimer *timer) { m_buttons.TareTimer(timer); }

    // Display
    void Draw5Digit(qint64 nValue) override { m_panel.Draw5Digit(nValue); }
    void Draw5DigitOverload() override { m_panel.Draw5DigitOverload(); }
    void shownegativeSign(bool negative) override { m_panel.shownegativeSign(negative); }
    void clearAll() override { m_panel.clearAll(); }
    void displayforLBOZsimple() { m_panel.displayforLBOZsimple(); }
    void DrawIcon(QLatin1String name, bool show) { m_panel.DrawIcon(name, show); }
    void DisplayUnit(int unit) override { m_panel.DisplayUnit(unit); }

    // Options
    void checkBoxAction(QCheckBox *box) { m_options.checkBoxAction(box); }
    void hideoPtionBox() { m_options.hideoPtionBox(); }
    void optionAction() { m_options.optionAction(); }
    void optionLblAction() { m_options.optionLblAction(); }
    void onTopClicked() { m_options.onTopClicked(); }
    void roundToIntClicked() { m_options.roundToIntClicked(); }
    void sendToClipClicked() { m_options.sendToClipClicked(); }
    void sendToUSPSClicked() { m_options.sendToUSPSClicked(); }
    void sendToUPSClicked() { m_options.sendToUPSClicked(); }
    void sendToFEDXClicked() { m_options.sendToFEDXClicked(); }

    // Carriers' pages
    void Autofill(int carrier);
    /// Has the settled weight on the pan leave now, whatever is chosen for every reading: onto the
    /// clipboard, and into the pages of the carriers that are switched on.
    CaptureOutcome captureReading();
    /// The latest reading, for a field of whatever page.
    BrowserWeight fieldWeight() const { return m_parcel.fieldWeight(); }
    /// @param text one short line on the link to the user's browsers
    void showBrowserStatus(const QString &text) { m_statusArea.showBrowserStatus(text); }
    /// @param trouble with the other starts of the program; empty if there is none
    void showSessionTrouble(const QString &trouble)
    {
        m_statusArea.setNotice(StatusArea::Notice::Session, trouble);
    }
    /// @param carrier whose page has taken the weight, as a person names it
    void notePageFilled(const QString &carrier);

    // What the scale link reads and writes
    void setUnitCaptionHidden(bool hidden) override { unitLBl->setHidden(hidden); }
    QString exportLabelText() const override { return lbLBL->text(); }
    void setExportLabelText(const QString &text) override
    {
        // Screen readers are told of each writing.
        if (text != lbLBL->text())
            lbLBL->setText(text);
    }
    void copyToClipboard(const QString &text) override;
    void takeReport(const WeightReport &report, ReadOutcome outcome) override;
    void takeReading(const ScaleReading &reading) override;
    void useLink(ScaleLink &link, const QString &name) override;
    /// What the scale in use says of itself; empty where it is the chosen model.
    const QString &scaleName() const { return m_scaleName; }
    void setIsDeviceAlive(bool alive) override { ScaleSession::setIsDeviceAlive(alive); }
    QString selectedModelName() const override { return ScaleSession::selectedModelName(); }
    int selectedRadioButtonIndex() const override
    {
        return ScaleSession::selectedRadioButtonIndex();
    }
    bool SetClip() const override { return ExportState::SetClip(); }

    Panel &panel() { return m_panel; }
    const Panel &panel() const { return m_panel; }
    const StatusArea &statusArea() const { return m_statusArea; }
    /// Why the attached scale cannot be used; empty where it can.
    const QString &connectionTrouble() const { return m_connectionTrouble; }
    const ParcelWatch &parcel() const { return m_parcel; }

    std::unique_ptr<QMainWindow> window;
    std::unique_ptr<HIDManager> hid_obj;
    bool openOnce = false;
    QString webData;
    QString clibBoardStr;

signals:
    /// What is said beside the panel is up to date again.
    void notesShown();
    /// The latest reading goes into the fields that follow the scale, on whatever page.
    void readingLeaves();

private:
    enum class ItemLog { Silent, Named };

    void applyUSPSBranding();
    void applyPlainBranding();
    void listModels(ItemLog log);
    void restoreOptions();
    void restoreModel();
    void setWindowTitle(const QString &model);
    void showScaleInTitle();
    void sendStartingUnit();
    void lookForScaleAgain();
    /// Around a sleep, what goes is looked for again, and what comes must not be polled by the old
    /// timer too.
    void followAroundSleep(bool connected);
    void endPolling();
    /// The window offers what the scale in use can do.
    void followAbilities();
    void fillPage(int carrier);
    /// A scale that was on reports that it is off, though nobody here has switched it off.
    void noticeScaleOff(const WeightReport &report, ReadOutcome outcome);
    void forgetScalePower();
    void showConnectionLamp();
    /// Whether the reading waits for its report.
    void setSilent(bool silent);
    /// What is not of now is dimmed.
    void showStaleness();
    void lookForReport();
    /// What follows the exchange with the scale.
    void endReading();
    /// Beside the panel. To be called with each tick of the poll timer, which is all that makes
    /// readings grow old on the screen.
    void showNotes();
    /// Has screen readers know the exported text of a reading that is complete.
    void tellExport();

    PointOfSaleLink m_otherLink;
    ScaleChoice m_scaleChoice;
    ScaleAbilities m_abilities; ///< that the window offers
    QString m_scaleName;
    BundleInformation m_information;
    Settings &m_settings;
    QString m_connectionTrouble;
    QAction *m_markedModel = nullptr; ///< in the menu bar; null without models
    QTimer m_look; ///< for the report of a silent scale; runs as long as it is silent
    bool m_isUnconfirmed = false; ///< the reading on the panel
    SleepRest m_rest;
    QTimer m_search;           ///< for the scale, and for the end of a sleep that nobody announces
    bool m_scaleWasOn = false; ///< at its latest report that told
    bool m_isOffAsked = false; ///< from here; it has not reported it yet
    StatusArea m_statusArea;
    Panel m_panel;
    UnitColumn m_units;
    ScaleButtons m_buttons;
    ExportClipboard m_clipboard;
    Options m_options;
    CarrierPages m_carrierPages;
    ParcelWatch m_parcel;
    SettledOption m_settledOption;
    NoteLabels m_noteLabels;
    RecentWeightsMenu m_recentWeightsMenu;
    std::unique_ptr<CompactForm> m_compactForm; ///< null before awakeFromNib()
};

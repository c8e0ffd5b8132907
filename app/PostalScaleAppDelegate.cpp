// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/PostalScaleAppDelegate.h"

#include "app/About.h"
#include "settings/Settings.h"

namespace {

/// The widgets come first of all: everything else works on them.
std::unique_ptr<QMainWindow> windowOf(Ui::MainWindow &form)
{
    auto window = std::make_unique<QMainWindow>();
    form.setupUi(window.get());
    return window;
}

} // namespace

PostalScaleAppDelegate::PostalScaleAppDelegate(const BundleInformation &information,
                                               Settings &settings, BrowserBridge &browsers)
    : window(windowOf(*this))
    , hid_obj(std::make_unique<HIDManager>())
    , m_otherLink([this] { return hid_obj->SetRound(); })
    , m_scaleChoice(*hid_obj, m_otherLink, this)
    , m_information(information)
    , m_settings(settings)
    , m_statusArea(*window, controlColumns->contentsMargins(), settings)
    , m_panel(*this, *hid_obj, *this, this)
    , m_units(
          *this, *hid_obj, *this,
          [this](int modelIndex) { m_settings.setLastSelectedValue(modelIndex); }, this)
    , m_buttons(*this, *hid_obj, *this, m_panel, m_units, this)
    , m_clipboard(*this,
                  [this](const QString &text) {
                      m_statusArea.setNotice(StatusArea::Notice::Clipboard, text);
                  })
    , m_options({.form = *this,
                 .window = *window,
                 .link = *hid_obj,
                 .session = *this,
                 .state = *this,
                 .clipboard = m_clipboard,
                 .settings = settings,
                 .showModelInTitle = [this] { showScaleInTitle(); },
                 .carrierWentOff = [this](int carrier) { m_carrierPages.stopFilling(carrier); },
                 .carriersChanged =
                     [this] {
                         m_statusArea.setBrowserShown(SendtoUSPS == 1 || SendtoUPS == 1 ||
                                                      SendtoFedex == 1);
                     },
                 .showOnTopNotice =
                     [this](const QString &text) {
                         m_statusArea.setNotice(StatusArea::Notice::OnTop, text);
                     }},
                this)
    , m_carrierPages(browsers, *this, *lbLBL, *this)
    , m_parcel({.link = *hid_obj,
                .session = *this,
                .state = *this,
                .panel = m_panel,
                .exportLabel = *lbLBL})
    , m_settledOption(
          *this, settings, [this](bool settledOnly) { m_parcel.setSettledOnly(settledOnly); }, this)
    , m_noteLabels(*exportCaption, *settledLbl, *leavesLbl)
    , m_recentWeightsMenu(
          *recentMenu, [this](const QString &text) { m_clipboard.copy(text); }, this)
{
    setLink(*hid_obj);
    m_look.setTimerType(Qt::PreciseTimer);
    connect(&m_look, &QTimer::timeout, this, &PostalScaleAppDelegate::lookForReport);
    m_search.setSingleShot(true);
    connect(&m_search, &QTimer::timeout, this, &PostalScaleAppDelegate::lookForScaleAgain);
    connect(aboutItem, &QAction::triggered, this, [this] { showAbout(*window); });
    quitItem->setShortcut(QKeySequence::Quit);
    connect(quitItem, &QAction::triggered, window.get(), &QWidget::close);
    connect(optionButton, &QComboBox::activated, this,
            &PostalScaleAppDelegate::modelSelectionAction);
}

PostalScaleAppDelegate::~PostalScaleAppDelegate() = default;

bool PostalScaleAppDelegate::applicationShouldTerminateAfterLastWindowClosed()
{
    switchScaleOff();
    return true;
}

void PostalScaleAppDelegate::switchScaleOff()
{
    if (isDeviceConnected && link().isOn())
        hid_obj->set_device_OFF();
}

void PostalScaleAppDelegate::setWindowTitle(const QString &model)
{
    window->setWindowTitle(m_information.windowTitle(model));
}

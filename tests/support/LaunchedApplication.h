// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Application.h"
#include "app/PostalScaleAppDelegate.h"
#include "scale/HIDManager.h"
#include "tests/support/FakeHidapi.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ScaleDevice.h"

#include <QByteArray>
#include <QFile>
#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

/// The settings of the test's own user. Started programs read what is stored here.
namespace storedsettings {

QString file();
void forget();
void store(const QByteArray &ini);
/// A further file in the folder of the settings.
void storeBeside(const QString &name, const QByteArray &text);
/// Null where there is no file.
QByteArray text();
/// Keys under "defaultValue", as they stand in the file.
QStringList options();

} // namespace storedsettings

/// A bundle information file's text. @p models is JSON, as it is to stand under the list's key.
QByteArray bundleInformation(const QByteArray &isUSPS, const QByteArray &models);
extern const QByteArray nineModels;

/// How long a button that is pressed from afar shows it, and more.
constexpr std::chrono::milliseconds pressTime{200};

/// The program as main() starts it, over fake devices and the fake clock; one at a time. It has
/// been told of the devices present, and has read nothing yet.
class LaunchedApplication
{
public:
    enum class Scale { Absent, Present };

    /// @param before may make calls of the fake libraries fail
    /// @param browsers stands in for the user's; must outlive the object
    /// @param devices in place of the machine's; null: those
    explicit LaunchedApplication(Scale scale, const QByteArray &information = {},
                                 const std::function<void()> &before = {},
                                 BrowserBridge *browsers = nullptr,
                                 std::unique_ptr<HidDevices> devices = {});

    /// Lets the event loop deliver what is pending.
    static void turn();
    /// Time goes on step by step, and timers fire as they come due, or at the next step.
    static void pass(std::chrono::milliseconds time,
                     std::chrono::milliseconds step = std::chrono::milliseconds(1));

    void plug(const fakeudev::Device &device = scaleDevice);
    void unplug(const fakeudev::Device &device = scaleDevice);
    /// From here on readings are the test's: no timer polls any more.
    void stopPolling();
    void read(std::vector<std::uint8_t> report);
    /// The poll and blink timers that run.
    std::vector<QTimer *> timers() const;

    /// As a state to start from: without what a click would bring about.
    static void mark(QAbstractButton *button, bool checked);

    /// What was sent and logged up to here is no longer of interest.
    void forgetTraffic();
    /// Command bytes of the commands sent, in order, without the polls.
    std::vector<int> commands() const;
    /// Command bytes of the polls sent, in order.
    std::vector<int> polls() const;
    qsizetype logged(const QString &line) const;

private:
    struct FreshWorld
    {
        FreshWorld(Scale scale, const std::function<void()> &before);
        int argumentCount = 1;
    };
    FreshWorld m_world;

public:
    LogCapture log;
    FakeHidapi &hidapi = FakeHidapi::instance();
    Application application;
    PostalScaleAppDelegate &delegate;
    HIDManager &link;

private:
    std::vector<int> commandBytes(std::uint8_t marker) const;
};

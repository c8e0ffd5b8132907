// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"

#include "base/RepeatingTimer.h"
#include "tests/support/FakeClock.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr std::uint8_t commandMarker = 0xA0;
constexpr std::uint8_t pollMarker = 0x90;

char programName[] = "postal-scale";
char *arguments[] = {programName, nullptr};

/// The user's folders, and none of the machine's. In memory: each of the thousands of settings
/// that tests write is carried through to the disk.
struct Home
{
    Home()
    {
        if (!directory.isValid())
            qFatal("%s", qPrintable(directory.errorString()));
        const QByteArray path = directory.path().toLocal8Bit();
        qputenv("XDG_CONFIG_HOME", path);
        qputenv("XDG_RUNTIME_DIR", path);
        qputenv("XDG_CONFIG_DIRS", path + "/nowhere");
    }

    QTemporaryDir directory{QStringLiteral("/dev/shm/postal-scale-test-XXXXXX")};
};

/// To be asked for before anything looks for the user's folders.
QString home()
{
    static const Home home;
    return home.directory.path();
}

void write(const QString &name, const QByteArray &text)
{
    // Settings are read anew when size or time of the file differ, and tests are quick: each file
    // gets a time that no other has, nor any that the program writes.
    static QDateTime time = QDateTime::currentDateTimeUtc().addDays(-1);
    time = time.addMSecs(1);
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush() ||
        !file.setFileTime(time, QFileDevice::FileModificationTime))
        qFatal("cannot write %s", qPrintable(name));
}

Application &launched(Application &application, const QByteArray &information,
                      BrowserBridge *browsers, std::unique_ptr<HidDevices> devices)
{
    if (devices)
        application.useDevices(std::move(devices));
    if (browsers != nullptr)
        application.useBrowsers(*browsers);
    const QString name = home() + QStringLiteral("/Info.json");
    if (!information.isNull())
        write(name, information);
    application.launch(information.isNull() ? QString() : name);
    return application;
}

} // namespace

const QByteArray nineModels = R"(["KV-A100", "KV-A200", "KV-B100", "KV-B200", "KV-B300",
                                  "KV-C100", "KV-C200", "KV-C300", "KV-C400"])";

QByteArray bundleInformation(const QByteArray &isUSPS, const QByteArray &models)
{
    const QByteArray key = isUSPS == "\"YES\"" ? "KayForUSPS" : "KeyForNonUSPS";
    return R"({"appNameDisplay": "Scale", "isUSPS": )" + isUSPS + ", \"" + key + "\": " + models +
           "}";
}

QString storedsettings::file()
{
    return home() + QStringLiteral("/postal-scale/postal-scale.ini");
}

void storedsettings::forget()
{
    QDir(QFileInfo(file()).path()).removeRecursively();
}

void storedsettings::store(const QByteArray &ini)
{
    forget();
    storeBeside(QFileInfo(file()).fileName(), ini);
}

void storedsettings::storeBeside(const QString &name, const QByteArray &text)
{
    const QDir folder(QFileInfo(file()).path());
    folder.mkpath(QStringLiteral("."));
    write(folder.filePath(name), text);
}

QByteArray storedsettings::text()
{
    QFile stored(file());
    return stored.open(QIODevice::ReadOnly) ? stored.readAll() : QByteArray();
}

QStringList storedsettings::options()
{
    QStringList keys;
    bool inside = false;
    for (const QByteArray &line : text().split('\n')) {
        if (line.startsWith('['))
            inside = line == "[defaultValue]";
        else if (inside && line.contains('='))
            keys.append(QString::fromUtf8(line.left(line.indexOf('='))));
    }
    return keys;
}

LaunchedApplication::FreshWorld::FreshWorld(Scale scale, const std::function<void()> &before)
{
    home();
    FakeHidapi::reset();
    fakeudev::reset();
    if (scale == Scale::Present)
        fakeudev::place(scaleDevice);
    if (before)
        before();
}

LaunchedApplication::LaunchedApplication(Scale scale, const QByteArray &information,
                                         const std::function<void()> &before,
                                         BrowserBridge *browsers,
                                         std::unique_ptr<HidDevices> devices)
    : m_world(scale, before)
    , application(m_world.argumentCount, arguments)
    , delegate(*launched(application, information, browsers, std::move(devices)).delegate())
    , link(*delegate.hid_obj)
{
    turn();
}

void LaunchedApplication::turn()
{
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

void LaunchedApplication::pass(std::chrono::milliseconds time, std::chrono::milliseconds step)
{
    for (auto gone = 0ms; gone < time; gone += step) {
        fakeclock::advance(step);
        QCoreApplication::processEvents();
    }
}

void LaunchedApplication::plug(const fakeudev::Device &device)
{
    fakeudev::plug(device);
    turn();
}

void LaunchedApplication::unplug(const fakeudev::Device &device)
{
    fakeudev::unplug(device.name);
    turn();
}

void LaunchedApplication::stopPolling()
{
    for (QTimer *timer : timers())
        timer->stop();
}

void LaunchedApplication::read(std::vector<std::uint8_t> report)
{
    hidapi.reports.push_back(std::move(report));
    QTimer tick;
    delegate.readData(&tick);
}

std::vector<QTimer *> LaunchedApplication::timers() const
{
    std::vector<QTimer *> running;
    for (QTimer *timer : delegate.findChildren<RepeatingTimer *>()) {
        if (timer->isActive())
            running.push_back(timer);
    }
    return running;
}

void LaunchedApplication::mark(QAbstractButton *button, bool checked)
{
    const QSignalBlocker silent(button);
    button->setChecked(checked);
}

void LaunchedApplication::forgetTraffic()
{
    hidapi.sent.clear();
    log.lines().clear();
}

std::vector<int> LaunchedApplication::commands() const
{
    return commandBytes(commandMarker);
}

std::vector<int> LaunchedApplication::polls() const
{
    return commandBytes(pollMarker);
}

std::vector<int> LaunchedApplication::commandBytes(std::uint8_t marker) const
{
    std::vector<int> bytes;
    for (const auto &report : hidapi.sent) {
        if (report.at(1) == marker)
            bytes.push_back(report.at(2));
    }
    return bytes;
}

qsizetype LaunchedApplication::logged(const QString &line) const
{
    return log.lines().count(line);
}

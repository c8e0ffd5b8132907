// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/DoctorFacts.h"

#include "base/InstalledFolders.h"
#include "base/InstalledPath.h"
#include "browser/link/HostRegistration.h"
#include "console/SingleInstance.h"
#include "console/SingleInstanceRequest.h"
#include "desktop/ClipboardControl.h"
#include "desktop/OnTopSupport.h"
#include "scale/ScaleIdentity.h"
#include "scale/pointofsale/ScaleSearch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSet>
#include <QStandardPaths>
#include <algorithm>
#include <systemd/sd-login.h>
#include <unistd.h>

namespace {

const QStringList ruleFolders{
    QStringLiteral("/etc/udev/rules.d"),           QStringLiteral("/run/udev/rules.d"),
    QStringLiteral("/usr/local/lib/udev/rules.d"), QStringLiteral("/usr/lib/udev/rules.d"),
    QStringLiteral("/lib/udev/rules.d"),
};

/// Where this installation has its host's manifests, beside the folders that the browsers are known
/// for.
struct InstalledHosts
{
    const char *browser;
    const char *folder;
};
constexpr std::array installedHosts{InstalledHosts{"Chromium", chromiumHostsFolder},
                                    InstalledHosts{"Firefox", firefoxHostsFolder}};

/// Only somebody who knows the system gives an absolute folder.
bool isGiven(const char *folder)
{
    return QDir::isAbsolutePath(QString::fromUtf8(folder));
}

QStringList readRuleFolders()
{
    return isGiven(udevRulesFolder) ? ruleFolders + QStringList(installedPath(udevRulesFolder))
                                    : ruleFolders;
}

bool namesTheScale(const QString &ruleFile, std::uint16_t vendorId, std::uint16_t productId)
{
    QFile file(ruleFile);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray text = file.readAll().toLower();
    const auto id = [](int number) {
        return '"' + QByteArray::number(number, 16).rightJustified(4, '0') + '"';
    };
    // A file may name many devices, each in a line of its own.
    const QList<QByteArray> lines = text.split('\n');
    const bool isNamed = std::any_of(lines.begin(), lines.end(), [&](const QByteArray &line) {
        return line.contains(id(vendorId)) && line.contains(id(productId));
    });
    return isNamed && text.contains("uaccess");
}

std::optional<int> activeSeats()
{
    constexpr int activeOnly = 1;
    const int seats = sd_uid_get_seats(getuid(), activeOnly, nullptr);
    return seats < 0 ? std::nullopt : std::optional(seats);
}

bool hasOpen(const QString &process, const QString &node)
{
    const QDir descriptors(process + QStringLiteral("/fd"));
    const auto links =
        descriptors.entryInfoList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
    return std::any_of(links.begin(), links.end(),
                       [&](const QFileInfo &link) { return link.symLinkTarget() == node; });
}

QString programName(const QString &process)
{
    QFile name(process + QStringLiteral("/comm"));
    return name.open(QIODevice::ReadOnly) ? QString::fromUtf8(name.readAll()).trimmed() : QString();
}

/// As the shell puts it in when the link is set up.
QString folderOfUser(const HostFolders &folders)
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QString::fromLatin1(folders.ofUser)
        .replace(QLatin1String("$config"), config)
        .replace(QLatin1String("$HOME"), QDir::homePath());
}

QString hostManifest()
{
    return QStringLiteral("/%1.json").arg(QLatin1String(browserHostName));
}

bool isGivenFor(const char *browser)
{
    return std::any_of(installedHosts.begin(), installedHosts.end(),
                       [&](const InstalledHosts &hosts) {
                           return qstrcmp(hosts.browser, browser) == 0 && isGiven(hosts.folder) &&
                                  QFileInfo::exists(installedPath(hosts.folder) + hostManifest());
                       });
}

QStringList linkedBrowsers()
{
    const QString file = hostManifest();
    QStringList linked;
    for (const HostFolders &folders : browserHostFolders) {
        if (QFileInfo::exists(QLatin1String(folders.ofEveryUser) + file) ||
            QFileInfo::exists(folderOfUser(folders) + file) || isGivenFor(folders.browser))
            linked.append(QLatin1String(folders.browser));
    }
    return linked;
}

void askWindow(SingleInstance &instance, DoctorFacts &facts)
{
    using Outcome = SingleInstance::Claim::Outcome;
    const SingleInstance::Claim claim = instance.claim(situationRequest());
    if (claim.outcome == Outcome::Ours)
        return;
    facts.running = claim.outcome == Outcome::Answered ? DoctorFacts::Running::Yes
                                                       : DoctorFacts::Running::NotAnswering;
    // What reads for followers has no window that it could tell of.
    if (claim.outcome == Outcome::Answered && claim.answer.isEmpty())
        facts.running = DoctorFacts::Running::ForScript;
    facts.window = WindowSituation::fromJson(claim.answer);
    if (facts.window.platform.startsWith(QLatin1String("wayland")))
        facts.desktop = Desktop::Wayland;
    else if (facts.window.platform == QLatin1String("xcb"))
        facts.desktop = Desktop::X11;
}

} // namespace

QString findRule(const QStringList &folders)
{
    return findRule(folders, scaleVendorId, scaleProductId);
}

QString findRule(const QStringList &folders, std::uint16_t vendorId, std::uint16_t productId)
{
    QSet<QString> seen;
    for (const QString &folder : folders) {
        const auto files = QDir(folder).entryInfoList({QStringLiteral("*.rules")}, QDir::Files);
        for (const QFileInfo &file : files) {
            if (!seen.contains(file.fileName()) &&
                namesTheScale(file.filePath(), vendorId, productId))
                return file.filePath();
            seen.insert(file.fileName());
        }
    }
    return {};
}

QStringList linksFor(const QString &programFolder)
{
    QStringList links;
    for (const InstalledHosts &hosts : installedHosts) {
        const QString manifest = installedPath(hosts.folder, programFolder) + hostManifest();
        const auto *const known = std::find_if(
            browserHostFolders.begin(), browserHostFolders.end(), [&](const HostFolders &folders) {
                return qstrcmp(folders.browser, hosts.browser) == 0;
            });
        if (isGiven(hosts.folder) || known == browserHostFolders.end() ||
            !QFileInfo::exists(manifest))
            continue;
        links.append(QStringLiteral("sudo ln -s \"%1\" %2/")
                         .arg(manifest, QLatin1String(known->ofEveryUser)));
    }
    return links;
}

QStringList holdersOf(const QString &node, qint64 exceptProcess)
{
    QStringList holders;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &entry : entries) {
        bool isNumber = false;
        const qint64 process = entry.toLongLong(&isNumber);
        const QString folder = QStringLiteral("/proc/") + entry;
        if (isNumber && process != exceptProcess && hasOpen(folder, node))
            holders.append(QStringLiteral("%1 (process %2)").arg(programName(folder), entry));
    }
    return holders;
}

DoctorFacts DoctorFacts::gather(HidDevices &devices, SingleInstance &instance)
{
    DoctorFacts facts;
    const AnyScale scale = findAnyScale(devices);
    facts.node = scale.node;
    facts.scaleName = scale.name;
    const bool isDescribed = scale.name.isEmpty();
    const std::uint16_t vendorId = isDescribed ? scaleVendorId : scale.device.vendorId;
    const std::uint16_t productId = isDescribed ? scaleProductId : scale.device.productId;
    facts.rule = findRule(readRuleFolders(), vendorId, productId);
    if (facts.rule.isEmpty())
        facts.unreadRule = findRule({installedPath(udevRulesFolder)}, vendorId, productId);
    if (!isDescribed)
        facts.ruleLine = udevRuleFor(scale.device);
    facts.seats = activeSeats();
    const DesktopEnvironment environment = DesktopEnvironment::ofSession();
    facts.desktop = expectedDesktop(environment);
    facts.shell = environment.shell;
    facts.applicationId = QGuiApplication::desktopFileName();
    facts.hasX11Display = environment.hasX11Display;
    facts.controlsClipboard = ClipboardControl().isOffered();
    facts.linkedBrowsers = ::linkedBrowsers();
    facts.unreadLinks = linksFor(QCoreApplication::applicationDirPath());
    facts.runtimeFolder = UserFolder::ofSession();
    askWindow(instance, facts);
    facts.runningProcess = instance.ownerProcess();
    facts.instanceTrouble = instance.trouble();
    facts.instanceCure = instance.cure();
    if (facts.node.access != ScaleAccess::Absent)
        facts.otherHolders = holdersOf(facts.node.path, facts.runningProcess);
    if (facts.desktop == Desktop::X11)
        facts.keepsOnTop = x11KeepsOnTop();
    return facts;
}

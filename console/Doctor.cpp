// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/Doctor.h"

#include "console/DoctorFacts.h"
#include "desktop/DesktopTrouble.h"
#include "scale/ScaleIdentity.h"
#include "scale/udev/UdevRule.h"

#include <QFileInfo>
#include <algorithm>

namespace {

Finding good(const QString &text)
{
    return {.kind = Finding::Kind::Good, .text = text, .cure = {}};
}

Finding note(const QString &text)
{
    return {.kind = Finding::Kind::Note, .text = text, .cure = {}};
}

Finding trouble(const QString &text, const QString &cure)
{
    return {.kind = Finding::Kind::Trouble, .text = text, .cure = cure};
}

QString identity(const QString &form)
{
    return form.arg(scaleVendorId, 4, 16, QLatin1Char('0'))
        .arg(scaleProductId, 4, 16, QLatin1Char('0'));
}

/// udev gives the user in front permission at 73: a rule that comes later comes too late.
bool sortsInTime(const QString &rule)
{
    return QFileInfo(rule).fileName() < QLatin1String("73-seat-late.rules");
}

Finding node(const DoctorFacts &facts)
{
    if (facts.node.access != ScaleAccess::Absent)
        return good(
            facts.scaleName.isEmpty()
                ? QStringLiteral("Scale found at %1").arg(facts.node.path)
                : QStringLiteral("Scale found at %1: %2").arg(facts.node.path, facts.scaleName));
    return trouble(
        identity(QStringLiteral("No scale: none with the USB id %1:%2, and none of the USB class "
                                "for points of sale")),
        QStringLiteral("Plug it in. If it is, try another cable or socket until \"lsusb\" lists "
                       "it."));
}

QString permissionCure(const DoctorFacts &facts)
{
    if (facts.rule.isEmpty())
        return QStringLiteral("Install the udev rule, see below, and plug the scale in again.");
    if (facts.seats == 0)
        return QStringLiteral("The scale belongs to the user who sits at this machine, and this "
                              "session has no seat: log in at its own screen, not over the "
                              "network.");
    return QStringLiteral("Plug the scale in again: the rule came after it.");
}

Finding permission(const DoctorFacts &facts)
{
    switch (facts.node.access) {
    case ScaleAccess::Absent: break;
    case ScaleAccess::Denied:
        return trouble(QStringLiteral("No permission to open %1").arg(facts.node.path),
                       permissionCure(facts));
    case ScaleAccess::Granted: return good(QStringLiteral("Permission to open it"));
    }
    return note(QStringLiteral("Permission shows once a scale is there"));
}

Finding rule(const DoctorFacts &facts)
{
    if (facts.rule.isEmpty() && !facts.unreadRule.isEmpty())
        return trouble(QStringLiteral("udev does not read the rule %1").arg(facts.unreadRule),
                       QStringLiteral("Link it: sudo ln -s \"%1\" /etc/udev/rules.d/, and plug the "
                                      "scale in again.")
                           .arg(facts.unreadRule));
    if (facts.rule.isEmpty())
        return trouble(QStringLiteral("No udev rule for the scale"),
                       (facts.ruleLine.isEmpty()
                            ? QStringLiteral("Install the package, or put this line into %1: %2")
                            : QStringLiteral("Put this line into %1: %2"))
                           .arg(QLatin1String(udevRuleFile),
                                facts.ruleLine.isEmpty() ? QString(QLatin1String(udevRuleLine))
                                                         : facts.ruleLine));
    if (!sortsInTime(facts.rule))
        return trouble(QStringLiteral("The udev rule %1 is applied too late").arg(facts.rule),
                       QStringLiteral("Give the file a name that begins with 60."));
    return good(QStringLiteral("udev rule %1").arg(facts.rule));
}

Finding holders(const DoctorFacts &facts)
{
    if (facts.otherHolders.isEmpty())
        return good(QStringLiteral("No other program has the scale open"));
    const QString holders = facts.otherHolders.join(QStringLiteral(", "));
    // One that sends by itself sends to each of them.
    if (!facts.scaleName.isEmpty())
        return note(QStringLiteral("Also open in %1, which takes nothing away").arg(holders));
    return trouble(
        QStringLiteral("Also open in %1").arg(holders),
        QStringLiteral("End it: two programs that read a scale take each other's answers."));
}

Finding running(const DoctorFacts &facts)
{
    switch (facts.running) {
    case DoctorFacts::Running::No: break;
    case DoctorFacts::Running::Yes: return good(QStringLiteral("Postal Scale is running"));
    case DoctorFacts::Running::ForScript:
        return good(QStringLiteral("The scale is read for a script (postal-scale --follow)"));
    case DoctorFacts::Running::NotAnswering:
        return trouble(QStringLiteral("Postal Scale is running, but does not answer"),
                       facts.runningProcess == 0
                           ? QStringLiteral("End it and start it again.")
                           : QStringLiteral("End it (process %1) and start it again.")
                                 .arg(facts.runningProcess));
    }
    return note(QStringLiteral("Postal Scale is not running"));
}

DesktopSituation situationOf(const DoctorFacts &facts)
{
    return {.desktop = facts.desktop,
            .shell = facts.shell,
            .hasX11Display = facts.hasX11Display,
            .controlsClipboard = facts.controlsClipboard,
            .keepsOnTop = facts.keepsOnTop};
}

Finding clipboard(const DoctorFacts &facts)
{
    if (facts.desktop == Desktop::None)
        return note(QStringLiteral("Clipboard: there is no desktop in this session"));
    const DesktopTrouble refused = clipboardTrouble(situationOf(facts));
    if (refused.isEmpty())
        return good(QStringLiteral("Clipboard: can be written at every reading"));
    return trouble(QStringLiteral("Clipboard: this desktop lets only the front window write it"),
                   refused.cure);
}

Finding onTop(const DoctorFacts &facts)
{
    const bool isX11 = facts.desktop == Desktop::X11;
    if (facts.desktop == Desktop::None || (isX11 && !facts.keepsOnTop))
        return note(QStringLiteral("On top: there is no desktop in this session"));
    const DesktopTrouble refused = onTopTrouble(situationOf(facts), facts.applicationId);
    if (refused.isEmpty())
        return good(QStringLiteral("On top: the window manager does it"));
    return trouble(isX11 ? QStringLiteral("On top: the window manager does not offer it")
                         : QStringLiteral("On top: this desktop does not let programs ask for it"),
                   refused.cure);
}

Finding browser(const DoctorFacts &facts)
{
    if (facts.linkedBrowsers.isEmpty() && !facts.unreadLinks.isEmpty())
        return trouble(
            QStringLiteral("Browser link: the browsers do not look into this installation"),
            QStringLiteral("Link its files: %1; and load the extension into the browser.")
                .arg(facts.unreadLinks.join(QStringLiteral("; "))));
    if (facts.linkedBrowsers.isEmpty())
        return trouble(QStringLiteral("Browser link: not set up for any browser"),
                       QStringLiteral("Install the package and start the browser again; from the "
                                      "sources, ./run --browser-link."));
    const QString browsers = facts.linkedBrowsers.join(QStringLiteral(", "));
    if (facts.window.browserLink.isEmpty())
        return note(QStringLiteral("Browser link: set up for %1; it is up while Postal Scale runs")
                        .arg(browsers));
    if (!facts.window.browserCanLink)
        return trouble(facts.window.browserLink,
                       QStringLiteral("Mend that, then close Postal Scale and start it again."));
    const QString link =
        QStringLiteral("Browser link (%1): %2").arg(browsers, facts.window.browserLink);
    if (!facts.window.browserFits)
        return trouble(link, QStringLiteral("Install both anew: their versions differ."));
    return facts.window.hasBrowser ? good(link) : note(link);
}

/// Only where it keeps anything from working.
QList<Finding> folderTroubles(const DoctorFacts &facts)
{
    const UserFolder &folder = facts.runtimeFolder;
    const bool isBoth = facts.instanceTrouble == folder.trouble;
    QList<Finding> troubles;
    // Where the session has none, starts find each other in one that the toolkit makes.
    if (!folder.trouble.isEmpty())
        troubles.append(
            trouble((isBoth ? QStringLiteral("Browsers and later starts do not reach the window: ")
                            : QStringLiteral("Browsers do not reach the window: ")) +
                        folder.trouble,
                    folder.cure));
    if (!facts.instanceTrouble.isEmpty() && !isBoth)
        troubles.append(
            trouble(QStringLiteral("Later starts do not find the window: ") + facts.instanceTrouble,
                    facts.instanceCure));
    return troubles;
}

QLatin1String mark(Finding::Kind kind)
{
    switch (kind) {
    case Finding::Kind::Good: return QLatin1String("ok");
    case Finding::Kind::Trouble: return QLatin1String("!!");
    case Finding::Kind::Note: break;
    }
    return QLatin1String("--");
}

} // namespace

QList<Finding> diagnose(const DoctorFacts &facts)
{
    const QList<Finding> findings{node(facts),    permission(facts), rule(facts),  holders(facts),
                                  running(facts), clipboard(facts),  onTop(facts), browser(facts)};
    return findings + folderTroubles(facts);
}

QString reportText(const QList<Finding> &findings)
{
    QString text;
    for (const Finding &finding : findings) {
        text += QStringLiteral("%1  %2\n").arg(mark(finding.kind), finding.text);
        if (!finding.cure.isEmpty())
            text += QStringLiteral("    %1\n").arg(finding.cure);
    }
    return text;
}

int exitStatus(const QList<Finding> &findings)
{
    return std::any_of(
               findings.begin(), findings.end(),
               [](const Finding &finding) { return finding.kind == Finding::Kind::Trouble; })
               ? 1
               : 0;
}

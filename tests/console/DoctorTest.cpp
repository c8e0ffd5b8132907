// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/Doctor.h"

#include "console/DoctorFacts.h"
#include "tests/support/TestClasses.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <functional>

namespace {

using Kind = Finding::Kind;

const QString packageRule = QStringLiteral("/usr/lib/udev/rules.d/60-postal-scale.rules");

/// All is well, and the window runs.
DoctorFacts wellFacts()
{
    DoctorFacts facts;
    facts.node = {.access = ScaleAccess::Granted, .path = QStringLiteral("/dev/hidraw3")};
    facts.rule = packageRule;
    facts.seats = 1;
    facts.running = DoctorFacts::Running::Yes;
    facts.desktop = Desktop::X11;
    facts.keepsOnTop = true;
    facts.linkedBrowsers = QStringList{QStringLiteral("Firefox")};
    facts.window = {.platform = QStringLiteral("xcb"),
                    .browserLink = QStringLiteral("Browser linked, waiting for a carrier page"),
                    .hasBrowser = true};
    return facts;
}

struct Case
{
    const char *name;
    std::function<void(DoctorFacts &)> change;
    Kind kind;
    const char *says;  ///< in the finding that differs
    const char *helps; ///< in its cure
};

void deny(DoctorFacts &facts)
{
    facts.node.access = ScaleAccess::Denied;
}

const std::vector<Case> cases{
    {"no scale", [](auto &facts) { facts.node = {}; }, Kind::Trouble, "04d9:8010", "Plug it in"},
    {"permission after a late rule", deny, Kind::Trouble, "No permission to open /dev/hidraw3",
     "Plug the scale in again"},
    {"permission without a seat",
     [](auto &facts) {
         deny(facts);
         facts.seats = 0;
     },
     Kind::Trouble, "No permission", "no seat"},
    {"permission where no logind tells",
     [](auto &facts) {
         deny(facts);
         facts.seats.reset();
     },
     Kind::Trouble, "No permission", "Plug the scale in again"},
    {"no rule", [](auto &facts) { facts.rule.clear(); }, Kind::Trouble, "No udev rule",
     "ATTRS{idVendor}==\"04d9\", ATTRS{idProduct}==\"8010\", TAG+=\"uaccess\""},
    {"rule of an installation elsewhere",
     [](auto &facts) {
         facts.rule.clear();
         facts.unreadRule = QStringLiteral("/opt/x/lib/udev/rules.d/60-postal-scale.rules");
     },
     Kind::Trouble, "udev does not read the rule /opt/x/lib/udev/rules.d/60-postal-scale.rules",
     "ln -s \"/opt/x/lib/udev/rules.d/60-postal-scale.rules\" /etc/udev/rules.d/"},
    {"rule of an installation elsewhere beside one that is read",
     [](auto &facts) {
         facts.rule = QStringLiteral("/etc/udev/rules.d/60-scale.rules");
         facts.unreadRule = QStringLiteral("/opt/x/lib/udev/rules.d/60-postal-scale.rules");
     },
     Kind::Good, "udev rule /etc/udev/rules.d/60-scale.rules", ""},
    {"late rule",
     [](auto &facts) { facts.rule = QStringLiteral("/etc/udev/rules.d/99-scale.rules"); },
     Kind::Trouble, "too late", "60"},
    {"another program",
     [](auto &facts) { facts.otherHolders = QStringList{QStringLiteral("weigher (process 42)")}; },
     Kind::Trouble, "weigher (process 42)", "End it"},
    {"not running", [](auto &facts) { facts.running = DoctorFacts::Running::No; }, Kind::Note,
     "not running", ""},
    {"read for a script", [](auto &facts) { facts.running = DoctorFacts::Running::ForScript; },
     Kind::Good, "is read for a script", ""},
    {"hanging", [](auto &facts) { facts.running = DoctorFacts::Running::NotAnswering; },
     Kind::Trouble, "does not answer", "End it and start it again"},
    {"hanging, by number",
     [](auto &facts) {
         facts.running = DoctorFacts::Running::NotAnswering;
         facts.runningProcess = 42;
     },
     Kind::Trouble, "does not answer", "End it (process 42)"},
    {"window manager without on top", [](auto &facts) { facts.keepsOnTop = false; }, Kind::Trouble,
     "does not offer it", "_NET_WM_STATE_ABOVE"},
    {"no browser", [](auto &facts) { facts.linkedBrowsers.clear(); }, Kind::Trouble,
     "not set up for any browser", "Install the package"},
    {"browsers that do not look into the installation",
     [](auto &facts) {
         facts.linkedBrowsers.clear();
         facts.unreadLinks = QStringList{QStringLiteral("sudo ln -s \"/opt/x/a.json\" /etc/b/")};
     },
     Kind::Trouble, "do not look into this installation", "sudo ln -s \"/opt/x/a.json\" /etc/b/"},
    {"no link", [](auto &facts) { facts.window = {}; }, Kind::Note, "up while Postal Scale runs",
     ""},
    {"no browser runs", [](auto &facts) { facts.window.hasBrowser = false; }, Kind::Note,
     "Browser link (Firefox): Browser linked, waiting for a carrier page", ""},
    {"extension of another version", [](auto &facts) { facts.window.browserFits = false; },
     Kind::Trouble, "Browser link (Firefox)", "Install both anew"},
    {"display out of reach", [](auto &facts) { facts.keepsOnTop.reset(); }, Kind::Note,
     "no desktop in this session", ""},
};

/// What somebody is told who has no rule.
QByteArray advisedRule()
{
    for (const Finding &finding : diagnose(DoctorFacts{})) {
        if (const qsizetype place = finding.cure.indexOf(QLatin1String("ACTION")); place >= 0)
            return finding.cure.mid(place).toUtf8();
    }
    return {};
}

QByteArray contents(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QList<Finding> differing(const QList<Finding> &findings)
{
    QList<Finding> others = findings;
    for (const Finding &same : diagnose(wellFacts()))
        others.removeOne(same);
    return others;
}

} // namespace

Q_DECLARE_METATYPE(Case)

class DoctorTest : public QObject
{
    Q_OBJECT

private slots:
    void allIsWell()
    {
        const QList<Finding> findings = diagnose(wellFacts());
        for (const Finding &finding : findings) {
            QCOMPARE(finding.kind, Kind::Good);
            QVERIFY(finding.cure.isEmpty());
        }
        QCOMPARE(exitStatus(findings), 0);
        QVERIFY(!reportText(findings).contains(QStringLiteral("!!")));
    }

    void oneThingIsNot_data()
    {
        QTest::addColumn<Case>("example");
        for (const Case &example : cases)
            QTest::newRow(example.name) << example;
    }

    void oneThingIsNot()
    {
        QFETCH(Case, example);
        DoctorFacts facts = wellFacts();
        example.change(facts);
        const QList<Finding> findings = diagnose(facts);
        const Finding finding = differing(findings).value(0);
        QCOMPARE(finding.kind, example.kind);
        QVERIFY2(finding.text.contains(QLatin1String(example.says)), qPrintable(finding.text));
        QVERIFY2(finding.cure.contains(QLatin1String(example.helps)), qPrintable(finding.cure));
        QVERIFY(!finding.cure.contains(QLatin1Char('\n')));
        QCOMPARE(finding.cure.isEmpty(), example.kind != Kind::Trouble);
        QCOMPARE(exitStatus(findings), example.kind == Kind::Trouble ? 1 : 0);
        QVERIFY(reportText(findings).contains(finding.text));
        QVERIFY(reportText(findings).contains(finding.cure));
    }

    void anotherProgramTakesNothingFromAScaleThatSendsByItself()
    {
        DoctorFacts facts = wellFacts();
        facts.scaleName = QStringLiteral("One Scale");
        facts.otherHolders = QStringList{QStringLiteral("weigher (process 42)")};
        const QList<Finding> findings = diagnose(facts);
        QCOMPARE(exitStatus(findings), 0);
        QVERIFY(findings.contains(
            {.kind = Kind::Note,
             .text = QStringLiteral("Also open in weigher (process 42), which takes nothing away"),
             .cure = {}}));
    }

    void onWaylandBothDesktopServicesAreInDoubt()
    {
        DoctorFacts facts = wellFacts();
        facts.desktop = Desktop::Wayland;
        facts.keepsOnTop = false;
        const QList<Finding> findings = differing(diagnose(facts));
        QCOMPARE(findings.size(), 2);
        for (const Finding &finding : findings) {
            QCOMPARE(finding.kind, Kind::Trouble);
            QVERIFY(finding.cure.contains(QStringLiteral("QT_QPA_PLATFORM=xcb")));
        }
    }

    void withoutADesktopNeitherIsJudged()
    {
        DoctorFacts facts = wellFacts();
        facts.desktop = Desktop::None;
        facts.keepsOnTop = false;
        for (const Finding &finding : differing(diagnose(facts)))
            QCOMPARE(finding.kind, Kind::Note);
    }

    void rulesAreFoundByWhatTheySay_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("found");
        QTest::newRow("the package's") << contents(QStringLiteral(UDEV_RULE)) << true;
        QTest::newRow("as it is advised") << advisedRule() << true;
        QTest::newRow("capital letters")
            << QByteArray(R"(ATTRS{idVendor}=="04D9", ATTRS{idProduct}=="8010", TAG+="uaccess")")
            << true;
        QTest::newRow("another device")
            << QByteArray(R"(ATTRS{idVendor}=="04d9", ATTRS{idProduct}=="a01c", TAG+="uaccess")")
            << false;
        QTest::newRow("no access")
            << QByteArray(R"(ATTRS{idVendor}=="04d9", ATTRS{idProduct}=="8010", MODE="0600")")
            << false;
        QTest::newRow("empty") << QByteArray() << false;
    }

    void rulesAreFoundByWhatTheySay()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, found);
        const QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("50-mine.rules"));
        QFile rule(name);
        QVERIFY(rule.open(QIODevice::WriteOnly));
        rule.write(text);
        rule.close();
        QCOMPARE(findRule({folder.filePath(QStringLiteral("missing")), folder.path()}),
                 found ? name : QString());
    }

    void aRuleThatAnotherTakesThePlaceOfDoesNotCount()
    {
        const QTemporaryDir folder;
        QFile rule(folder.filePath(QStringLiteral("60-postal-scale.rules")));
        QVERIFY(rule.open(QIODevice::WriteOnly));
        rule.write(R"(ATTRS{idVendor}=="04d9", ATTRS{idProduct}=="8010", TAG+="uaccess")");
        rule.close();
        const QTemporaryDir administrators;
        QVERIFY(QFile(administrators.filePath(QStringLiteral("60-postal-scale.rules")))
                    .open(QIODevice::WriteOnly));
        QCOMPARE(findRule({folder.path()}), rule.fileName());
        QCOMPARE(findRule({administrators.path(), folder.path()}), QString());
    }

    void aProgramThatHasTheNodeOpenIsNamed()
    {
        const QTemporaryDir folder;
        const QString node = folder.filePath(QStringLiteral("hidraw3"));
        QVERIFY(QFile(node).open(QIODevice::WriteOnly));
        QVERIFY(holdersOf(node, 0).isEmpty());

        QProcess holder;
        holder.setStandardInputFile(node);
        holder.start(QStringLiteral("sleep"), {QStringLiteral("1000")});
        QVERIFY(holder.waitForStarted());
        QTRY_COMPARE(holdersOf(node, 0),
                     QStringList{QStringLiteral("sleep (process %1)").arg(holder.processId())});
        QVERIFY(holdersOf(node, holder.processId()).isEmpty());
        holder.kill();
        QVERIFY(holder.waitForFinished());
        QVERIFY(holdersOf(node, 0).isEmpty());
    }
};

TEST_CLASS_INSIDE(QCoreApplication, DoctorTest)
#include "DoctorTest.moc"

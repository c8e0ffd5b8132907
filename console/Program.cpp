// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/Program.h"

#include "app/Application.h"
#include "console/CommandLine.h"
#include "console/Doctor.h"
#include "console/DoctorFacts.h"
#include "console/FollowCommand.h"
#include "console/LogOutput.h"
#include "console/ReadingReportCommand.h"
#include "console/RemoteControl.h"
#include "console/SingleInstance.h"
#include "console/SingleInstanceRequest.h"
#include "console/StandardStreams.h"
#include "console/UnseenSource.h"
#include "console/WindowCommand.h"

#include <cstdio>
#include <sysexits.h>

namespace {

int showWindow(Application &application, const CommandLine &line, const ActivationRight &right,
               EndSignals &endSignals)
{
    LogOutput log;
    SingleInstance instance(SingleInstance::defaultFolder());
    return WindowCommand(application, instance, endSignals, log).run(line, right);
}

int printReading(Application &application, const CommandLine &line)
{
    SingleInstance instance(SingleInstance::defaultFolder());
    return statusOfOutput(ReadingReportCommand(application, instance).run(line));
}

int followReadings(const CommandLine &line)
{
    const SingleInstance instance(SingleInstance::defaultFolder());
    return FollowCommand(instance.socketPath()).run(line);
}

int readForFollowers(Application &application, const CommandLine &line)
{
    SingleInstance instance(SingleInstance::defaultFolder());
    return UnseenSource(application, instance).run(line);
}

int operateWindow(const CommandLine &line)
{
    const SingleInstance instance(SingleInstance::defaultFolder());
    const SingleInstance::Claim claim = instance.askFirst(operateRequest(line.verb, line.value));
    const RemoteAnswer answer = claim.outcome == SingleInstance::Claim::Outcome::Unanswered
                                    ? RemoteAnswer::hanging()
                                    : RemoteAnswer::fromJson(claim.answer);
    std::fprintf(answer.exitStatus == 0 ? stdout : stderr, "%s\n", qPrintable(answer.words));
    return statusOfOutput(answer.exitStatus);
}

int diagnoseMachine(Application &application)
{
    SingleInstance instance(SingleInstance::defaultFolder());
    const QList<Finding> findings = diagnose(DoctorFacts::gather(application.devices(), instance));
    std::fputs(qPrintable(reportText(findings)), stdout);
    return statusOfOutput(exitStatus(findings));
}

int showVersion()
{
    std::printf("%s %s\n", qPrintable(QCoreApplication::applicationName()),
                qPrintable(QCoreApplication::applicationVersion()));
    return statusOfOutput(0);
}

int showHelp(const CommandLine &line)
{
    std::fputs(qPrintable(line.text), stdout);
    return statusOfOutput(0);
}

int refuse(const CommandLine &line)
{
    std::fprintf(stderr, "%s\n", qPrintable(line.text));
    return EX_USAGE;
}

} // namespace

int runProgram(Application &application, const ActivationRight &right, EndSignals &endSignals)
{
    const CommandLine line = CommandLine::parse(QCoreApplication::arguments());
    switch (line.action) {
    case CommandLine::Action::ShowWindow: return showWindow(application, line, right, endSignals);
    case CommandLine::Action::PrintReading: return printReading(application, line);
    case CommandLine::Action::Follow: return followReadings(line);
    case CommandLine::Action::Operate: return operateWindow(line);
    case CommandLine::Action::ReadForFollowers: return readForFollowers(application, line);
    case CommandLine::Action::Diagnose: return diagnoseMachine(application);
    case CommandLine::Action::ShowVersion: return showVersion();
    case CommandLine::Action::ShowHelp: return showHelp(line);
    case CommandLine::Action::Refuse: break;
    }
    return refuse(line);
}

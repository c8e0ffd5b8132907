// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/CommandTable.h"

#include "emulator/Arguments.h"
#include "emulator/HexText.h"
#include "emulator/LineCommand.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <stdexcept>

namespace {

using linecommand::replyLines;
using linecommand::Switch;
using linecommand::switchFromText;
using linecommand::Words;
using Call = linecommand::Call<Emulator>;
using Command = linecommand::Command<Emulator>;

int signalFromText(const std::string &text)
{
    constexpr std::array<std::pair<std::string_view, int>, 9> names = {{{"TERM", SIGTERM},
                                                                        {"INT", SIGINT},
                                                                        {"HUP", SIGHUP},
                                                                        {"QUIT", SIGQUIT},
                                                                        {"KILL", SIGKILL},
                                                                        {"STOP", SIGSTOP},
                                                                        {"CONT", SIGCONT},
                                                                        {"USR1", SIGUSR1},
                                                                        {"USR2", SIGUSR2}}};
    const auto found = std::find_if(names.begin(), names.end(),
                                    [&](const auto &each) { return each.first == text; });
    return found == names.end() ? numberFromText(text) : found->second;
}

/// Null where it is the name of another device.
ClassScale *classScaleNamed(Emulator &devices, const std::string &name)
{
    if (name == "class")
        return &devices.classScale;
    if (name == "class-two")
        return &devices.otherClassScale;
    return name == "odd" ? &devices.oddScale : nullptr;
}

ClassScale &classScaleFromWord(const Call &call)
{
    ClassScale *scale = classScaleNamed(call.devices, call.arguments.front());
    if (scale == nullptr)
        throw std::invalid_argument("no such scale is called " + call.arguments.front());
    return *scale;
}

PluggableDevice &deviceFromWord(const Call &call)
{
    const std::string name = call.arguments.empty() ? "scale" : call.arguments.front();
    if (name == "scale")
        return call.scale;
    if (name == "second")
        return call.devices.second;
    if (name == "mouse")
        return call.devices.mouse;
    if (name == "stranger")
        return call.devices.stranger;
    if (ClassScale *scale = classScaleNamed(call.devices, name))
        return *scale;
    throw std::invalid_argument("no device is called " + name);
}

HidrawDevice::Transfer failingIf(Switch wanted)
{
    return wanted == Switch::On ? HidrawDevice::Transfer::Failed : HidrawDevice::Transfer::Done;
}

void setPolls(const Call &call, EmulatedScale::Polls whenOn)
{
    const Switch wanted = switchFromText(call.arguments[0]);
    call.scale.setPolls(wanted == Switch::On ? whenOn : EmulatedScale::Polls::Answered);
    call.reply("ok");
}

void help(const Call &call);

void plug(const Call &call)
{
    deviceFromWord(call).plug();
    call.reply("ok");
}

void unplug(const Call &call)
{
    deviceFromWord(call).unplug();
    call.reply("ok");
}

void attachAgain(const Call &call)
{
    call.scale.announceAgain("add");
    call.reply("ok");
}

void changeEvent(const Call &call)
{
    call.scale.announceAgain("change");
    call.reply("ok");
}

void weight(const Call &call)
{
    call.scale.model.setLoad(numberFromText(call.arguments[0]));
    call.reply("ok");
}

void type(const Call &call)
{
    call.scale.model.setType(typeFromText(call.arguments[0]));
    call.reply("ok");
}

void capacity(const Call &call)
{
    call.scale.model.setCapacity(capacityFromText(call.arguments[0]));
    call.reply("ok");
}

void silence(const Call &call)
{
    setPolls(call, EmulatedScale::Polls::Unanswered);
}

void lose(const Call &call)
{
    call.scale.loseAnswers(numberFromText(call.arguments[0]));
    call.reply("ok");
}

void garbage(const Call &call)
{
    setPolls(call, EmulatedScale::Polls::Garbled);
}

void report(const Call &call)
{
    constexpr std::size_t longest = 64;
    const auto bytes = bytesFromHex(call.arguments[0]);
    if (!bytes || bytes->empty() || bytes->size() > longest)
        throw std::invalid_argument("a report is 1 to 64 bytes in hexadecimal");
    call.scale.sendReport(*bytes);
    call.reply("ok");
}

std::vector<ClassScale::Report> reportsFromWords(const Call &call)
{
    std::vector<ClassScale::Report> reports;
    for (std::size_t i = 1; i < call.arguments.size(); ++i) {
        const auto bytes = bytesFromHex(call.arguments[i]);
        if (!bytes || bytes->empty())
            throw std::invalid_argument("a report is bytes in hexadecimal");
        reports.push_back(*bytes);
    }
    return reports;
}

void say(const Call &call)
{
    classScaleFromWord(call).say(reportsFromWords(call));
    call.reply("ok");
}

void sayFirst(const Call &call)
{
    classScaleFromWord(call).sayFirst(reportsFromWords(call).front());
    call.reply("ok");
}

void interval(const Call &call)
{
    const int milliseconds = numberFromText(call.arguments[1]);
    classScaleFromWord(call).setInterval(static_cast<unsigned>(std::max(0, milliseconds)));
    call.reply("ok");
}

void written(const Call &call)
{
    Words lines;
    for (const ClassScale::Report &report : classScaleFromWord(call).written())
        lines.push_back(hexText(report));
    replyLines(call.reply, lines);
}

void burst(const Call &call)
{
    call.scale.sendReadings(numberFromText(call.arguments[0]));
    call.reply("ok");
}

void failSend(const Call &call)
{
    call.scale.setFeatureTransfer(failingIf(switchFromText(call.arguments[0])));
    call.reply("ok");
}

void failRead(const Call &call)
{
    call.scale.setInputTransfer(failingIf(switchFromText(call.arguments[0])));
    call.reply("ok");
}

void vanishInRead(const Call &call)
{
    call.scale.unplugInRead();
    call.reply("ok");
}

void permission(const Call &call)
{
    const bool granted = switchFromText(call.arguments[0]) == Switch::On;
    call.scale.setPermission(granted ? Permission::Granted : Permission::Denied);
    call.reply("ok");
}

void state(const Call &call)
{
    call.reply(stateText(call.scale));
}

void reports(const Call &call)
{
    replyLines(call.reply, call.scale.log.lines());
}

void clearReports(const Call &call)
{
    call.scale.log.clear();
    call.reply("ok");
}

void waitReports(const Call &call)
{
    const int count = numberFromText(call.arguments[0]);
    const std::chrono::milliseconds timeout(std::max(0, numberFromText(call.arguments[1])));
    call.scale.log.waitFor(count, timeout, [reply = call.reply](FeatureLog::Outcome outcome) {
        reply(outcome == FeatureLog::Outcome::Reached ? "ok" : "timeout");
    });
}

void opens(const Call &call)
{
    call.reply(std::to_string(call.scale.opens()));
}

void openHandles(const Call &call)
{
    call.reply(std::to_string(call.scale.openHandles()));
}

void raiseChild(const Call &call)
{
    call.devices.raiseInChild(signalFromText(call.arguments[0]));
    call.reply("ok");
}

void quit(const Call &call)
{
    call.reply("ok");
    call.devices.raiseInChild(SIGTERM);
}

constexpr std::array commands = {
    Command{"help", 0, 0, "help", help},
    Command{"plug", 0, 1, "plug [scale|second|mouse|stranger|class|class-two|odd]", plug},
    Command{"unplug", 0, 1, "unplug [scale|second|mouse|stranger|class|class-two|odd]", unplug},
    Command{"attach-again", 0, 0, "attach-again", attachAgain},
    Command{"change-event", 0, 0, "change-event", changeEvent},
    Command{"weight", 1, 1, "weight GRAMS", weight},
    Command{"type", 1, 1, "type 0|1", type},
    Command{"capacity", 1, 1, "capacity ordinary|high", capacity},
    Command{"silence", 1, 1, "silence on|off", silence},
    Command{"lose", 1, 1, "lose COUNT", lose},
    Command{"garbage", 1, 1, "garbage on|off", garbage},
    Command{"report", 1, 1, "report HEX", report},
    Command{"say", 2, 9, "say class|class-two|odd HEX [HEX ...]", say},
    Command{"say-first", 2, 2, "say-first class|class-two|odd HEX", sayFirst},
    Command{"interval", 2, 2, "interval class|class-two|odd MS", interval},
    Command{"written", 1, 1, "written class|class-two|odd", written},
    Command{"burst", 1, 1, "burst COUNT", burst},
    Command{"fail-send", 1, 1, "fail-send on|off", failSend},
    Command{"fail-read", 1, 1, "fail-read on|off", failRead},
    Command{"vanish-in-read", 0, 0, "vanish-in-read", vanishInRead},
    Command{"permission", 1, 1, "permission on|off", permission},
    Command{"state", 0, 0, "state", state},
    Command{"reports", 0, 0, "reports", reports},
    Command{"clear-reports", 0, 0, "clear-reports", clearReports},
    Command{"wait-reports", 2, 2, "wait-reports COUNT TIMEOUT_MS", waitReports},
    Command{"opens", 0, 0, "opens", opens},
    Command{"open-handles", 0, 0, "open-handles", openHandles},
    Command{"raise-child", 1, 1, "raise-child SIGNAL", raiseChild},
    Command{"quit", 0, 0, "quit", quit},
};

void help(const Call &call)
{
    Words lines;
    for (const Command &command : commands)
        lines.emplace_back(command.usage);
    replyLines(call.reply, lines);
}

} // namespace

void runCommand(Emulator &emulator, const std::string &line, const CommandServer::Reply &reply)
{
    linecommand::run<Emulator>(commands, emulator, line, reply);
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/system/gadget/BusCommands.h"

#include "emulator/Arguments.h"
#include "emulator/HexText.h"
#include "emulator/LineCommand.h"

#include <array>
#include <stdexcept>

namespace {

using linecommand::replyLines;
using linecommand::Switch;
using linecommand::switchFromText;
using Call = linecommand::Call<Bus>;
using Command = linecommand::Command<Bus>;

ClassGadget &classScaleNamed(const Call &call)
{
    const std::string &name = call.arguments.front();
    if (name != "class" && name != "class-two")
        throw std::invalid_argument("no such scale is called " + name);
    return name == "class" ? call.devices.classScale : call.devices.otherClassScale;
}

void say(const Call &call)
{
    std::vector<ClassGadget::Report> reports;
    for (std::size_t i = 1; i < call.arguments.size(); ++i) {
        const auto bytes = bytesFromHex(call.arguments[i]);
        if (!bytes || bytes->empty())
            throw std::invalid_argument("a report is bytes in hexadecimal");
        reports.push_back(*bytes);
    }
    classScaleNamed(call).say(std::move(reports));
    call.reply("ok");
}

void written(const Call &call)
{
    linecommand::Words lines;
    for (const ClassGadget::Report &report : classScaleNamed(call).written())
        lines.push_back(hexText(report));
    replyLines(call.reply, lines);
}

template <typename Action> void onDevice(const Call &call, Action action)
{
    const std::string name = call.arguments.empty() ? "scale" : call.arguments.front();
    if (name == "scale")
        action(call.devices.scale);
    else if (name == "second")
        action(call.devices.second);
    else if (name == "mouse")
        action(call.devices.mouse);
    else if (name == "class" || name == "class-two")
        action(classScaleNamed(call));
    else
        throw std::invalid_argument("no device is called " + name);
    call.reply("ok");
}

void plug(const Call &call)
{
    onDevice(call, [](auto &device) { device.plug(); });
}

void unplug(const Call &call)
{
    onDevice(call, [](auto &device) { device.unplug(); });
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

void silence(const Call &call)
{
    const Switch wanted = switchFromText(call.arguments[0]);
    call.scale.setPolls(wanted == Switch::On ? GadgetScale::Polls::Unanswered
                                             : GadgetScale::Polls::Answered);
    call.reply("ok");
}

void form(const Call &call)
{
    using Form = GadgetScale::Form;
    const std::string &name = call.arguments[0];
    if (name == "plain")
        call.scale.setForm(Form::Plain);
    else if (name == "wide")
        call.scale.setForm(Form::Wide);
    else if (name == "composite")
        call.scale.setForm(Form::Composite);
    else
        throw std::invalid_argument("no form is called " + name);
    call.reply("ok");
}

template <typename Change> void changeManner(const Call &call, Change change)
{
    GadgetScale::Manner manner = call.scale.currentManner();
    change(manner, numberFromText(call.arguments[0]));
    call.scale.setManner(manner);
    call.reply("ok");
}

void delay(const Call &call)
{
    changeManner(call,
                 [](auto &manner, int number) { manner.delay = static_cast<unsigned>(number); });
}

void copies(const Call &call)
{
    changeManner(call, [](auto &manner, int number) { manner.copies = number; });
}

void length(const Call &call)
{
    changeManner(
        call, [](auto &manner, int number) { manner.length = static_cast<std::size_t>(number); });
}

void unasked(const Call &call)
{
    call.scale.sendUnasked(static_cast<unsigned>(numberFromText(call.arguments[0])));
    call.reply("ok");
}

void power(const Call &call)
{
    call.reply(call.scale.model.power() == ScaleModel::Power::On ? "on" : "off");
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

constexpr std::array commands = {
    Command{"plug", 0, 1, "plug [scale|second|mouse|class|class-two]", plug},
    Command{"unplug", 0, 1, "unplug [scale|second|mouse|class|class-two]", unplug},
    Command{"say", 2, 9, "say class|class-two HEX [HEX ...]", say},
    Command{"written", 1, 1, "written class|class-two", written},
    Command{"weight", 1, 1, "weight GRAMS", weight},
    Command{"type", 1, 1, "type 0|1", type},
    Command{"silence", 1, 1, "silence on|off", silence},
    Command{"form", 1, 1, "form plain|wide|composite", form},
    Command{"delay", 1, 1, "delay MS", delay},
    Command{"copies", 1, 1, "copies COUNT", copies},
    Command{"length", 1, 1, "length BYTES", length},
    Command{"unasked", 1, 1, "unasked MS", unasked},
    Command{"power", 0, 0, "power", power},
    Command{"reports", 0, 0, "reports", reports},
    Command{"clear-reports", 0, 0, "clear-reports", clearReports},
};

} // namespace

void runBusCommand(Bus &bus, const std::string &line, const CommandServer::Reply &reply)
{
    linecommand::run<Bus>(commands, bus, line, reply);
}

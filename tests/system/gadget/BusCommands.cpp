// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/system/gadget/BusCommands.h"

#include "emulator/Arguments.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace {

using Words = std::vector<std::string>;

struct Call
{
    Bus &bus;
    GadgetScale &scale;
    Words arguments;
    const CommandServer::Reply &reply;
};

struct Command
{
    std::string_view name;
    std::size_t leastArguments;
    std::size_t mostArguments;
    void (*run)(const Call &call);
};

template <typename Action> void onDevice(const Call &call, Action action)
{
    const std::string name = call.arguments.empty() ? "scale" : call.arguments.front();
    if (name == "scale")
        action(call.bus.scale);
    else if (name == "second")
        action(call.bus.second);
    else if (name == "mouse")
        action(call.bus.mouse);
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
    const std::string &wanted = call.arguments[0];
    if (wanted != "on" && wanted != "off")
        throw std::invalid_argument("on or off, not " + wanted);
    call.scale.setPolls(wanted == "on" ? GadgetScale::Polls::Unanswered
                                       : GadgetScale::Polls::Answered);
    call.reply("ok");
}

void reports(const Call &call)
{
    const Words lines = call.scale.log.lines();
    std::string text = std::to_string(lines.size());
    for (const std::string &line : lines)
        text += '\n' + line;
    call.reply(text);
}

void clearReports(const Call &call)
{
    call.scale.log.clear();
    call.reply("ok");
}

constexpr std::array commands = {
    Command{"plug", 0, 1, plug},
    Command{"unplug", 0, 1, unplug},
    Command{"weight", 1, 1, weight},
    Command{"type", 1, 1, type},
    Command{"silence", 1, 1, silence},
    Command{"reports", 0, 0, reports},
    Command{"clear-reports", 0, 0, clearReports},
};

Words split(const std::string &line)
{
    std::istringstream stream(line);
    Words words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

void dispatch(Bus &bus, Words words, const CommandServer::Reply &reply)
{
    GadgetScale *scale = &bus.scale;
    if (!words.empty() && words.front() == "second") {
        scale = &bus.second;
        words.erase(words.begin());
    }
    if (words.empty())
        throw std::invalid_argument("no command");
    const std::string name = words.front();
    words.erase(words.begin());
    const auto *const found = std::find_if(commands.begin(), commands.end(),
                                           [&](const Command &each) { return each.name == name; });
    if (found == commands.end())
        throw std::invalid_argument("unknown command " + name);
    if (words.size() < found->leastArguments || words.size() > found->mostArguments)
        throw std::invalid_argument("wrong number of arguments to " + name);
    found->run({bus, *scale, std::move(words), reply});
}

} // namespace

void runBusCommand(Bus &bus, const std::string &line, const CommandServer::Reply &reply)
{
    try {
        dispatch(bus, split(line), reply);
    } catch (const std::exception &problem) {
        reply(std::string("error ") + problem.what());
    }
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/CommandServer.h"

#include <algorithm>
#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

// Commands in lines of words, for whatever carries the emulated devices.
namespace linecommand {

using Words = std::vector<std::string>;

template <typename Devices> struct Call
{
    Devices &devices;
    decltype(Devices::scale) &scale; ///< that the command is for
    Words arguments;
    const CommandServer::Reply &reply;
};

template <typename Devices> struct Command
{
    std::string_view name;
    std::size_t leastArguments;
    std::size_t mostArguments;
    std::string_view usage;
    void (*run)(const Call<Devices> &call);
};

enum class Switch { Off, On };

/// "on" or "off"; throws std::invalid_argument.
Switch switchFromText(const std::string &text);
Words split(const std::string &line);
/// Their count, and then each.
void replyLines(const CommandServer::Reply &reply, const Words &lines);

template <typename Devices>
void dispatch(std::span<const Command<Devices>> commands, Devices &devices, Words words,
              const CommandServer::Reply &reply)
{
    auto *scale = &devices.scale;
    if (!words.empty() && words.front() == "second") {
        scale = &devices.second;
        words.erase(words.begin());
    }
    if (words.empty())
        throw std::invalid_argument("no command");
    const std::string name = words.front();
    words.erase(words.begin());
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const auto &each) { return each.name == name; });
    if (found == commands.end())
        throw std::invalid_argument("unknown command " + name);
    if (words.size() < found->leastArguments || words.size() > found->mostArguments)
        throw std::invalid_argument("usage: " + std::string(found->usage));
    found->run({devices, *scale, std::move(words), reply});
}

/// Answers in any case: what goes wrong is answered with "error" and the reason.
template <typename Devices>
void run(std::span<const Command<Devices>> commands, Devices &devices, const std::string &line,
         const CommandServer::Reply &reply)
{
    try {
        dispatch(commands, devices, split(line), reply);
    } catch (const std::exception &problem) {
        reply(std::string("error ") + problem.what());
    }
}

} // namespace linecommand

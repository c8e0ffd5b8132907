// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/Arguments.h"

#include <charconv>
#include <functional>
#include <stdexcept>

namespace {

void parseOption(const std::string &option, const std::function<std::string()> &value,
                 Arguments &arguments)
{
    if (option == "--socket")
        arguments.socketPath = value();
    else if (option == "--type")
        arguments.type = typeFromText(value());
    else if (option == "--capacity")
        arguments.capacity = capacityFromText(value());
    else if (option == "--weight")
        arguments.weight = numberFromText(value());
    else if (option == "--unplugged")
        arguments.atStart = Arguments::AtStart::Unplugged;
    else if (option == "--control-window")
        arguments.window = Arguments::Window::Control;
    else
        throw std::invalid_argument("unknown option " + option);
}

} // namespace

Arguments parseArguments(std::span<char *const> words)
{
    Arguments arguments;
    auto word = words.begin();
    const auto next = [&](const std::string &missing) -> std::string {
        if (word == words.end())
            throw std::invalid_argument(missing);
        return *word++;
    };
    std::string option;
    const auto value = [&] { return next(option + " needs a value"); };
    while ((option = next("no command given")) != "--")
        parseOption(option, value, arguments);
    arguments.command = {next("no command given")};
    arguments.command.insert(arguments.command.end(), word, words.end());
    return arguments;
}

ScaleModel::Type typeFromText(const std::string &text)
{
    if (text == "0")
        return ScaleModel::Type::PackedDecimal;
    if (text == "1")
        return ScaleModel::Type::BinaryTenthOunces;
    throw std::invalid_argument("the type is 0 or 1, not " + text);
}

ScaleModel::Capacity capacityFromText(const std::string &text)
{
    if (text == "ordinary")
        return ScaleModel::Capacity::Ordinary;
    if (text == "high")
        return ScaleModel::Capacity::High;
    throw std::invalid_argument("the capacity is ordinary or high, not " + text);
}

int numberFromText(const std::string &text)
{
    int number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size())
        throw std::invalid_argument("not a whole number: " + text);
    return number;
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/Arguments.h"

#include <charconv>
#include <stdexcept>

namespace {

/// The words that are left to look at.
class WordReader
{
public:
    explicit WordReader(std::span<const char *const> all)
        : words(all)
    {
    }

    bool atEnd() const { return words.empty(); }

    std::string next(const std::string &missing)
    {
        if (words.empty())
            throw std::invalid_argument(missing);
        const std::string word = words.front();
        words = words.subspan(1);
        return word;
    }

private:
    std::span<const char *const> words;
};

void parseOption(const std::string &option, WordReader &reader, Arguments &arguments)
{
    const auto value = [&] { return reader.next(option + " needs a value"); };
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

Arguments parseArguments(std::span<const char *const> words)
{
    Arguments arguments;
    WordReader reader(words);
    for (;;) {
        const std::string word = reader.next("no command given");
        if (word == "--")
            break;
        parseOption(word, reader, arguments);
    }
    arguments.command.push_back(reader.next("no command given"));
    while (!reader.atEnd())
        arguments.command.push_back(reader.next({}));
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

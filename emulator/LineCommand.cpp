// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/LineCommand.h"

#include <sstream>

namespace linecommand {

Switch switchFromText(const std::string &text)
{
    if (text == "on")
        return Switch::On;
    if (text == "off")
        return Switch::Off;
    throw std::invalid_argument("on or off, not " + text);
}

Words split(const std::string &line)
{
    std::istringstream stream(line);
    Words words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

void replyLines(const CommandServer::Reply &reply, const Words &lines)
{
    std::string text = std::to_string(lines.size());
    for (const std::string &line : lines)
        text += '\n' + line;
    reply(text);
}

} // namespace linecommand

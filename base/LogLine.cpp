// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "base/LogLine.h"

#include "base/NumberText.h"

LogLine LogLine::plain(const char *text)
{
    return {.text = text};
}

LogLine LogLine::number(const char *text, std::int64_t first)
{
    return {.text = text, .argument = Argument::Number, .first = first};
}

LogLine LogLine::numbers(const char *text, std::int64_t first, std::int64_t second)
{
    return {.text = text, .argument = Argument::TwoNumbers, .first = first, .second = second};
}

LogLine LogLine::withReal(const char *text, double real)
{
    return {.text = text, .argument = Argument::Real, .real = real};
}

QString LogLine::toString() const
{
    const QString pattern = QString::fromLatin1(text);
    switch (argument) {
    case Argument::None: return pattern;
    case Argument::Number: return pattern.arg(first);
    case Argument::TwoNumbers: return pattern.arg(first).arg(second);
    case Argument::Real: return pattern.arg(fixedText(real, 6));
    }
    return pattern;
}

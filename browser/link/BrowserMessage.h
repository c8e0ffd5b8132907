// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/FillPlan.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <chrono>
#include <cstdint>
#include <optional>
#include <variant>

// What the program and the browser extension say to each other, as JSON; browser/README.md has the
// list.

/// Raised whenever one side could misunderstand the other.
inline constexpr int browserProtocol = 2;

struct BrowserHello
{
    int protocol = 0;
    QString version;
    QString browser; ///< for people
};

/// A document that the extension may write into. Each load of a page is another one.
struct BrowserPage
{
    std::uint32_t id = 0;
    QString host; ///< empty where it is one that cannot be shown as it stands

    bool operator==(const BrowserPage &) const = default;
};

/// What the current tab shows; no page where it is none that the extension may write into.
struct BrowserCurrent
{
    std::optional<BrowserPage> page;
};

/// How long ago one of the browser's windows had the focus last. No time of day: browsers need not
/// agree on it, and it may be set back.
struct BrowserFocus
{
    std::chrono::milliseconds ago{};
};

/// What a plan came to. What the fields hold is not told.
struct FilledFields
{
    int written = 0;
    int changed = 0; ///< of these, the ones that show another number

    bool operator==(const FilledFields &) const = default;
};

/// The answer to one plan.
struct BrowserRan
{
    std::uint32_t id = 0;
    std::optional<FilledFields> fields; ///< none: the page was gone
    QList<int> notes; ///< of the steps that were due; numbers of the plan's notes, ascending
};

/// What the extension wants to know of the weight. Nothing before the first of these.
enum class WeightWish {
    Once,   ///< the latest reading, now
    Follow, ///< each reading that leaves, from now on
    Stop,
};

using BrowserMessage =
    std::variant<BrowserHello, BrowserCurrent, BrowserFocus, BrowserRan, WeightWish>;

/// Nothing where @p json is no message of an extension.
std::optional<BrowserMessage> parseBrowserMessage(const QByteArray &json);

QByteArray browserHelloMessage(const QString &version);
QByteArray browserPlanMessage(std::uint32_t id, std::uint32_t page, const FillPlan &plan);

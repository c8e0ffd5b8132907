// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <variant>

// What the program and the browser extension say to each other, as JSON; browser/README.md has the
// list.

/// Raised whenever one side could misunderstand the other.
inline constexpr int browserProtocol = 1;

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
    QString host;

    bool operator==(const BrowserPage &) const = default;
};

/// What the current tab shows; no page where it is none that the extension may write into.
struct BrowserCurrent
{
    std::optional<BrowserPage> page;
};

/// When one of the browser's windows had the focus last.
struct BrowserFocus
{
    std::int64_t milliseconds = 0; ///< since 1970
};

/// One value as text; nothing where the script failed.
using BrowserResult = std::optional<QString>;

/// The answer to one run.
struct BrowserRan
{
    std::uint32_t id = 0;
    std::optional<QList<BrowserResult>> results; ///< none: the page was gone
};

using BrowserMessage = std::variant<BrowserHello, BrowserCurrent, BrowserFocus, BrowserRan>;

/// Nothing where @p json is no message of an extension.
std::optional<BrowserMessage> parseBrowserMessage(const QByteArray &json);

QByteArray browserHelloMessage(const QString &version);
QByteArray browserRunMessage(std::uint32_t id, std::uint32_t page, const QStringList &texts);

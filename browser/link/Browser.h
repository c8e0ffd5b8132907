// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>
#include <vector>

/// A tab as its browser knows it; it may be closed at any time.
class BrowserTab
{
public:
    virtual ~BrowserTab() = default;
};

class BrowserWindow
{
public:
    virtual ~BrowserWindow() = default;

    /// Null where the window shows none.
    virtual std::shared_ptr<const BrowserTab> currentTab() const = 0;
};

/// The user's browser, as far as the program knows it. Whatever reaches a browser in another way,
/// or stands in for one in a test, replaces this object and nothing above it.
class BrowserApplication
{
public:
    virtual ~BrowserApplication() = default;

    /// The one that had the focus last comes first; empty without a browser.
    virtual std::vector<std::shared_ptr<const BrowserWindow>> windows() const = 0;

    /// Runs @p text in @p tab. The value as text: an empty string as it stands, any text for
    /// another string, as what a field holds is nobody's business; "1" for true, "0" for false;
    /// nothing when the script fails, the page does not answer in time or @p tab is null. An
    /// assignment may be sent without waiting, and then gives nothing.
    virtual std::optional<QString> doJavaScript(const QString &text,
                                                const std::shared_ptr<const BrowserTab> &tab) = 0;

    /// Something that was run through this object has gone on its way to a page.
    virtual bool hasSent() const { return true; }

    /// Runs several questions in this order, with nothing in between; as many values. A browser to
    /// which each way and back costs as much as all of them lets them travel together.
    virtual QList<std::optional<QString>> ask(const QStringList &questions,
                                              const std::shared_ptr<const BrowserTab> &tab);
};

/// Where the program gets its browser from.
class BrowserBridge
{
public:
    BrowserBridge() = default;
    virtual ~BrowserBridge() = default;
    BrowserBridge(const BrowserBridge &) = delete;
    BrowserBridge &operator=(const BrowserBridge &) = delete;

    /// A fresh application object.
    virtual std::unique_ptr<BrowserApplication> application() = 0;
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/FillPlan.h"

#include <QString>
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
    /// nothing when the script fails or @p tab is null.
    virtual std::optional<QString> doJavaScript(const QString &text,
                                                const std::shared_ptr<const BrowserTab> &tab) = 0;

    /// A browser that is too far away to be waited for at each question takes whole plans, and runs
    /// nothing else.
    virtual bool takesPlans() const { return false; }
    /// Has @p plan done some time soon, after those that were posted before it in the same turn of
    /// the event loop, and in one go with them. A page that has not answered yet gets the latest
    /// only. Never waits.
    virtual void post(const FillPlan &, const std::shared_ptr<const BrowserTab> &) {}

    /// Something that was run or posted through this object has gone on its way to a page.
    virtual bool hasSent() const { return true; }
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

    /// What a page has not been sent so far, because it is busy, it is not sent any more.
    virtual void forgetWaiting() {}
    /// The same of what was meant for that carrier's page alone, and what stands in the carrier's
    /// page is not looked after any more.
    /// @param carrier as FillPlan has it
    virtual void stopFilling(const QString &) {}
};

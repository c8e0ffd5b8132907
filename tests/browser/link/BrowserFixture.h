// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/BrowserLink.h"
#include "tests/browser/link/BrowserPeer.h"

#include <QCoreApplication>
#include <QList>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

inline const QByteArray hello = R"({"hello":{"protocol":2,"version":"0.1.0","browser":"test"}})";
inline const QString weightBox = QStringLiteral("document.getElementsByName('weight')[0].value");
inline const QByteArray uspsPage = R"({"current":{"page":1,"host":"www.usps.com"}})";

inline const QString assignment = weightBox + QStringLiteral("=1");

/// Milliseconds that a wait may take longer than it is meant to, on a busy machine.
inline constexpr int lateness = 100;

inline std::shared_ptr<const BrowserTab> currentTab(const BrowserApplication &application)
{
    const auto windows = application.windows();
    return windows.empty() ? nullptr : windows.front()->currentTab();
}

/// A link that listens in a folder of its own. Everything starts anew with each of these.
struct BrowserFixture
{
    QString path() const { return folder.filePath(QStringLiteral("browser.socket")); }

    /// A browser that has introduced itself, and what it then says.
    std::unique_ptr<BrowserPeer> attachedPeer(const QList<QByteArray> &messages = {uspsPage})
    {
        auto peer = std::make_unique<BrowserPeer>(path());
        QCoreApplication::processEvents();
        peer->receive();
        peer->send(hello);
        for (const QByteArray &message : messages)
            peer->send(message);
        return peer;
    }

    /// To the current tab of the browser that is in front, in the reading under way.
    bool post(const FillPlan &plan)
    {
        const auto application = link.application();
        application->post(plan, currentTab(*application));
        return application->hasSent();
    }

    /// As a reading of its own, which writes @p text so many times.
    bool fill(const QString &text, int times = 1)
    {
        const bool isSent = post({QList<FillStep>(times, {text})});
        QCoreApplication::processEvents();
        return isSent;
    }

    void waitForStatus(const char *text)
    {
        QTRY_COMPARE(link.statusText(), QString::fromLatin1(text));
    }

    QTemporaryDir folder;
    BrowserLink link;
    bool listening = link.listenAt(path());
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/UnseenSource.h"

#include "app/Application.h"
#include "console/CommandLine.h"
#include "console/ReadingFeed.h"
#include "console/SingleInstance.h"
#include "console/SingleInstanceRequest.h"

#include <QLoggingCategory>
#include <QProcess>
#include <chrono>

using namespace std::chrono_literals;

namespace {

/// Without followers. The first needs a moment to come.
constexpr auto patience = 2000ms;

} // namespace

UnseenSource::UnseenSource(Application &application, SingleInstance &instance)
    : m_application(application)
    , m_instance(instance)
{
    m_end.setInterval(patience);
    m_end.setSingleShot(true);
    QObject::connect(&m_end, &QTimer::timeout, &application, [] { Application::exit(); });
}

UnseenSource::~UnseenSource() = default;

void UnseenSource::start(const QString &infoFile)
{
    QStringList arguments{CommandLine::sourceOption};
    if (!infoFile.isEmpty())
        arguments += {QStringLiteral("--info"), infoFile};
    QProcess source;
    source.setProgram(QCoreApplication::applicationFilePath());
    source.setArguments(arguments);
    // Nobody who reads from the follower's pipe must wait for another process to let go of it.
    source.setStandardInputFile(QProcess::nullDevice());
    source.setStandardOutputFile(QProcess::nullDevice());
    source.setStandardErrorFile(QProcess::nullDevice());
    source.startDetached();
}

int UnseenSource::run(const CommandLine &line)
{
    QLoggingCategory::setFilterRules(QStringLiteral("postalscale*=false"));
    if (m_instance.claim(readingRequest()).outcome != SingleInstance::Claim::Outcome::Ours)
        return 0;
    m_application.launchUnseen(line.infoFile);
    m_feed = std::make_unique<ReadingFeed>(*m_application.delegate());
    QObject::connect(m_feed.get(), &ReadingFeed::followersChanged, m_feed.get(), [this] {
        if (m_feed->hasFollowers())
            m_end.stop();
        else
            m_end.start();
    });
    serve();
    m_end.start();
    return Application::exec();
}

void UnseenSource::serve()
{
    const auto answer = [this](const QJsonObject &request) {
        switch (requestOf(request)) {
        case InstanceRequest::Reading: return m_application.delegate()->readingReport().toJson();
        case InstanceRequest::Raise:
            QTimer::singleShot(0, [] { Application::exit(); });
            return yieldAnswer();
        // Those that there is a place for are the feed's.
        case InstanceRequest::Follow: return tooManyAnswer();
        // What a window has, and this has not.
        case InstanceRequest::Situation:
        case InstanceRequest::Operate:
        case InstanceRequest::Unknown: break;
        }
        return QJsonObject();
    };
    m_instance.serve(answer, [this](const QJsonObject &request, LocalSocket &peer) {
        return m_feed->adopt(request, peer);
    });
}

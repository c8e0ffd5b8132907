// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "session/LastWords.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QThread>
#include <QtGlobal>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <utility>

namespace {

/// Of the toolkit's Wayland plugin. It calls _exit() right after it, where nobody is asked any
/// more.
const QLatin1String lostCompositor("The Wayland connection ");

/// It may wait for a scale's answer just now, for two seconds.
constexpr std::chrono::milliseconds mainThreadPatience{3000};

QtMessageHandler nextHandler = nullptr;

/// Never destroyed: it is needed at the very end.
std::function<void()> &lastWords()
{
    static auto *words = new std::function<void()>;
    return *words;
}

void sayLastWords()
{
    if (const auto words = std::exchange(lastWords(), {}))
        words();
}

/// The toolkit's own thread, which reads from the compositor, is held meanwhile.
void haveMainThreadSayThem(QCoreApplication &application)
{
    const auto said = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(
        &application,
        [said] {
            sayLastWords();
            said->release();
        },
        Qt::QueuedConnection);
    said->tryAcquire(1, mainThreadPatience.count());
}

void hear(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    nextHandler(type, context, text);
    QCoreApplication *application = QCoreApplication::instance();
    if (type != QtWarningMsg || !text.startsWith(lostCompositor) || application == nullptr)
        return;
    if (QThread::currentThread() == application->thread())
        sayLastWords();
    else
        haveMainThreadSayThem(*application);
}

} // namespace

LastWords::LastWords(std::function<void()> words)
{
    lastWords() = std::move(words);
    // Without an X server the toolkit calls exit() from within its event loop.
    static const bool registered = std::atexit(sayLastWords) == 0;
    Q_UNUSED(registered)
    // Known before any thread is heard.
    nextHandler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(hear);
}

LastWords::~LastWords()
{
    qInstallMessageHandler(nextHandler);
    lastWords() = {};
}

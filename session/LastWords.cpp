// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "session/LastWords.h"

#include <QCoreApplication>
#include <QThread>
#include <QtGlobal>
#include <cstdlib>
#include <utility>

namespace {

/// Of the toolkit's Wayland plugin. It calls _exit() right after it, where nobody is asked any
/// more.
const QLatin1String lostCompositor("The Wayland connection ");

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

void hear(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    nextHandler(type, context, text);
    const QCoreApplication *application = QCoreApplication::instance();
    if (type == QtWarningMsg && text.startsWith(lostCompositor) && application != nullptr &&
        QThread::currentThread() == application->thread())
        sayLastWords();
}

} // namespace

LastWords::LastWords(std::function<void()> words)
{
    lastWords() = std::move(words);
    // Without an X server the toolkit calls exit() from within its event loop.
    static const bool registered = std::atexit(sayLastWords) == 0;
    Q_UNUSED(registered)
    nextHandler = qInstallMessageHandler(hear);
}

LastWords::~LastWords()
{
    qInstallMessageHandler(nextHandler);
    lastWords() = {};
}

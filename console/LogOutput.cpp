// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/LogOutput.h"

#include "base/Log.h"
#include "base/RegularFile.h"
#include "scale/traffic/RecordedHidDevices.h"

#include <QElapsedTimer>
#include <QFile>
#include <cstring>

namespace {

struct Sinks
{
    QtMessageHandler standardError = nullptr;
    QFile file;
    RecordedHidDevices *record = nullptr;
    QElapsedTimer sinceStart;
    bool tellsAll = false; ///< to standard error
};

Sinks &sinks()
{
    static Sinks all;
    return all;
}

bool isOurs(const QMessageLogContext &context)
{
    return context.category != nullptr &&
           (std::strcmp(context.category, systemLog().categoryName()) == 0 ||
            std::strcmp(context.category, ioLog().categoryName()) == 0);
}

void writeToFile(const QString &text)
{
    QFile &file = sinks().file;
    const auto milliseconds = sinks().sinceStart.elapsed();
    const QByteArray line = QStringLiteral("%1.%2 %3\n")
                                .arg(milliseconds / 1000)
                                .arg(milliseconds % 1000, 3, 10, QLatin1Char('0'))
                                .arg(text)
                                .toUtf8();
    QString reason;
    if (appendWhole(file, line, &reason))
        return;
    // A message of the toolkit's would be one within another, and lose its category.
    sinks().standardError(QtWarningMsg,
                          QMessageLogContext(nullptr, 0, nullptr, systemLog().categoryName()),
                          QStringLiteral("The log ends here: %1").arg(reason));
}

void distribute(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    Sinks &all = sinks();
    if (!isOurs(context)) {
        all.standardError(type, context, text);
        return;
    }
    if (all.file.isOpen())
        writeToFile(text);
    const bool isWarning = type != QtInfoMsg;
    // The bytes are in the record as they are.
    if (all.record != nullptr && !isWarning &&
        std::strcmp(context.category, systemLog().categoryName()) == 0)
        all.record->remark(text);
    if (isWarning || all.tellsAll)
        all.standardError(type, context, text);
}

/// What the environment says of the categories comes after it, and wins.
void setInformative(bool informative)
{
    QLoggingCategory::setFilterRules(informative ? QString()
                                                 : QStringLiteral("postalscale*.info=false"));
}

} // namespace

LogOutput::LogOutput()
{
    Sinks &all = sinks();
    all.sinceStart.start();
    all.tellsAll = qEnvironmentVariable("QT_LOGGING_RULES")
                       .contains(QLatin1String(systemLog().categoryName()));
    // Made before anything is registered for the end of the process, it outlives that.
    ioLog();
    all.standardError = qInstallMessageHandler(distribute);
    setInformative(false);
}

LogOutput::~LogOutput()
{
    Sinks &all = sinks();
    qInstallMessageHandler(all.standardError);
    all.file.close();
    all.record = nullptr;
}

bool LogOutput::writeTo(const QString &name, QString *trouble)
{
    if (!openEmptied(sinks().file, name, trouble))
        return false;
    setInformative(true);
    return true;
}

void LogOutput::annotate(RecordedHidDevices &record)
{
    sinks().record = &record;
    setInformative(true);
}

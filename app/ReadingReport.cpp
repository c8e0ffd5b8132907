// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/ReadingReport.h"

#include <QJsonValue>
#include <algorithm>
#include <array>
#include <cmath>

namespace {

struct StateFacts
{
    ReportState state = ReportState::Waiting;
    int exitStatus = 0;
    QLatin1String name;
    QLatin1String words; ///< empty where the panel's are told
};

const std::array<StateFacts, 11> stateFacts{{
    {ReportState::Weight, 0, QLatin1String("weight"), {}},
    {ReportState::Hold, 0, QLatin1String("hold"), {}},
    {ReportState::NoScale, 1, QLatin1String("no-scale"), QLatin1String("No scale connected")},
    {ReportState::Overload, 2, QLatin1String("overload"),
     QLatin1String("Overload: there is too much on the pan")},
    {ReportState::UnderLoad, 2, QLatin1String("under-load"),
     QLatin1String("Under load: the pan is missing or is being lifted")},
    {ReportState::Off, 2, QLatin1String("off"), QLatin1String("The scale is switched off")},
    {ReportState::NotOpened, 2, QLatin1String("not-opened"),
     QLatin1String("The scale could not be opened; unplug it and plug it in again")},
    {ReportState::NoAnswer, 2, QLatin1String("no-answer"),
     QLatin1String("The scale does not answer; unplug it and plug it in again")},
    {ReportState::NotReady, 2, QLatin1String("not-ready"),
     QLatin1String("The scale asks for care: it has a fault, or has to be calibrated or set to "
                   "zero")},
    {ReportState::NoPermission, 3, QLatin1String("no-permission"),
     QLatin1String("No permission to open the scale; postal-scale --doctor tells what helps")},
    {ReportState::Waiting, 2, QLatin1String("waiting"),
     QLatin1String("The scale has not sent a weight yet")},
}};

const StateFacts &factsOf(ReportState state)
{
    return *std::find_if(stateFacts.begin(), stateFacts.end(),
                         [&](const StateFacts &facts) { return facts.state == state; });
}

ReportState stateNamed(const QString &name)
{
    const auto found = std::find_if(stateFacts.begin(), stateFacts.end(),
                                    [&](const StateFacts &facts) { return facts.name == name; });
    return found == stateFacts.end() ? ReportState::Waiting : found->state;
}

QJsonValue numberOrNull(const std::optional<double> &number)
{
    return number ? QJsonValue(*number) : QJsonValue();
}

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

std::optional<double> numberFrom(const QJsonValue &value)
{
    return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

} // namespace

QJsonObject ReadingReport::toJson() const
{
    QJsonObject object{
        {QStringLiteral("format"), jsonFormat},
        {QStringLiteral("state"), factsOf(state).name},
        {QStringLiteral("text"), words},
        {QStringLiteral("weight"), QJsonValue()},
        {QStringLiteral("unit"), QJsonValue()},
        {QStringLiteral("sign"), QJsonValue()},
        {QStringLiteral("grams"), numberOrNull(grams)},
        {QStringLiteral("model"), textOrNull(model)},
        {QStringLiteral("settled"), settled ? QJsonValue(*settled) : QJsonValue()},
        {QStringLiteral("settledSince"), textOrNull(settledSince)},
        {QStringLiteral("parcel"), parcel ? QJsonValue(*parcel) : QJsonValue()},
        {QStringLiteral("age"), numberOrNull(age)},
        {QStringLiteral("advice"), textOrNull(advice)},
        {QStringLiteral("export"), textOrNull(exported)},
        {QStringLiteral("exportUnit"), textOrNull(exportUnit)},
        {QStringLiteral("leaves"), textOrNull(leaves)},
    };
    if (!device.isEmpty())
        object.insert(QStringLiteral("device"), device);
    if (shown) {
        object.insert(QStringLiteral("weight"), shown->weight);
        object.insert(QStringLiteral("unit"), textOrNull(shown->unit));
        object.insert(QStringLiteral("sign"),
                      std::signbit(shown->weight) ? QStringLiteral("-") : QStringLiteral("+"));
    }
    return object;
}

ReadingReport ReadingReport::fromJson(const QJsonObject &object)
{
    ReadingReport report{.state = stateNamed(object.value(QLatin1String("state")).toString()),
                         .words = object.value(QLatin1String("text")).toString(),
                         .shown = std::nullopt,
                         .grams = std::nullopt,
                         .model = object.value(QLatin1String("model")).toString(),
                         .settled = std::nullopt,
                         .settledSince = object.value(QLatin1String("settledSince")).toString(),
                         .parcel = std::nullopt,
                         .age = numberFrom(object.value(QLatin1String("age"))),
                         .advice = object.value(QLatin1String("advice")).toString(),
                         .exported = object.value(QLatin1String("export")).toString(),
                         .exportUnit = object.value(QLatin1String("exportUnit")).toString(),
                         .leaves = object.value(QLatin1String("leaves")).toString(),
                         .device = object.value(QLatin1String("device")).toString()};
    const QJsonValue settled = object.value(QLatin1String("settled"));
    if (settled.isBool())
        report.settled = settled.toBool();
    if (const QJsonValue parcel = object.value(QLatin1String("parcel")); parcel.isDouble())
        report.parcel = parcel.toInt();
    const QJsonValue weight = object.value(QLatin1String("weight"));
    if (weight.isDouble())
        report.shown = {weight.toDouble(), object.value(QLatin1String("unit")).toString()};
    report.grams = numberFrom(object.value(QLatin1String("grams")));
    return report;
}

ReadingReport ReadingReport::of(ReportState state)
{
    ReadingReport report;
    report.state = state;
    report.words = factsOf(state).words;
    return report;
}

ReadingReport ReadingReport::ofHangingWindow()
{
    ReadingReport report = of(ReportState::NoAnswer);
    report.words = QStringLiteral("The window that is running does not answer; "
                                  "postal-scale --doctor tells what helps");
    return report;
}

ReadingReport ReadingReport::ofMissingSource()
{
    ReadingReport report = of(ReportState::NoAnswer);
    report.words = QStringLiteral("The scale cannot be read at present; "
                                  "postal-scale --doctor tells what helps");
    return report;
}

bool ReadingReport::hasReading() const
{
    return exitStatus() == 0;
}

int ReadingReport::exitStatus() const
{
    return factsOf(state).exitStatus;
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "lcd/ShownWeight.h"

#include <QJsonObject>
#include <QString>
#include <optional>

/// How it stands with the scale.
enum class ReportState {
    Weight,
    Hold, ///< a weight, of the moment when it was held
    NoScale,
    Overload,
    UnderLoad,
    Off,
    NotOpened,
    NoAnswer,
    NotReady, ///< the scale says that it cannot weigh as it is
    NoPermission,
    Waiting, ///< connected, and nothing certain has come yet
};

/// One reading as it leaves the program for scripts.
struct ReadingReport
{
    ReportState state = ReportState::Waiting;
    QString words; ///< the panel read out, or why there is no reading
    std::optional<ShownWeight> shown;
    std::optional<double>
        grams; ///< a binary scale's are rounded to 100; nothing of what is no weight
    QString model;
    std::optional<bool> settled; ///< of a reading alone
    QString settledSince;        ///< ISO 8601; empty unless it is settled
    std::optional<int> parcel;   ///< of a settled reading: which parcel since the start, from 1
    std::optional<double> age;   ///< in seconds; nothing up to one second, but for signs of life
    QString advice;              ///< what is to be done about the reading
    QString exported;            ///< the export text
    QString exportUnit;          ///< of it
    QString leaves;              ///< what else is to be said of it
    QString device;              ///< what the scale says of itself; empty where a model is chosen

    /// Of the object below. Keys may be added; a change of what there is raises it.
    static constexpr int jsonFormat = 1;

    QJsonObject toJson() const;
    static ReadingReport fromJson(const QJsonObject &object);
    /// Without a reading.
    static ReadingReport of(ReportState state);
    /// There is a window, but it does not answer; the scale is not to blame.
    static ReadingReport ofHangingWindow();
    /// There is nobody who could read the scale.
    static ReadingReport ofMissingSource();

    bool hasReading() const;
    /// 0 reading, 1 no scale, 2 not readable, 3 no permission.
    int exitStatus() const;

    bool operator==(const ReadingReport &) const = default;
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/PostalScaleAppDelegate.h"
#include "app/ReadingReport.h"
#include "scale/ScaleCodes.h"
#include "scale/pointofsale/ScaleReading.h"

/// The delegate, that also keeps in mind what became of the latest readings: a panel alone does
/// not tell whether what it shows is still so.
class ReadingReportDelegate : public PostalScaleAppDelegate
{
    Q_OBJECT

public:
    ReadingReportDelegate(const BundleInformation &information, Settings &settings,
                          BrowserBridge &browsers);

    /// Waiting until the panel has been read out, shortly after each reading.
    ReadingReport readingReport() const;
    /// The same for those who ask at each reading: the machine's devices are not listed for it.
    ReadingReport followedReport() const;
    /// The same with the age of a reading, however young.
    ReadingReport signOfLife() const;

    void setStatusString(bool connected) override;
    void Draw5Digit(qint64 nValue) override;
    void Draw5DigitOverload() override;
    void clearAll() override;
    void takeReading(const ScaleReading &reading) override;

signals:
    /// The report may be another one now.
    void reportDue();

private:
    /// What a reading has drawn. Under load the scale has the panel stay as it was.
    enum class Drawn { Nothing, Weight, Blank, Overload };

    ReadingReport reportOf(ReportState state) const;
    void nameScale(ReadingReport &report) const;
    ReportState state() const;
    ReportState stateOfReadings() const;
    ReportState statedState() const;

    std::optional<ScaleReading> m_stated; ///< of a scale that tells number and unit itself
    Drawn m_latest = Drawn::Nothing;
    Drawn m_beforeLatest = Drawn::Nothing;
    int m_readings = 0; ///< since the scale was attached
    int m_typeBeforeLatest = scaletype::packedDecimal;
    bool m_awaitsAnnouncement = false; ///< the panel is read out shortly after each reading
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HidDevices.h"
#include "scale/ScaleLink.h"
#include "scale/pointofsale/ScaleSearch.h"
#include "scale/pointofsale/ScaleStatement.h"

#include <QElapsedTimer>
#include <functional>

class ScaleDelegate;

/// Listens to a scale of the class, which sends by itself. Nothing is sent to it but the wish to
/// take what is on its pan for zero, and only for that its node is opened for writing. Lives on the
/// main thread; nothing here waits.
class PointOfSaleLink : public ScaleLink
{
public:
    /// @param roundsUp whether the export text is to be rounded up to a whole unit
    explicit PointOfSaleLink(std::function<bool()> roundsUp);
    ~PointOfSaleLink() override;

    /// Opens it, or tells the interface why that cannot be done; either way it is the link's from
    /// now on.
    void attach(const FoundScale &scale);
    /// Once more, where it could not be opened.
    void retry();
    /// The scale is gone, or another one comes first.
    void detach();
    bool isAttached() const { return m_scale.has_value(); }
    /// Of the scale's node; empty without one.
    QString systemPath() const;

    /// A scale that sends nothing for so long is a silent one. Some send every few seconds.
    static constexpr std::chrono::milliseconds patience{10000};

    bool takeReading() override;
    bool isReadingOpen() const override { return m_isSilent; }
    bool continueReading() override { return takeReading(); }
    QString silenceText() const override;
    bool reopenHandle() override;

    ScaleAbilities abilities() const override;
    void chooseUnit(int) override {}
    void setHeld(bool held) override;
    bool isHolding() const override { return m_isHeld; }
    void pressTare() override;
    void releaseTare() override {}
    bool isOn() const override { return false; }
    WebStrings webTexts() const override { return m_texts; }
    LeavingForm leavingForm() const override { return m_form; }

private:
    static ScaleDelegate *delegate();
    void open();
    QString openTrouble() const;
    std::optional<ScaleStatement> newestStatement();
    std::optional<ScaleStatement> statementOf(std::span<const std::uint8_t> report);
    bool take(const ScaleStatement &statement);

    HidDevices &m_devices;
    std::function<bool()> m_roundsUp;
    std::optional<FoundScale> m_scale;
    std::unique_ptr<HidConnection> m_connection; ///< null while it cannot be opened
    bool m_hasPassedFirst = false;               ///< the report that may be of another time
    bool m_isSilent = false;
    QElapsedTimer m_sinceReport;
    WeightUnit m_unit = WeightUnit::Unknown; ///< named last
    std::optional<ScaleStatement> m_latest;
    bool m_isHeld = false;
    WebStrings m_texts;
    LeavingForm m_form;
};

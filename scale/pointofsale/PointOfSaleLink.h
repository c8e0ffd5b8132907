// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HidDevices.h"
#include "scale/ScaleLink.h"
#include "scale/pointofsale/ReportRhythm.h"
#include "scale/pointofsale/ScaleSearch.h"
#include "scale/pointofsale/ScaleStatement.h"

#include <QElapsedTimer>
#include <functional>

class ScaleDelegate;
struct ScaleReading;

/// Listens to a scale of the class, which sends by itself. Nothing is sent to it but the wish to
/// take what is on its pan for zero, and only for that its node is opened for writing. Lives on the
/// main thread; nothing here waits.
class PointOfSaleLink : public ScaleLink
{
public:
    /// @param roundsUp whether the export text is to be rounded up to a whole unit
    explicit PointOfSaleLink(std::function<bool()> roundsUp);
    ~PointOfSaleLink() override;

    /// It is the link's from now on, opened or not; the interface is told why not. One that is not
    /// open is tried again while readings are taken.
    void attach(const FoundScale &scale, OpenedScale opened);
    /// Once more, where it is not open and may be by now.
    void retry();
    /// The scale is gone, or another one comes first.
    void detach();
    bool isAttached() const { return m_scale.has_value(); }
    bool isOpen() const { return m_connection != nullptr; }
    /// Why it is not open; empty while nothing is known against it.
    QString trouble() const { return m_trouble; }
    /// Something that is to be told while this scale works, as long as it is attached; empty:
    /// nothing more.
    void tellBesides(const QString &trouble);
    /// Of the scale's node; empty without one.
    QString systemPath() const;

    bool takeReading() override;
    bool isReadingOpen() const override { return m_isSilent; }
    bool continueReading() override { return takeReading(); }
    QString silenceText() const override;
    bool reopenHandle() override;

    ScaleAbilities abilities() const override;
    void readAgain() override { m_isDue = true; }
    void chooseUnit(int tag) override;
    /// What is not confirmed cannot be held.
    void setHeld(bool held) override;
    bool isHolding() const override { return m_held.has_value(); }
    void pressTare() override;
    void releaseTare() override {}
    bool isOn() const override { return false; }
    WebStrings webTexts() const override { return m_texts; }
    LeavingForm leavingForm() const override { return m_form; }

private:
    static ScaleDelegate *delegate();
    void use(OpenedScale opened);
    void tellTrouble() const;
    void forgetReadings();
    void giveConnectionUp();
    /// Whether a statement has come.
    bool listen();
    bool takeReport(std::span<const std::uint8_t> report);
    bool take(bool isRepeated);
    ScaleReading reading(bool isRepeated) const;
    bool makeTexts(const ScaleReading &reading);
    bool canTare() const;

    HidDevices &m_devices;
    std::function<bool()> m_roundsUp;
    std::optional<FoundScale> m_scale;
    std::unique_ptr<HidConnection> m_connection; ///< null while it cannot be opened or read
    QElapsedTimer m_sinceListen;                 ///< or since it was opened
    QElapsedTimer m_sinceOpen; ///< since it was tried last; invalid where that was not permitted
    QString m_trouble;
    QString m_besides;
    int m_failures = 0; ///< in a row, of reads, and of opens after them
    ReportRhythm m_rhythm;
    bool m_isSilent = false;
    WeightUnit m_unit = WeightUnit::Unknown; ///< named last
    bool m_asPoundsAndOunces = false;        ///< what is stated in ounces
    std::optional<ScaleStatement> m_newest;  ///< since it was opened
    std::optional<ScaleStatement> m_held;
    bool m_isDue = false;        ///< the newest one is to be taken again
    bool m_wasConfirmed = false; ///< when it was taken last
    bool m_hasTareFailed = false;
    WebStrings m_texts;
    LeavingForm m_form;
};

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "parcel/FieldWeight.h"
#include "parcel/ReadingNotes.h"
#include "parcel/RecentWeights.h"
#include "parcel/SettledWeight.h"
#include "scale/ScaleDelegate.h"

#include <QElapsedTimer>
#include <chrono>
#include <optional>

class ExportState;
class HIDManager;
class Panel;
class QLabel;
class ScaleSession;
struct ScaleReading;

/// Stands between the readings and what leaves of them: it feeds the rule with what the window and
/// the link know, and says of each destination whether the present reading's texts may go there.
/// Nothing here wakes the program up: time is looked at when there is a reading, or somebody asks.
class ParcelWatch
{
public:
    /// All must outlive the object.
    struct Surroundings
    {
        const HIDManager &link;
        const ScaleSession &session;
        const ExportState &state;
        const Panel &panel;
        const QLabel &exportLabel;
    };
    explicit ParcelWatch(const Surroundings &surroundings);

    /// Whether what has not settled stays here.
    void setSettledOnly(bool settledOnly) { m_settledOnly = settledOnly; }

    /// In each reading, before its texts leave.
    void takeReport(const WeightReport &report, ReadOutcome outcome);
    /// The same of a scale that tells number and unit itself.
    void takeReading(const ScaleReading &reading);
    /// Whether a report is waited for that has not come in time. A weight that was settling settles
    /// anew; one that has left does not leave again.
    void setSilent(bool silent);
    /// The scale was unplugged, or another one was plugged in.
    void loseScale();

    /// What decides on the texts, or on where they go, is not as it was at the latest reading, and
    /// what lies on the pan is to be read again for it.
    bool hasNewChoices() const;

    /// Whatever its age, the latest reading is not of now: the machine goes to sleep.
    void markOld() { m_isMarkedOld = true; }
    /// For so long the machine has slept since, which no clock of a process counts.
    void noteSlept(std::chrono::milliseconds time) { m_slept += time; }

    /// Always, unless only settled weights leave. For the texts of the reading under way.
    bool lets(Destination destination) const;

    /// The same for a field that follows the scale, on whatever page: it gets any reading that
    /// tells.
    bool letsReading() const { return !m_settledOnly || m_leaves; }
    /// The latest reading, for such a field.
    BrowserWeight fieldWeight() const;

    /// Whether the weight on the pan may go there when a person asks for it.
    bool mayLeaveNow(Destination destination) const;

    /// What the present reading's texts were put onto, or are being put into.
    void noteCopied();
    void noteFill();
    /// Whether the fill has gone on its way.
    void noteSent(bool sent);
    /// A page has taken what it was last filled with. @param carrier as a person names it
    void notePageFilled(const QString &carrier);
    /// Once the texts of the reading are made; a parcel that has just settled is remembered.
    void endReport();

    const RecentWeights &recentWeights() const { return m_recent; }
    ReadingNotes notes() const;

private:
    /// All that decides on the texts of a report, apart from the report.
    struct Choice
    {
        int unitTag = 0;
        int pointUnit = 0;
        QString model;
        bool roundsUp = false;

        bool operator==(const Choice &) const = default;
    };
    struct Places
    {
        bool clipboard = false;
        bool usps = false;
        bool ups = false;
        bool fedex = false;

        bool hasMoreThan(const Places &before) const;
    };

    void beginReading();
    void noteWeighed(bool isWeighed);
    void settle(SettledWeight::Leaves leaves);
    void countParcel();
    Choice choice() const;
    Places places() const;
    void noticeChoices();
    void settleStated(const ScaleReading &reading, bool hasTexts);
    bool isHolding() const;
    /// Whatever its age: the scale would have said if it were no longer so.
    bool isStillValid() const;
    LeavingTexts texts() const;
    /// What the panel shows; nothing where that is no weight.
    std::optional<ShownWeight> shown() const;
    std::optional<RecentWeight> presentParcel() const;
    /// The newest of the recent weights lies on the pan, as far as the reports tell.
    bool hasPresentParcel() const;

    Surroundings m_around;
    SettledWeight m_weight;
    RecentWeights m_recent;
    bool m_settledOnly = false;

    Choice m_choice;
    Places m_places;
    bool m_wasHolding = false;

    bool m_leaves = false;         ///< the present reading has just settled
    bool m_isCopied = false;       ///< the present reading's text is on the clipboard
    bool m_isRemembered = false;   ///< the weight that settled last
    bool m_isSent = false;         ///< a fill of the present reading
    bool m_fillIsOfLatest = false; ///< what pages were last filled with is the newest parcel
    bool m_isSilent = false;
    bool m_canTare = true;
    bool m_isConfirmed = true;    ///< the latest reading
    bool m_sendsByItself = false; ///< the scale: what it has said is so until it says more
    bool m_isRead = false;        ///< since the scale was plugged in
    PanReading m_pan = PanReading::None;
    double m_grams = 0;
    std::optional<ScaleStatement> m_statement; ///< of the latest reading; none: no weight
    QDateTime m_settledSince;
    int m_parcels = 0; ///< settled weights so far
    QElapsedTimer m_sinceWeighed;
    std::chrono::milliseconds m_slept{}; ///< since then
    bool m_isMarkedOld = false;
};

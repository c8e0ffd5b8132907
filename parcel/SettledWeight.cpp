// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/SettledWeight.h"

namespace {

bool isOverload(const WeightReport &report)
{
    const int code = report.status & ~reportstatus::negativeBit;
    return code == reportstatus::overload || code == reportstatus::binaryOverload;
}

} // namespace

bool isWeightCode(int code)
{
    using namespace reportstatus;
    switch (code) {
    case metric:
    case ounces:
    case poundsOuncesA:
    case poundsOuncesB:
    case binaryKilograms:
    case binaryPounds:
    case binaryPoundsOunces: return true;
    default: return false;
    }
}

bool isWeight(const WeightReport &report)
{
    return isWeightCode(report.status) && (report.low != 0 || report.high != 0);
}

bool isStatedWeight(const ScaleStatement &statement)
{
    const bool isAboveZero =
        statement.status == ScaleStatus::Stable || statement.status == ScaleStatus::InMotion;
    return isAboveZero && !statement.number.isNegative && !statement.number.isZero() &&
           statement.unit != WeightUnit::Unknown;
}

SettledWeight::Leaves SettledWeight::take(const WeightReport &report)
{
    if (report != m_latest) {
        m_latest = report;
        m_equalReports = 0;
        m_hasLeft = false;
    }
    if (!isWeight(report)) {
        m_equalReports = 0;
        m_state = isOverload(report) ? State::Settling : State::Empty;
        return Leaves::No;
    }
    if (m_equalReports < settledReports)
        ++m_equalReports;
    m_state = m_equalReports < settledReports ? State::Settling : State::Settled;
    return leaveOnce();
}

SettledWeight::Leaves SettledWeight::takeStated(const ScaleStatement &statement, bool hasTexts)
{
    // Whether it moves is no part of a weight: one that is touched and comes to rest as it was
    // has not changed.
    const bool isSame = isStatedWeight(statement) == isStatedWeight(m_latestStatement) &&
                        statement.number == m_latestStatement.number &&
                        statement.unit == m_latestStatement.unit;
    if (!isSame) {
        m_hasLeft = false;
        m_hasSettled = false;
    }
    m_hasJustSettled = false;
    m_latestStatement = statement;
    if (!isStatedWeight(statement)) {
        m_state = statement.status == ScaleStatus::OverLimit ? State::Settling : State::Empty;
        return Leaves::No;
    }
    m_state = statement.isSettled() ? State::Settled : State::Settling;
    m_hasJustSettled = statement.isSettled() && !m_hasSettled;
    m_hasSettled = m_hasSettled || statement.isSettled();
    return hasTexts ? leaveOnce() : Leaves::No;
}

SettledWeight::Leaves SettledWeight::leaveOnce()
{
    if (m_state != State::Settled || m_hasLeft)
        return Leaves::No;
    m_hasLeft = true;
    return Leaves::Yes;
}

void SettledWeight::missReport()
{
    startAnew();
}

void SettledWeight::changeUnit()
{
    startAnew();
    m_hasLeft = false;
    m_hasSettled = false;
}

void SettledWeight::changeHold()
{
    startAnew();
}

void SettledWeight::loseScale()
{
    *this = {};
}

void SettledWeight::startAnew()
{
    m_equalReports = 0;
    if (m_state == State::Settled)
        m_state = State::Settling;
}

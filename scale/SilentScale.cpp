// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// A reading whose report does not come in time.

#include "scale/HIDManager.h"

using namespace std::chrono_literals;

bool HIDManager::takeReading()
{
    get_device_rawdata();
    return !isReadingOpen();
}

QString HIDManager::silenceText() const
{
    return QStringLiteral("The scale does not answer. It is asked again every two seconds. "
                          "If it stays silent, unplug it and plug it in again.");
}

void HIDManager::openReading()
{
    m_open.emplace();
    m_open->before = units();
    m_open->form = chosenForm();
    pollAnew();
}

void HIDManager::pollAnew()
{
    sendPoll();
    m_open->sincePoll.start();
    m_open->isCommanded = false;
    ++m_open->unansweredPolls;
}

bool HIDManager::continueReading()
{
    if (m_open)
        followPermission();
    if (!m_open)
        return false;
    const auto input = readReport(0ms);
    if (!input) {
        if (m_open->sincePoll.elapsed() >= answerPatience.count())
            pollAnew();
        return false;
    }
    const OpenReading open = *m_open;
    const CommandByte commanded = m_scaleCommand;
    m_owedReports += open.unansweredPolls - 1;
    m_open.reset();
    // The report was asked for before anything was chosen, and what was chosen is newer than it.
    if (open.chosen)
        setUnits(open.before);
    takeInput(*input, open.form);
    if (open.chosen)
        setUnits(*open.chosen);
    m_scaleCommand = nextCommand(open, commanded);
    return true;
}

/// A command that no poll has carried yet is carried by the next one.
CommandByte HIDManager::nextCommand(const OpenReading &open, CommandByte commanded) const
{
    if (!open.isCommanded)
        return afterPoll(commanded, m_state.unitindex);
    // A command that is about something else must not undo a unit chosen at the scale.
    return open.isUnitCommanded ? commanded : withUnitCode(commanded, m_state.unitindex);
}

void HIDManager::giveReadingUp()
{
    if (!m_open)
        return;
    m_owedReports += m_open->unansweredPolls;
    m_open.reset();
}

// Each that stays would make every later reading one report old.
void HIDManager::dropOwedReports()
{
    std::array<std::uint8_t, 9> buffer{};
    while (m_owedReports > 0 && m_handle && m_handle->read(buffer, 0ms).value_or(-1) > 0)
        --m_owedReports;
}

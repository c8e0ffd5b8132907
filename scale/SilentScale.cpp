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

void HIDManager::pollAnew()
{
    sendPoll();
    m_open->sincePoll.start();
    m_open->isCommanded = false;
    ++m_open->unansweredPolls;
}

bool HIDManager::continueReading()
{
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
    takeInput(*input);
    // What was chosen meanwhile is newer than what the report tells.
    if (open.chosen) {
        m_state.unitnumber = open.chosen->unitnumber;
        m_state.unitindex = open.chosen->unitindex;
        m_state.currentUnit = open.chosen->currentUnit;
    }
    // A command that no poll has carried yet is carried by the next one.
    m_scaleCommand = open.isCommanded ? commanded : afterPoll(commanded, m_state.unitindex);
    return true;
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

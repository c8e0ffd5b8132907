// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// One reading, from the poll to the texts that leave the program.

#include "scale/HIDManager.h"

#include "base/Log.h"
#include "base/NumberText.h"
#include "scale/WeightText.h"

namespace {

/// Of a report, those that mean something.
constexpr int weightBytes = 3;

} // namespace

void HIDManager::get_device_rawdata()
{
    followPermission();
    dropOwedReports();
    sendPoll();
    if (const auto input = readReport(answerPatience)) {
        takeInput(*input, chosenForm());
        return;
    }
    openReading();
}

void HIDManager::sendPoll()
{
    if (sendFeatureReport(pollReport(m_scaleCommand)) < 0)
        traceLine(QStringLiteral("Unable to read command()"));
}

void HIDManager::takeInput(const Input &input, ExportForm form)
{
    const auto [report, outcome] = input;
    if (m_state.currentScale == scaletype::packedDecimal)
        m_state.currentStatue = true;
    m_state.OverloadFlag = false;
    delegate()->Draw5DigitOverload();
    delegate()->setUnitCaptionHidden(false);

    const Capacity capacity = capacityOf(delegate()->selectedModelName());
    const float grams = packedDecimalGrams(report, m_state.currentScale, capacity);
    logLine(QStringLiteral("W Value for Scale %1 is %2 ")
                .arg(m_state.currentScale)
                .arg(floatText(grams)));
    const float weight = exportedWeight(report, grams);

    const DecodedReport decoded = decodeStatus(report, weight, m_state, capacity);
    m_state = decoded.state;
    for (const ReadingEffect &effect : decoded.effects)
        perform(effect);

    delegate()->takeReport(report, outcome);
    exportReading(report, decoded, capacity, form);
    m_scaleCommand = afterPoll(m_scaleCommand, m_state.unitindex);
}

std::optional<HIDManager::Input> HIDManager::readReport(std::chrono::milliseconds patience)
{
    std::array<std::uint8_t, 9> buffer{};
    const std::optional<int> received = m_handle ? m_handle->read(buffer, patience) : -1;
    if (!received)
        return std::nullopt;
    if (*received < 0)
        traceLine(QStringLiteral("Unable to read()"));
    for (int i = 0; i < *received; ++i)
        traceLine(QStringLiteral("buf[%1]: %2").arg(i).arg(buffer.at(static_cast<std::size_t>(i))));
    return Input{.report = {.status = buffer[0], .low = buffer[1], .high = buffer[2]},
                 .outcome = *received < weightBytes ? ReadOutcome::Failed : ReadOutcome::Read};
}

float HIDManager::exportedWeight(const WeightReport &report, float grams)
{
    // The type known from the reports before decides: this one's status is not looked at yet.
    if (m_state.currentScale == scaletype::packedDecimal) {
        changewebData(grams);
        return grams;
    }
    const float hectograms = binaryHectograms(report);
    changewebData(static_cast<float>(static_cast<int>(hectograms) * 100));
    return hectograms;
}

void HIDManager::perform(const ReadingEffect &effect)
{
    using Kind = ReadingEffect::Kind;
    switch (effect.kind) {
    case Kind::Log: logLine(effect.line.toString()); break;
    case Kind::HideUnitCaption: delegate()->setUnitCaptionHidden(true); break;
    case Kind::ClearAll: delegate()->clearAll(); break;
    case Kind::DrawOverload: delegate()->Draw5DigitOverload(); break;
    case Kind::ShowNegativeSign: delegate()->shownegativeSign(effect.number != 0); break;
    case Kind::DrawDigits: delegate()->Draw5Digit(effect.number); break;
    case Kind::DisplayUnit: delegate()->DisplayUnit(static_cast<int>(effect.number)); break;
    }
}

void HIDManager::changewebData(float grams)
{
    logLine(QStringLiteral("Basic weight is %1").arg(floatText(grams)));
    const WebStrings strings = webStrings(grams);
    m_sWebDataLB = strings.pounds;
    m_sWebDataOZ = strings.ounces;
    m_sWebDataBasic = strings.basic;
    m_sWebDataLBOnly = delegate()->exportLabelText();
}

void HIDManager::exportReading(const WeightReport &report, const DecodedReport &decoded,
                               Capacity capacity, ExportForm form)
{
    const ExportText exported =
        exportText({.report = report,
                    .weight = decoded.weight,
                    .poundsTimes10000 = decoded.poundsTimes10000,
                    .currentScale = m_state.currentScale,
                    .currentUnit = m_state.currentUnit,
                    .unitnumber = m_state.unitnumber,
                    .capacity = capacity},
                   form, m_SetRound ? ExportRounding::UpToWhole : ExportRounding::AsRead);
    if (exported.twoDecimalKilograms)
        logLine(QStringLiteral("kg value is %1").arg(*exported.twoDecimalKilograms));
    delegate()->setExportLabelText(exported.text);
    if (delegate()->SetClip())
        delegate()->copyToClipboard(delegate()->exportLabelText());
}

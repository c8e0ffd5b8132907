// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Prints what the number rules make of their whole input, as one number each: two builds that print
// the same lines show and export the same.

#include "lcd/DigitLayout.h"
#include "scale/WeightText.h"

#include <bit>
#include <cmath>
#include <cstdio>
#include <vector>

namespace {

/// FNV-1a, by words instead of bytes.
class Hash
{
public:
    void add(std::uint64_t word) { m_value = (m_value ^ word) * 0x100000001B3; }
    void add(std::int64_t number) { add(static_cast<std::uint64_t>(number)); }
    void add(int number) { add(static_cast<std::int64_t>(number)); }
    void add(bool yes) { add(yes ? 1 : 0); }
    void add(const QString &text)
    {
        for (const QChar letter : text)
            add(static_cast<int>(letter.unicode()));
        add(-1);
    }
    void add(double number)
    {
        // What is not a number has a sign of the processor's own choice, which nothing shows.
        add(std::isnan(number) ? std::uint64_t{1} : std::bit_cast<std::uint64_t>(number));
    }
    void add(float number) { add(static_cast<double>(number)); }

    void print(const char *name) const
    {
        std::printf("%016llx %s\n", static_cast<unsigned long long>(m_value), name);
    }

private:
    std::uint64_t m_value = 0xCBF29CE484222325;
};

void add(Hash &hash, const LogLine &line)
{
    hash.add(line.first);
    hash.add(line.second);
    hash.add(line.real);
}

void add(Hash &hash, const DecodedReport &decoded)
{
    hash.add(decoded.weight);
    hash.add(decoded.poundsTimes10000);
    hash.add(decoded.state.currentScale);
    hash.add(decoded.state.unitnumber);
    hash.add(decoded.state.unitindex);
    hash.add(decoded.state.currentUnit);
    hash.add(decoded.state.currentStatue);
    hash.add(decoded.state.OverloadFlag);
    for (const ReadingEffect &effect : decoded.effects) {
        hash.add(static_cast<int>(effect.kind));
        hash.add(effect.number);
        add(hash, effect.line);
    }
}

/// Every status and weight, each with one of the units.
void hashReports(int scale, Capacity capacity, const char *name)
{
    Hash hash;
    for (unsigned bits = 0; bits < 1U << 24; ++bits) {
        const WeightReport report{.status = static_cast<std::uint8_t>(bits >> 16),
                                  .low = static_cast<std::uint8_t>(bits),
                                  .high = static_cast<std::uint8_t>(bits >> 8)};
        const ReadingState state{.currentScale = scale,
                                 .unitnumber = static_cast<int>(bits % 7),
                                 .currentStatue = bits % 2 == 0};
        const float weight = scale == scaletype::binary
                                 ? binaryHectograms(report)
                                 : packedDecimalGrams(report, scale, capacity);
        add(hash, decodeStatus(report, weight, state, capacity));
    }
    hash.print(name);
}

/// Every gram that a scale can report, and tenths of a gram below a kilogram.
void hashWebStrings()
{
    Hash hash;
    const auto addGrams = [&](float grams) {
        const WebStrings texts = webStrings(grams);
        hash.add(texts.pounds);
        hash.add(texts.ounces);
        hash.add(texts.basic);
    };
    for (int grams = 0; grams <= 200000; ++grams)
        addGrams(static_cast<float>(grams));
    for (int tenths = 0; tenths <= 10000; ++tenths)
        addGrams(static_cast<float>(tenths) / 10);
    hash.print("web strings");
}

void addExports(Hash &hash, const ExportValues &values)
{
    for (const ExportForm form : {ExportForm::Pounds, ExportForm::Kilograms}) {
        for (const ExportRounding rounding : {ExportRounding::AsRead, ExportRounding::UpToWhole})
            hash.add(exportText(values, form, rounding).text);
    }
}

void hashExports()
{
    Hash hash;
    for (int count = 0; count <= 16665; ++count) {
        for (const Capacity capacity : {Capacity::Standard, Capacity::High}) {
            const int grams = capacity == Capacity::High ? count * 10 : count;
            ExportValues values{.weight = static_cast<float>(grams), .capacity = capacity};
            values.poundsTimes10000 = static_cast<int>(values.weight / 0.4536 + 0.5) * 10;
            for (values.unitnumber = 0; values.unitnumber <= 6; ++values.unitnumber)
                addExports(hash, values);
        }
    }
    for (int count = 0; count <= 0xFFFF; ++count) {
        ExportValues values{.currentScale = scaletype::binary};
        values.report.high = static_cast<std::uint8_t>(count >> 8);
        values.report.low = static_cast<std::uint8_t>(count);
        for (values.currentUnit = 1; values.currentUnit <= 3; ++values.currentUnit)
            addExports(hash, values);
    }
    hash.print("export texts");
}

/// The states in which a unit's own reading is shown.
std::vector<DigitContext> contexts()
{
    std::vector<DigitContext> all;
    for (const int currentUnit : {1, 2, 3})
        all.push_back({.currentScale = scaletype::binary, .currentUnit = currentUnit});
    for (int unit = 0; unit <= 6; ++unit) {
        for (const bool lbOZlast : {false, true}) {
            for (const int currentUnit : {1, 2, 4})
                all.push_back({.currentUnit = currentUnit,
                               .unitnumber = unit,
                               .dotunit = unit,
                               .lbOZlast = lbOZlast});
        }
    }
    return all;
}

void hashDigits()
{
    Hash hash;
    for (DigitContext context : contexts()) {
        for (std::int64_t number = 0; number <= 999999; ++number) {
            context.capacity = number % 5 == 0 ? Capacity::High : Capacity::Standard;
            for (const DigitStep &step : layoutDigits(number, context)) {
                hash.add(static_cast<int>(step.kind));
                hash.add(static_cast<int>(step.view));
                hash.add(step.number);
                hash.add(step.rounded);
            }
        }
    }
    hash.print("digits");
}

} // namespace

int main()
{
    hashReports(scaletype::packedDecimal, Capacity::Standard, "reports in grams");
    hashReports(scaletype::packedDecimal, Capacity::High, "reports in tens of grams");
    hashReports(scaletype::binary, Capacity::Standard, "reports in tenths of ounces");
    hashWebStrings();
    hashExports();
    hashDigits();
    return std::fflush(stdout) == 0 ? 0 : 1;
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What a scale may send, in any order, between whatever the user may do: the real link over fake
// devices, each reading compared with the rules.
//
// An input is a row of steps: one byte for the kind, then what that kind needs.

#include "tests/fuzz/Fuzz.h"
#include "tests/rules/ExportRules.h"
#include "tests/support/LinkedScale.h"
#include "tests/support/ReadingRules.h"

#include <array>

namespace {

/// Those of the nine bytes that mean something.
using Report = std::array<std::uint8_t, 3>;

class Session
{
public:
    void step(FuzzInput &input)
    {
        switch (input.byte() % 8) {
        case 0: shortReport(input); break;
        case 1: failedRead(); break;
        case 2: choose(input); break;
        case 3: press(input.byte()); break;
        case 4: replug(); break;
        default: fullReport(input); break;
        }
    }

private:
    void fullReport(FuzzInput &input)
    {
        const Report report{input.byte(), input.byte(), input.byte()};
        scale.hidapi.reports.push_back({report[0], report[1], report[2], 0, 0, 0, 0, 0});
        read(report);
    }

    void shortReport(FuzzInput &input)
    {
        const std::size_t length = input.byte() % 3U;
        std::vector<std::uint8_t> bytes;
        Report report{};
        for (std::size_t i = 0; i < length; ++i)
            bytes.push_back(report.at(i) = input.byte());
        scale.hidapi.reports.push_back(bytes);
        read(report);
    }

    void failedRead()
    {
        scale.hidapi.sendFails = true;
        read({});
        scale.hidapi.sendFails = false;
    }

    void choose(FuzzInput &input)
    {
        const std::uint8_t choice = input.byte();
        scale.interface.radioButtonIndex = choice % 7;
        scale.interface.model = choice % 2 == 0 ? QStringLiteral("KV-A200") : QString();
        scale.interface.clip = choice % 3 == 0;
        scale.link.setSetRound(choice % 5 == 0);
        scale.link.setUnitnumber(input.byte() % 7);
        scale.link.set_Unit(input.byte() % 6);
    }

    void press(std::uint8_t button)
    {
        switch (button % 6) {
        case 0: scale.link.set_device_ON(); break;
        case 1: scale.link.set_device_OFF(); break;
        case 2: scale.link.set_device_HOLD(); break;
        case 3: scale.link.set_device_HOLDOFF(); break;
        case 4: scale.link.set_device_ON_TARE(); break;
        default: scale.link.set_device_OFF_TARE(); break;
        }
    }

    void replug()
    {
        fakeudev::unplug(scaleDevice.name);
        fakeudev::plug(scaleDevice);
        LinkedScale::turn();
    }

    void read(const Report &report)
    {
        const auto [status, low, high] = report;
        const bool highCapacity = !scale.interface.model.isEmpty();
        const rules::Outcome expected =
            rules::readReport(status, low, high, readingrules::stateOf(scale.link), highCapacity);
        const auto text = rules::exportText(
            expected.state, expected.weight, expected.poundsTimes10000, high, low, highCapacity,
            scale.interface.radioButtonIndex, scale.link.SetRound());
        scale.interface.calls.clear();
        scale.interface.clipboard.clear();
        scale.link.get_device_rawdata();
        require(readingrules::sameState(readingrules::stateOf(scale.link), expected.state),
                "the state that the rules give");
        require(scale.interface.calls == readingrules::callsOf(expected),
                "the calls that the rules give");
        require(scale.interface.label.toStdString() == text.text,
                "the export text that the rules give");
        require(scale.link.sWebDataOZ().toStdString() ==
                    rules::webTexts(expected.changeWebGrams).OZ,
                "the ounces that the rules give");
        require(scale.interface.clipboard.size() == (scale.interface.clip ? 1 : 0),
                "one copy of each reading while the option is on");
    }

    LinkedScale scale{LinkedScale::Scale::Present};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static int argumentCount = 0;
    static const QCoreApplication application(argumentCount, nullptr);
    // Ten times as fast as with every line collected.
    QLoggingCategory::setFilterRules(QStringLiteral("postalscale*=false"));
    FuzzInput input(bytes, size);
    {
        Session session;
        while (!input.isEmpty())
            session.step(input);
    }
    require(FakeHidapi::instance().openHandles == 0, "every handle is given back");
    return 0;
}

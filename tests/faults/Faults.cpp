// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/faults/Faults.h"

#include <array>
#include <chrono>

using namespace std::chrono_literals;

namespace {

using Cure = Fault::Cure;
using Reports = FaultyWorld::Reports;
using Notice = FaultyWorld::Notice;

const fakeudev::Device stranger{"hidraw8", scaleVendorId, 0x1234};

constexpr Sight undisturbed{"Scale connected", "1234 grams", "1.234", ""};
constexpr Sight gone{"Scale not connected", "no scale connected", "", ""};
// A read that fails leaves zeros, and they say that the display is off.
constexpr Sight off{"Scale connected", "off", "0", ""};
constexpr Sight silent{"Scale connected", "1234 grams, the scale does not answer", "1.234",
                       "The scale does not answer"};
constexpr Sight unsaved{"Scale connected", "1234 grams", "1.234", "cannot be saved"};

void nothing(FaultyWorld &) {}

void wholeReports(FaultyWorld &world)
{
    world.deliver(Reports::Whole);
}

/// Later than the program has patience with udev.
void plugAnnouncedLate(FaultyWorld &world)
{
    LaunchedApplication::pass(1s, 100ms);
    world.plug(Notice::Late);
    LaunchedApplication::pass(1500ms, 100ms);
    world.announce();
}

/// Looking for a late report takes one without bytes for none, as the kernel does; the next poll
/// follows within two seconds.
void wholeReportsAtLast(FaultyWorld &world)
{
    world.deliver(Reports::Whole);
    LaunchedApplication::pass(2s, 100ms);
}

void untilItSpeaks(FaultyWorld &world)
{
    world.waitForTheEndOfSilence();
}

void plugAgain(FaultyWorld &world)
{
    world.plug();
}

void bounce(FaultyWorld &world)
{
    world.unplug();
    world.plug();
}

/// Something to save, the same as before afterwards.
void clickOption(FaultyWorld &world)
{
    world.app.delegate.checkRoundTo->click();
    world.app.delegate.checkRoundTo->click();
}

constexpr std::array
    table =
        {
            Fault{"the open fails",
                  Cure::Replug,
                  {"Scale connected", "off", "0", "could not be opened"},
                  [](FaultyWorld &world) {
                      world.app.hidapi.openFails = true;
                      bounce(world);
                  },
                  [](FaultyWorld &world) { world.app.hidapi.openFails = false; }},
            // The scale answers polls only.
            Fault{"the send fails", Cure::ItsEnd, off,
                  [](FaultyWorld &world) { world.failSending(true); },
                  [](FaultyWorld &world) { world.failSending(false); }},
            Fault{"the read fails", Cure::ItsEnd, off,
                  [](FaultyWorld &world) { world.deliver(Reports::None); }, wholeReports},
            Fault{"an empty report", Cure::ItsEnd, off,
                  [](FaultyWorld &world) { world.deliver(Reports::Empty); }, wholeReportsAtLast},
            Fault{"a report of the status alone",
                  Cure::ItsEnd,
                  {"Scale connected", "0 grams", "0", ""},
                  [](FaultyWorld &world) { world.deliver(Reports::Short); },
                  wholeReports},
            Fault{"a report of 64 bytes", Cure::ItsEnd, undisturbed,
                  [](FaultyWorld &world) { world.deliver(Reports::Long); }, wholeReports},
            // It may speak of another type of scale; what the panel shows is as random as the
            // bytes.
            Fault{"reports of nonsense",
                  Cure::Replug,
                  {"Scale connected", nullptr, nullptr, ""},
                  [](FaultyWorld &world) { world.deliver(Reports::Nonsense); },
                  wholeReports},
            Fault{"silence of 1 s", Cure::ItsEnd, undisturbed,
                  [](FaultyWorld &world) { world.fallSilent(1s); }, untilItSpeaks},
            // The first reading has taken 2 s of it, and it is over when the user looks.
            Fault{"silence of 3 s", Cure::ItsEnd, undisturbed,
                  [](FaultyWorld &world) { world.fallSilent(3s); }, untilItSpeaks},
            Fault{"silence of 30 s", Cure::ItsEnd, silent,
                  [](FaultyWorld &world) { world.fallSilent(30s); }, untilItSpeaks},
            Fault{"an answer is lost", Cure::ItsEnd, undisturbed,
                  [](FaultyWorld &world) { world.loseAnswer(); }, nothing},
            Fault{"the bus is reset", Cure::ItsEnd, undisturbed,
                  [](FaultyWorld &world) { world.resetBus(); }, nothing},
            Fault{"the machine sleeps", Cure::ItsEnd, undisturbed,
                  [](FaultyWorld &world) { world.app.delegate.prepareForSleep(); },
                  [](FaultyWorld &world) { world.app.delegate.wakeUp(); }},
            Fault{"the scale is unplugged", Cure::ItsEnd, gone,
                  [](FaultyWorld &world) { world.unplug(); }, plugAgain},
            Fault{"the plug bounces", Cure::Replug, undisturbed, bounce, nothing},
            Fault{"the scale is announced twice", Cure::Replug, undisturbed,
                  [](FaultyWorld &world) {
                      if (world.isPlugged())
                          fakeudev::announce(world.device(), "add");
                  },
                  nothing},
            Fault{"it is announced when it is gone already", Cure::ItsEnd, gone,
                  [](FaultyWorld &world) {
                      bounce(world);
                      world.unplug();
                  },
                  plugAgain},
            Fault{"another product of the vendor", Cure::Replug, undisturbed,
                  [](FaultyWorld &) { fakeudev::plug(stranger); },
                  [](FaultyWorld &) { fakeudev::unplug(stranger.name); }},
            Fault{"a mouse goes", Cure::Replug, gone,
                  [](FaultyWorld &) {
                      fakeudev::plug(mouse);
                      fakeudev::unplug(mouse.name);
                  },
                  nothing},
            Fault{"the news of a removal is dropped", Cure::ItsEnd, gone,
                  [](FaultyWorld &world) { world.unplug(Notice::Dropped); }, plugAgain},
            Fault{"the news of a replug is dropped", Cure::Replug, undisturbed,
                  [](FaultyWorld &world) {
                      world.unplug(Notice::Dropped);
                      world.plug(Notice::Dropped);
                  },
                  nothing},
            Fault{"it comes back and is announced late", Cure::ItsEnd, gone,
                  [](FaultyWorld &world) { world.unplug(); }, plugAnnouncedLate},
            Fault{"the news of a replug cannot be received", Cure::Replug, undisturbed,
                  [](FaultyWorld &world) {
                      fakeudev::failing().receive = true;
                      bounce(world);
                  },
                  [](FaultyWorld &) { fakeudev::failing().receive = false; }},
            Fault{"the devices cannot be listed", Cure::Replug, undisturbed,
                  [](FaultyWorld &) {
                      fakeudev::failing().scan = true;
                      fakeudev::overflow();
                  },
                  [](FaultyWorld &) { fakeudev::failing().scan = false; }},
            Fault{"the list of devices cannot be made",
                  Cure::Replug,
                  {"Scale connected", "off", "0", "No scale was found"},
                  [](FaultyWorld &world) {
                      fakeudev::failing().enumeration = true;
                      bounce(world);
                  },
                  [](FaultyWorld &) { fakeudev::failing().enumeration = false; }},
            Fault{"the disk is full", Cure::ItsEnd, unsaved,
                  [](FaultyWorld &world) {
                      world.fillDisk(true);
                      clickOption(world);
                  },
                  [](FaultyWorld &world) { world.fillDisk(false); }},
            Fault{"no settings folder can be made", Cure::ItsEnd, unsaved,
                  [](FaultyWorld &world) {
                      world.blockSettingsFolder(true);
                      clickOption(world);
                  },
                  [](FaultyWorld &world) { world.blockSettingsFolder(false); }},
            Fault{"the settings folder is deleted", Cure::ItsEnd, undisturbed,
                  [](FaultyWorld &world) {
                      world.loseSettingsFolder();
                      clickOption(world);
                  },
                  nothing},
};

} // namespace

std::span<const Fault> faults()
{
    return table;
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/faults/ClassFaults.h"

#include <array>
#include <cerrno>
#include <chrono>

using namespace std::chrono_literals;

namespace {

using World = ClassFaultyWorld;
using News = ClassFaultyWorld::Notice;

constexpr Sight wellSeen{"Scale connected", "1234 grams", "1.234", ""};
constexpr Sight away{"Scale not connected", "no scale connected", "", ""};
constexpr Sight notRead{"Scale connected", "1234 grams, the scale does not answer", "1.234",
                        "The scale could not be read"};

void leaveIt(World &) {}

void plugItAgain(World &world)
{
    world.plug();
}

void replug(World &world)
{
    world.unplug();
    world.plug();
}

void failReading(World &world, bool fails)
{
    world.scale().readFailure = fails ? -1 : 0;
}

void failOpening(World &world, bool fails)
{
    world.scale().openFails = fails;
}

constexpr std::array classTable = {
    ClassFault{"it cannot be opened",
               {"Scale connected", "off", "", "could not be opened"},
               [](World &world) {
                   failOpening(world, true);
                   replug(world);
               },
               [](World &world) { failOpening(world, false); }},
    ClassFault{"it may not be opened",
               {"Scale connected", "off", "", "No permission to open the scale"},
               [](World &world) {
                   world.scale().readingError = EACCES;
                   replug(world);
               },
               [](World &world) { world.scale().readingError = 0; }},
    ClassFault{"it cannot be read", notRead, [](World &world) { failReading(world, true); },
               [](World &world) { failReading(world, false); }},
    ClassFault{"it can neither be read nor opened again", notRead,
               [](World &world) {
                   failReading(world, true);
                   failOpening(world, true);
               },
               [](World &world) {
                   failReading(world, false);
                   failOpening(world, false);
               }},
    ClassFault{"one read fails", wellSeen,
               // What is open is lost with it.
               [](World &world) { world.scale().duringRead = [&world] { ++world.scale().plugs; }; },
               leaveIt},
    ClassFault{"it goes while it is read", away,
               [](World &world) { world.scale().duringRead = [&world] { world.unplug(); }; },
               [](World &world) {
                   world.scale().duringRead = {};
                   world.plug();
               }},
    ClassFault{"it is unplugged", away, [](World &world) { world.unplug(); }, plugItAgain},
    ClassFault{"the plug bounces", wellSeen, replug, leaveIt},
    ClassFault{"the news of a removal is dropped", away,
               [](World &world) { world.unplug(News::Dropped); }, plugItAgain},
    // What is open belongs to the plug before.
    ClassFault{"the news of a replug is dropped", wellSeen,
               [](World &world) {
                   world.unplug(News::Dropped);
                   world.plug(News::Dropped);
               },
               leaveIt},
    ClassFault{"it falls silent",
               {"Scale connected", "1234 grams, the scale does not answer", "1.234",
                "The scale sends nothing any more"},
               [](World &world) {
                   world.setSending(false);
                   world.pass(11s);
               },
               [](World &world) { world.setSending(true); }},
    ClassFault{"the machine sleeps", wellSeen,
               [](World &world) { world.app.delegate.prepareForSleep(); },
               [](World &world) { world.app.delegate.wakeUp(); }},
    ClassFault{"a second one that may not be opened", wellSeen,
               [](World &world) {
                   world.other().readingError = EACCES;
                   fakeudev::plug(World::otherDevice);
               },
               [](World &world) {
                   fakeudev::unplug(World::otherDevice.name);
                   world.other().readingError = 0;
               }},
};

} // namespace

std::span<const ClassFault> classFaults()
{
    return classTable;
}

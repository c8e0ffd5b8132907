// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/CommandServer.h"
#include "tests/system/gadget/Bus.h"

/// Answers one line: "ok", a list after its count, or "error" and the reason. The commands are
/// those of the emulator that make sense here; the README lists them.
void runBusCommand(Bus &bus, const std::string &line, const CommandServer::Reply &reply);

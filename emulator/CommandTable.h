// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/CommandServer.h"
#include "emulator/Emulator.h"

/// Carries out one command line and answers it: "ok", a value, a count with that many lines after
/// it, or "error" and the reason. README.md lists the commands.
void runCommand(Emulator &emulator, const std::string &line, const CommandServer::Reply &reply);

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

class Application;
class EndSignals;
struct ActivationRight;

/// The whole life of the program: does what the command line asks for. The exit status.
int runProgram(Application &application, const ActivationRight &right, EndSignals &endSignals);

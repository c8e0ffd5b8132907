// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/Application.h"
#include "console/CommandLine.h"
#include "console/Program.h"
#include "console/SingleInstanceActivation.h"
#include "console/StandardStreams.h"
#include "session/EndSignals.h"

int main(int argc, char **argv)
{
    occupyStandardStreams();
    EndSignals endSignals;
    const ActivationRight right = ActivationRight::fromEnvironment();
    ToolkitArguments arguments(argc, argv, DesktopEnvironment::ofSession());
    Application application(arguments.count(), arguments.values());
    return runProgram(application, right, endSignals);
}

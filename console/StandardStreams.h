// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

/// A start may come with standard streams that are closed. The first files that are opened would
/// take their places, and get what is printed: so something takes them that refuses it.
/// To be called before anything else is opened.
void occupyStandardStreams();

/// Once all is printed. @returns @p status, or that of a failed output, of which standard error
/// has been told then
int statusOfOutput(int status);

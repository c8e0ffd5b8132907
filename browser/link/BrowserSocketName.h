// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

/// File name, in the user's runtime folder, of the socket between the program and the browsers'
/// native-messaging hosts.
inline constexpr char browserSocketName[] = "postal-scale-browser.socket";

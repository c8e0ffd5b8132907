// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

/// Sanitizers make a whole input space too slow; there every @p sparse th input is taken, a prime,
/// so that no bit pattern is left out.
constexpr int sweepStep([[maybe_unused]] int sparse)
{
#if defined(__SANITIZE_ADDRESS__) || !defined(NDEBUG)
    return sparse;
#else
    return 1;
#endif
}

// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cfloat>

// For sources that mix single and double precision on purpose: which step of the weight arithmetic
// is cut to single precision decides the digits that are shown and exported. A processor or an
// option that keeps more bits between the steps, as x87 does, makes other digits of some readings;
// so do options that let the compiler reorder the steps.
static_assert(FLT_EVAL_METHOD == 0,
              "Each step of the weight arithmetic has to be rounded to its own type: build without "
              "excess precision (on 32-bit x86: -msse2 -mfpmath=sse)");
#ifdef __FAST_MATH__
#error "The weight arithmetic has to be done as it is written: build without -ffast-math"
#endif

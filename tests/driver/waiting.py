# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Waiting for a condition, never for a while."""

import time

PATIENCE = 30.0
"""Seconds until a condition that has not come about is a failure: enough for a machine that has
much else to do."""

FIRST_PAUSE, LONGEST_PAUSE = 0.01, 0.05
"""Seconds between two looks, each twice as long as the one before: each look costs the program or the
browser something, and many tests wait at once."""


def wait_until(condition, description, timeout=PATIENCE):
    """Returns the first true value of `condition()`. `description` may be called for a late
    account of what was there instead."""
    deadline = time.monotonic() + timeout
    pause = FIRST_PAUSE
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            text = description() if callable(description) else description
            raise AssertionError(f"not within {timeout:g} s: {text}")
        time.sleep(pause)
        pause = min(2 * pause, LONGEST_PAUSE)

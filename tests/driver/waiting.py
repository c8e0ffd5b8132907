# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Waiting for a condition, never for a while."""

import time

PATIENCE = 30.0
"""Seconds until a condition that has not come about is a failure: enough for a machine that has
much else to do."""

GLANCE = 0.02


def wait_until(condition, description, timeout=PATIENCE):
    """Returns the first true value of `condition()`. `description` may be called for a late
    account of what was there instead."""
    deadline = time.monotonic() + timeout
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            text = description() if callable(description) else description
            raise AssertionError(f"not within {timeout:g} s: {text}")
        time.sleep(GLANCE)

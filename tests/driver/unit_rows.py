# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The unit column of every model, and what the panel says of a weight in each unit."""

# The window's radio buttons, from the top.
OUNCES = "rg1"
POUNDS_OUNCES_TENTHS = "rg2"
POUNDS_OUNCES_FRACTION = "rg3"
POUNDS = "rg4"
GRAMS = "rg5"
KILOGRAMS = "rg6"
POUNDS_WHOLE_OUNCES = "rg7"

ALL_ROWS = (OUNCES, POUNDS_OUNCES_TENTHS, POUNDS_OUNCES_FRACTION, POUNDS, GRAMS, KILOGRAMS,
            POUNDS_WHOLE_OUNCES)

_GRAM_MODEL = (OUNCES, POUNDS_OUNCES_TENTHS, POUNDS_OUNCES_FRACTION, GRAMS)

ENABLED_ROWS = {
    "KV-A100": _GRAM_MODEL,
    "KV-A200": (POUNDS_OUNCES_TENTHS, POUNDS_OUNCES_FRACTION, POUNDS, KILOGRAMS,
                POUNDS_WHOLE_OUNCES),
    "KV-B100": _GRAM_MODEL,
    "KV-B200": _GRAM_MODEL,
    "KV-B300": _GRAM_MODEL,
    "KV-C100": (POUNDS_OUNCES_FRACTION, POUNDS, KILOGRAMS, POUNDS_WHOLE_OUNCES),
    "KV-C200": _GRAM_MODEL,
    "KV-C300": (POUNDS, KILOGRAMS, POUNDS_WHOLE_OUNCES),
    "KV-C400": (POUNDS_OUNCES_FRACTION, POUNDS, KILOGRAMS, POUNDS_WHOLE_OUNCES),
}

# They weigh in steps of 10 g.
HIGH_CAPACITY_MODELS = ("KV-A200", "KV-C400")

# Only the menu knows this one's units; KV-C100 is only known to the pop-up.
MENU_MODEL = "KV-C400"

# Bits 5 to 3 of the command byte. A binary scale is asked for pounds itself; a packed decimal one
# is asked for pounds and ounces, and the pounds are worked out here.
PACKED_DECIMAL_UNIT_BITS = {
    OUNCES: 0b110 << 3,
    POUNDS_OUNCES_TENTHS: 0b101 << 3,
    POUNDS_OUNCES_FRACTION: 0b011 << 3,
    POUNDS: 0b101 << 3,
    GRAMS: 0b111 << 3,
    KILOGRAMS: 0b111 << 3,
    POUNDS_WHOLE_OUNCES: 0b101 << 3,
}
BINARY_UNIT_BITS = PACKED_DECIMAL_UNIT_BITS | {POUNDS: 0b110 << 3}

# 1234 g on a scale with steps of 1 g.
GRAM_SCALE_AT_1234 = {
    OUNCES: "43.5 ounces",
    POUNDS_OUNCES_TENTHS: "2 pounds 11.5 ounces",
    POUNDS_OUNCES_FRACTION: "2 pounds 11 1/2 ounces",
    # 2.720: a zero in the last place is never drawn, the place keeps its latest picture. That is
    # the numerator of the half ounce above it.
    POUNDS: "2.721 pounds",
    GRAMS: "1234 grams",
    KILOGRAMS: "1.234 kilograms",
    POUNDS_WHOLE_OUNCES: "2 pounds 11 ounces",
}

# 1234 g with steps of 10 g, so 1230 g: 2 lb 11.4 oz, in quarters 11 1/2.
TEN_GRAM_SCALE_AT_1234 = {
    POUNDS_OUNCES_TENTHS: "2 pounds 11.5 ounces",
    POUNDS_OUNCES_FRACTION: "2 pounds 11 1/2 ounces",
    POUNDS: "2.7 pounds",
    KILOGRAMS: "1.23 kilograms",
    POUNDS_WHOLE_OUNCES: "2 pounds 11 ounces",
}

UNCHANGED = None

# 1234 g, 43.5 oz to the scale.
BINARY_SCALE_AT_1234 = {
    # The scale has no plain ounces: the same code means pounds to it.
    OUNCES: "2.7 pounds",
    # 2 lb 11.5 oz: the low byte of the count is divided without its remainder, which takes off
    # up to 0.9 oz, and the high byte's 25.6 oz lose theirs when the ounces are cut.
    POUNDS_OUNCES_TENTHS: "2 pounds 10 ounces",
    # A unit that the scale lacks: it goes on in the former one.
    POUNDS_OUNCES_FRACTION: UNCHANGED,
    POUNDS: "2.7 pounds",
    # Nor does it know grams.
    GRAMS: "1.2 kilograms",
    KILOGRAMS: "1.2 kilograms",
    POUNDS_WHOLE_OUNCES: "2 pounds 10 ounces",
}

# Further weights, in the order in which they are put on the pan.

_TENTHS = (
    (0, "0 pounds 0.0 ounces"),
    (12, "0 pounds 0.4 ounces"),
    # A hair below the pound: the tenths are rounded after the pounds are cut.
    (453, "0 pounds 16.0 ounces"),
    (454, "1 pound 0.0 ounces"),
    # 3.3 oz: the tenths are made of eighths, and the one nearest to 3 is a quarter, 2.5, whose
    # half is rounded to even.
    (1000, "2 pounds 3.2 ounces"),
)

_FRACTION = (
    (0, "0 pounds 0 ounces"),
    (12, "0 pounds 0 3/8 ounces"),
    (453, "0 pounds 16 ounces"),
    (454, "1 pound 0 ounces"),
    (1000, "2 pounds 3 1/4 ounces"),
)

GRAM_SCALE_READINGS = {
    OUNCES: (
        (0, "0.0 ounces"),
        (12, "0.4 ounces"),
        (454, "16.0 ounces"),
        (1000, "35.3 ounces"),
        (9999, "352.7 ounces"),
    ),
    POUNDS_OUNCES_TENTHS: _TENTHS + (
        # 22 lb 0.7 oz: from ten pounds on, the tenths' place is blank for anything but a zero.
        (9999, "22 pounds 0 ounces"),
    ),
    POUNDS_OUNCES_FRACTION: _FRACTION + (
        # 22 lb 0 3/4 oz: from ten pounds on there is no fraction.
        (9999, "22 pounds 0 ounces"),
    ),
    POUNDS: (
        (1000, "2.205 pounds"),
        # 2.720, 0.000 and 22.044: a zero in the last place is not drawn, and from ten pounds on
        # no digit is; the place keeps its latest picture.
        (1234, "2.725 pounds"),
        (0, "0.005 pounds"),
        (12, "0.026 pounds"),
        (9999, "22.046 pounds"),
    ),
    GRAMS: (
        (0, "0 grams"),
        (12, "12 grams"),
        (454, "454 grams"),
        (9999, "9999 grams"),
    ),
    KILOGRAMS: (
        (0, "0.000 kilograms"),
        (12, "0.012 kilograms"),
        (1000, "1.000 kilograms"),
        (9999, "9.999 kilograms"),
    ),
    POUNDS_WHOLE_OUNCES: (
        (1000, "2 pounds 3 ounces"),
        # 0.9 oz: they are cut.
        (25, "0 pounds 0 ounces"),
        (454, "1 pound 0 ounces"),
        (0, "0 pounds 0 ounces"),
    ),
}

TEN_GRAM_SCALE_READINGS = {
    POUNDS_OUNCES_TENTHS: (
        (0, "0 pounds 0.0 ounces"),
        (120, "0 pounds 4.2 ounces"),
        # 10 lb 0.1 oz and 27 lb 3.3 oz, see above.
        (4540, "10 pounds 0 ounces"),
        (12340, "27 pounds 3 ounces"),
        # 220 lb 7 oz: there is no picture of 22 for the first place, and the second shows the
        # last digit of the pounds.
        (99990, "0 pounds 7.0 ounces"),
    ),
    POUNDS_OUNCES_FRACTION: (
        (120, "0 pounds 4 1/4 ounces"),
        (4540, "10 pounds 0 ounces"),
        (12340, "27 pounds 3 ounces"),
        (99990, "0 pounds 7 ounces"),
    ),
    POUNDS: (
        (0, "0.0 pounds"),
        (120, "0.3 pounds"),
        (4540, "10.0 pounds"),
        (12340, "27.2 pounds"),
        (99990, "220.4 pounds"),
    ),
    KILOGRAMS: (
        (0, "0.00 kilograms"),
        (120, "0.12 kilograms"),
        (4540, "4.54 kilograms"),
        (12340, "12.34 kilograms"),
        (99990, "99.99 kilograms"),
    ),
    POUNDS_WHOLE_OUNCES: (
        (0, "0 pounds 0 ounces"),
        (120, "0 pounds 4 ounces"),
        (12340, "27 pounds 3 ounces"),
        (99990, "0 pounds 7 ounces"),
    ),
}

BINARY_SCALE_READINGS = {
    POUNDS: (
        (0, "0.0 pounds"),
        (454, "1.0 pounds"),
        (1000, "2.2 pounds"),
        (34000, "75.0 pounds"),
    ),
    KILOGRAMS: (
        (0, "0.0 kilograms"),
        (454, "0.5 kilograms"),
        (10000, "10.0 kilograms"),
        (34000, "34.0 kilograms"),
    ),
    POUNDS_WHOLE_OUNCES: (
        # The tens of an empty remainder stay lit.
        (0, "0 pounds 00 ounces"),
        (454, "1 pound 00 ounces"),
        # 15.9 oz: 15, and one more for a low half-byte above 7.
        (451, "0 pounds 16 ounces"),
        # 2 lb 3.3 oz and 22 lb 0.7 oz, see above.
        (1000, "2 pounds 2 ounces"),
        (10000, "21 pounds 15 ounces"),
        (34000, "74 pounds 15 ounces"),
    ),
}

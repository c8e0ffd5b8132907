# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The desktops by name."""

import os

from compositors import Labwc, Sway, Weston
from gnome import DarkGnome, Gnome, GnomeWithoutX11
from kwin import DarkKwin, Kwin, KwinAtOneAndAHalf
from window_managers import I3, KwinX11, Metacity, Openbox, Xfwm4

DESKTOPS = {
    "kwin": Kwin,
    "kwin-dark": DarkKwin,
    "kwin-1.5": KwinAtOneAndAHalf,
    "gnome": Gnome,
    "gnome-dark": DarkGnome,
    "gnome-no-x11": GnomeWithoutX11,
    "openbox": Openbox,
    "metacity": Metacity,
    "xfwm4": Xfwm4,
    "kwin_x11": KwinX11,
    "i3": I3,
    "labwc": Labwc,
    "sway": Sway,
    "weston": Weston,
}


def chosen_desktop():
    return DESKTOPS[os.environ["POSTAL_SCALE_DESKTOP"]]

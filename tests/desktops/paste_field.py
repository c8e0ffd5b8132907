# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Another program: a field that is pasted into twice a second. The key COPY_KEY copies a text.

    paste_field.py      writes what was pasted, line by line
"""

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GLib, Gtk  # noqa: E402

TITLE = "Paste here"
COPY_KEY = "F5"
FOREIGN_TEXT = "something else"
INTERVAL_MS = 500


def paste_into(field):
    print(field.get_text(), flush=True)
    field.set_text("")
    # As Ctrl+V does.
    field.emit("paste-clipboard")
    return GLib.SOURCE_CONTINUE


def copy_at_key(window, event):
    if event.keyval != Gdk.keyval_from_name(COPY_KEY):
        return False
    Gtk.Clipboard.get_default(window.get_display()).set_text(FOREIGN_TEXT, -1)
    return True


def main():
    window = Gtk.Window(title=TITLE, default_width=300, default_height=120)
    field = Gtk.Entry()
    window.add(field)
    window.connect("key-press-event", copy_at_key)
    window.connect("destroy", Gtk.main_quit)
    window.show_all()
    GLib.timeout_add(INTERVAL_MS, paste_into, field)
    Gtk.main()


if __name__ == "__main__":
    main()

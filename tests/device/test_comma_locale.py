# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Where a decimal comma is the custom: it must reach no text that leaves the program."""

import comma_locale
import harness
import test_clipboard
import test_saved_options


class CommaLocale:
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.environment = comma_locale.make(cls.session)


class CommaLocaleClipboardTest(CommaLocale, test_clipboard.ClipboardTest):
    pass


class CommaLocaleSavedOptionTest(CommaLocale, test_saved_options.SavedOptionTest):
    pass


if __name__ == "__main__":
    harness.main()

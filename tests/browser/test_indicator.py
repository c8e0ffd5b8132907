# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the window's status area says of the browsers, in every state of the link."""

import harness
from extension_stand_in import ExtensionStandIn
from waiting import wait_until


class IndicatorTest(harness.DeviceTest):
    def setUp(self):
        self.program = self.start(settings=harness.USPS_ONLY)

    def attach(self, **options):
        extension = ExtensionStandIn(self.session, **options)
        self.addCleanup(extension.close)
        return extension

    def wait_for(self, text):
        wait_until(lambda: self.program.window.says(text), f"{text!r} in the window")

    def test_a_browser_from_its_start_to_its_end(self):
        self.wait_for("No browser linked")
        extension = self.attach()
        self.wait_for("Browser linked, waiting for a carrier page")
        extension.show(1, "tools.usps.com")
        self.wait_for("Filling USPS: 6 fields")
        extension.show(2, "www.fedex.com", fields=3)
        self.wait_for("Filling FedEx: 3 fields")
        extension.show(3, "www.ups.com", fields=3, changed=1)
        self.wait_for("UPS: 1 field shows another number")
        extension.show(4, "a~b.example.com", fields=3)
        self.wait_for("Filling the page: 3 fields")
        extension.show(5, "www.fedex.com")
        self.wait_for("Filling FedEx: 6 fields")
        extension.stop_answering()
        self.wait_for("Page not answering")
        self.program.wait_for_polls(3)
        self.assertTrue(self.program.window.says("Page not answering"))
        extension.close()
        self.wait_for("No browser linked")

    def test_an_extension_that_does_not_fit(self):
        self.attach(protocol=1, version="7.0")
        self.wait_for("Browser extension 7.0 does not fit this program")


if __name__ == "__main__":
    harness.main()

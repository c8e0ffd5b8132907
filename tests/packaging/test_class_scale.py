# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""--print and --doctor with a scale of the class for points of sale."""

import harness
from command_line import CommandLineTest
from reading_schema import assert_valid

OUNCES_35_4 = "03040bff6201"
GRAMS_1234 = "03040200d204"
FAULT = "03010bff0000"


class ClassScaleTest(CommandLineTest):
    def run_with(self, *arguments, report=OUNCES_35_4, prepare=()):
        return self.run_with_scale(*arguments, scale=["--unplugged"],
                                   prepare=[f"say class {report}", "plug class", *prepare])

    def test_a_reading_as_text(self):
        result = self.run_with("--print")
        self.assertEqual((result.status, result.output, result.errors),
                         (0, "35.4 ounces\n", ""))

    def test_a_reading_as_json(self):
        report = self.run_with("--print", "--json").report
        assert_valid(report)
        self.assertEqual(report["device"], "Example Parcel Scale")
        self.assertEqual(report["state"], "weight")
        self.assertEqual((report["unit"], report["sign"]), ("oz", "+"))
        self.assertAlmostEqual(report["weight"], 35.4)
        self.assertEqual(report["grams"], 1003.573)
        self.assertEqual((report["export"], report["exportUnit"]), ("2.2125", "lb"))
        self.assertTrue(report["settled"])

    def test_scales_that_send_seldom(self):
        for name, commands in {
                "once": [f"say-first class {OUNCES_35_4}", "interval class 0"],
                "every four seconds": ["interval class 4000"],
        }.items():
            with self.subTest(name):
                report = self.run_with("--print", "--json", prepare=commands).report
                self.assertEqual((report["text"], report["settled"]), ("35.4 ounces", True))

    def test_a_slow_scale_s_weighing_before(self):
        result = self.run_with("--print", prepare=["interval class 5000",
                                                   f"say-first class {GRAMS_1234}"])
        self.assertEqual((result.status, result.output), (0, "35.4 ounces\n"))

    def test_nothing_at_all(self):
        result = self.run_with("--print", prepare=["interval class 0"])
        self.assertEqual((result.status, result.output), (2, ""))

    def test_a_unit_without_a_picture(self):
        report = self.run_with("--print", "--json", report="030404000c00").report
        assert_valid(report)
        self.assertEqual((report["text"], report["weight"], report["unit"]), ("12 carats", 12, "ct"))

    def test_a_fault(self):
        result = self.run_with("--print", "--json", report=FAULT)
        self.assertEqual(result.status, 2)
        assert_valid(result.report)
        self.assertEqual(result.report["state"], "not-ready")

    def test_the_described_scale_comes_first(self):
        result = self.run_with("--print", "--json", prepare=["weight 1234", "plug scale"])
        self.assertEqual(result.report["text"], "1234 grams")
        self.assertNotIn("device", result.report)

    def test_the_doctor_names_the_scale_and_its_rule(self):
        result = self.run_with("--doctor")
        self.assertIn("Example Parcel Scale", result.output)
        self.assertIn('ATTRS{idVendor}=="1209", ATTRS{idProduct}=="0005"', result.output)


if __name__ == "__main__":
    harness.main()

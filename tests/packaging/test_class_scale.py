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
        self.assertIsNone(report["model"])

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
        self.assertIn("The scale sends nothing yet. Some send only when the weight changes",
                      result.errors)

    def test_what_the_panel_tells_in_words(self):
        for report, text, weight, unit, sign, grams in (
                ("030404000c00", "12 carats", 12, "ct", "+", 2.4),
                ("03050400f4ff", "minus 12 carats", -12, "ct", "-", -2.4),
                ("030502003930", "minus 12345 grams", -12345, "g", "-", -12345),
                ("030405000c00", "12 taels", 12, "tael", "+", None),
                ("030400000c00", "12 in a unit that the scale does not name", 12, None, "+", None),
                ("0304027f0c00", "12e+127 grams", 12e127, "g", "+", None),
                ("03040281ffff", "65535e-127 grams", 65535e-127, "g", "+", None)):
            with self.subTest(text):
                found = self.run_with("--print", "--json", report=report).report
                assert_valid(found)
                self.assertEqual([found[key] for key in ("text", "weight", "unit", "sign", "grams")],
                                 [text, weight, unit, sign, grams])

    def test_a_zero_that_is_none_does_not_leave(self):
        report = self.run_with("--print", "--json", report="03020b000c00").report
        assert_valid(report)
        self.assertEqual((report["weight"], report["grams"], report["export"]), (12, None, None))

    def test_a_fault(self):
        result = self.run_with("--print", "--json", report=FAULT)
        self.assertEqual(result.status, 2)
        assert_valid(result.report)
        self.assertEqual(result.report["state"], "not-ready")
        self.assertEqual(result.report["text"],
                         "The scale has a fault. Switch it off and on, or plug it in again.")

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

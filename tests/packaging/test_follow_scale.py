# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""--follow without a window, from the scale itself."""

import fcntl
import json

import harness
from follower import FollowTest, Follower
from reading_schema import assert_valid

WINDOW_MODEL = "KV-B100"


class FollowScaleTest(FollowTest):

    def run_script(self, script, **options):
        return self.run_with_scale(
            scale=["--weight", "1234"],
            command=["bash", "-c", script, harness.binaries() / "postal-scale"], **options)

    def test_the_scale_itself(self):
        result = self.run_script('"$0" --follow --json --settled | head -n 1')
        self.assertEqual((result.report["weight"], result.report["settled"]), (1234, True))
        assert_valid(result.report)

    def test_two_and_a_print_at_once_without_a_window(self):
        result = self.run_script(
            '"$0" --follow --settled | head -n 1 & "$0" --follow --settled | head -n 1 & '
            'sleep 1; "$0" --print; wait')
        self.assertEqual(result.output, "1234 grams\n" * 3)

    def test_whoever_reads_the_scale_dies(self):
        result = self.run_script(
            'cd "$XDG_CONFIG_HOME"; "$0" --follow --settled --json > settled & '
            '"$0" --follow --json > lines & '
            'until grep -q 1234 settled && grep -q \'"settled":true\' lines; do sleep 0.1; done; '
            'had=$(wc -l < lines); for process in $(pgrep -f "for-follower[s]$"); do '
            '  if grep -qzxF "XDG_CONFIG_HOME=$XDG_CONFIG_HOME" /proc/$process/environ; '
            '    then kill -9 $process; fi; done; '
            'until tail -n +$((had + 1)) lines | grep -q \'"settled":true\'; do sleep 0.1; done; '
            'kill %1 %2; cat settled')
        self.assertEqual(result.report["weight"], 1234)

    def test_nobody_who_could_read_it(self):
        lock = self.session.folder / "runtime" / "postal-scale.lock"
        with open(lock, "w", encoding="ascii") as file:
            fcntl.flock(file, fcntl.LOCK_EX)
            follower = Follower(self, environment=self.environment())
            self.assertIn("The scale cannot be read at present",
                          follower.wait_for(state="no-answer")["text"])

    def test_the_doctor_tells_of_it(self):
        result = self.run_script('"$0" --follow > "$XDG_CONFIG_HOME/lines" & '
                                 'until grep -q 1234 "$XDG_CONFIG_HOME/lines"; do sleep 0.1; done; '
                                 '"$0" --doctor; kill %1')
        self.assertIn("The scale is read for a script", result.output)

    def test_a_window_takes_the_scale_over(self):
        result = self.run_script(
            'cd "$XDG_CONFIG_HOME"; mkdir -p window/postal-scale; '
            "printf '[General]\\nlastSelectedValue=2\\n' > window/postal-scale/postal-scale.ini; "
            '"$0" --follow --json > lines & follower=$!; '
            'until grep -q 1234 lines; do sleep 0.1; done; '
            'QT_QPA_PLATFORM=offscreen XDG_CONFIG_HOME="$PWD/window" "$0" & window=$!; '
            # The window has another model.
            f'until grep {WINDOW_MODEL} lines | grep -q 1234; do sleep 0.1; done; kill $window; '
            # A window that is closed switches the scale off.
            'until grep -q \'"state":"off"\' lines; do sleep 0.1; done; kill $follower; cat lines')
        reports = [json.loads(line) for line in result.output.splitlines()]
        self.assertEqual([report["count"] for report in reports],
                         list(range(1, len(reports) + 1)))

    def test_no_setting_is_changed(self):
        for option in ("--print", "--follow --settled | head -n 1"):
            for settings in (None, "[General]\nlastSelectedValue=7\n\n[defaultValue]\n"
                                   "3=selected\n9=selected\n", "\x01 damaged"):
                with self.subTest(option=option, settings=settings):
                    result = self.run_script(
                        'cd "$XDG_CONFIG_HOME" && mkdir postal-scale; '
                        f'{self.write(settings)} ls -la --time-style=full-iso postal-scale; '
                        f'"$0" {option} >&2; ls -la --time-style=full-iso postal-scale; '
                        'cat postal-scale/*; true')
                    before, after = halves(result.output, settings or "")
                    self.assertEqual(after, before)
                    self.assertIn("1234 grams", result.errors)
                    self.wait_for_the_source_s_end()

    @staticmethod
    def write(settings):
        if settings is None:
            return ""
        return f"printf '{json.dumps(settings)[1:-1]}' > postal-scale/postal-scale.ini;"


def halves(output, settings):
    listing = output.removesuffix(settings).splitlines()
    return listing[:len(listing) // 2], listing[len(listing) // 2:]


if __name__ == "__main__":
    harness.main()

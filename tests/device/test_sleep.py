# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What logind announces. It is a stand-in that announces here; the clocks and the devices do not
sleep."""

import harness
from login_manager import LoginManager
from waiting import wait_until


class LoginManagerTest(harness.DeviceTest):
    def setUp(self):
        self.login = LoginManager(self.session)
        self.addCleanup(self.login.close)

    def start_weighing(self, **options):
        program = self.start("--weight", "1234",
                             environment={"DBUS_SYSTEM_BUS_ADDRESS": self.login.address}, **options)
        program.wait_for_reading("1234 grams")
        self.inhibitor = self.login.wait_for_inhibitor()
        return program

    def go_to_sleep(self, program):
        self.login.announce("PrepareForSleep", True)
        wait_until(lambda: not self.inhibitor.is_held(), "the program ready for sleep")
        program.scale.tell("clear-reports")

    def wake_up(self):
        self.login.announce("PrepareForSleep", False)

    def polls_in(self, program, ticks):
        """While the poll timer fires that often."""
        program.wait_for_polls(1)
        program.scale.tell("clear-reports")
        program.wait_for_polls(ticks)
        return len(program.scale.polls())


class SleepTest(LoginManagerTest):
    def test_it_asks_for_the_time_it_needs(self):
        self.start_weighing()
        self.assertEqual((self.inhibitor.what, self.inhibitor.mode), ({"sleep", "shutdown"}, "delay"))

    def test_asleep_the_scale_is_not_spoken_to_and_the_reading_is_old(self):
        program = self.start_weighing()
        self.go_to_sleep(program)
        wait_until(lambda: program.window.says("from before the sleep"), "the mark")
        self.assertTrue(program.scale.stays_without_reports(3 * harness.POLL_INTERVAL))

    def test_the_first_reading_after_it_is_fresh(self):
        program = self.start_weighing()
        self.go_to_sleep(program)
        # What has queued up for the old handle.
        program.scale.tell_all("burst 5", "weight 567")
        mark = program.log.mark()
        self.wake_up()
        wait_until(lambda: program.scale.polls(), "a poll")
        program.wait_for_reading("567 grams")
        weights = program.log.since(mark, "Basic weight")
        self.assertTrue(all(line.endswith(" 567") for line in weights), weights)
        self.assertFalse(program.window.says("from before the sleep"))
        self.check_one_timer_and_handle(program)

    def test_it_is_ready_for_the_next_sleep(self):
        program = self.start_weighing()
        for weight in ("100", "200", "300"):
            self.go_to_sleep(program)
            program.scale.tell(f"weight {weight}")
            self.wake_up()
            program.wait_for_reading(f"{weight} grams")
            self.inhibitor = self.login.wait_for_inhibitor()
        self.check_one_timer_and_handle(program)

    def test_who_announces_it_is_gone_when_the_machine_wakes_up(self):
        program = self.start_weighing()
        self.go_to_sleep(program)
        program.scale.tell("weight 567")
        self.login.close()
        program.wait_for_reading("567 grams")
        self.check_one_timer_and_handle(program)

    def test_an_end_without_a_beginning_keeps_one_inhibitor(self):
        self.start_weighing()
        for _ in range(3):
            before = len(self.login.inhibitors)
            self.wake_up()
            wait_until(lambda: len(self.login.inhibitors) > before, "another inhibitor")
        wait_until(lambda: len(self.login.held) == 1, "one of them held")

    def test_a_scale_that_comes_back_under_another_name(self):
        for announced in ("asleep", "awake"):
            with self.subTest(announced=announced):
                program = self.start_weighing()
                self.go_to_sleep(program)
                if announced == "awake":
                    self.wake_up()
                program.scale.tell("unplug")
                wait_until(lambda: program.scale.tell("open-handles") == "0", "the handle closed")
                # Takes the name that is free now.
                program.scale.tell_all("plug mouse", "plug", "weight 567")
                if announced == "asleep":
                    self.wake_up()
                program.wait_for_reading("567 grams")
                self.assertEqual(program.scale.state()["node"], "/dev/hidraw1")
                self.check_one_timer_and_handle(program)
                self.assertEqual(program.stop(), 0)

    def test_a_scale_that_is_gone_after_it(self):
        program = self.start_weighing()
        self.go_to_sleep(program)
        program.scale.tell("unplug")
        self.wake_up()
        program.wait_for_status("Scale not connected")
        program.scale.tell("plug")
        program.wait_for_reading("1234 grams")
        self.check_one_timer_and_handle(program)

    def test_a_recorded_sleep_is_shown_again(self):
        file = self.session.new_folder("record") / "scale.txt"
        program = self.start_weighing(program_arguments=("--record", file))
        self.polls_in(program, 4)
        self.go_to_sleep(program)
        program.scale.tell("weight 567")
        self.wake_up()
        program.wait_for_reading("567 grams")
        self.polls_in(program, 4)
        self.assertEqual(program.stop(), 0)

        replay = self.start("--unplugged", program_arguments=("--replay", file))
        for reading in ("1234 grams", "567 grams"):
            replay.wait_for_reading(reading)
        self.assertEqual(replay.stop(), 0)

    def test_another_device_that_goes_around_it(self):
        for gone in ("asleep", "awake"):
            with self.subTest(gone=gone):
                program = self.start_weighing()
                program.scale.tell("plug mouse")
                self.go_to_sleep(program)
                if gone == "awake":
                    self.wake_up()
                program.scale.tell_all("unplug mouse", "weight 567")
                if gone == "asleep":
                    self.wake_up()
                program.wait_for_reading("567 grams")
                self.check_one_timer_and_handle(program)
                self.assertEqual(program.stop(), 0)

    def check_one_timer_and_handle(self, program):
        # One may be under way at either end.
        self.assertLessEqual(self.polls_in(program, 4), 6)
        self.assertEqual(program.scale.tell("open-handles"), "1")


class ShutdownTest(LoginManagerTest):
    def _stop(self, program):
        program.kill()

    def test_the_scale_is_switched_off_before_the_machine(self):
        program = self.start_weighing(wrapper=harness.STAYING)
        self.login.announce("PrepareForShutdown", True)
        program.log.wait_for("^ended with 0$")
        self.assertTrue(program.scale.was_last_told_to_switch_off(), program.scale.reports()[-1:])
        self.assertFalse(self.inhibitor.is_held())

    def test_a_shutdown_that_was_called_off_changes_nothing(self):
        program = self.start_weighing()
        self.login.announce("PrepareForShutdown", False)
        program.wait_for_polls(3)
        self.assertEqual(program.window.reading, "1234 grams")


class WithoutLogindTest(harness.DeviceTest):
    def test_nothing_is_missed(self):
        for address in ("unix:path=/nonexistent/bus", "tcp:host=127.0.0.1,port=1", "nonsense"):
            with self.subTest(address=address):
                program = self.start("--weight", "1234",
                                     environment={"DBUS_SYSTEM_BUS_ADDRESS": address})
                program.wait_for_reading("1234 grams")
                program.wait_for_polls(3)
                self.assertEqual(program.stop(), 0)


class ClassScaleTest(LoginManagerTest):
    def test_what_was_held_does_not_outlive_it(self):
        program = self.start("--unplugged",
                             environment={"DBUS_SYSTEM_BUS_ADDRESS": self.login.address})
        program.scale.tell_all("say class 03040bff0c00", "plug class")
        program.wait_for_reading("1.2 ounces")
        self.inhibitor = self.login.wait_for_inhibitor()
        program.window.click("holdButton")
        program.wait_for_reading("1.2 ounces, on hold")
        self.go_to_sleep(program)
        program.scale.tell("say class 03040200d204")
        self.wake_up()
        program.wait_for_reading("1234 grams")
        program.window.click("holdButton")
        program.wait_for_reading("1234 grams, on hold")


if __name__ == "__main__":
    harness.main()

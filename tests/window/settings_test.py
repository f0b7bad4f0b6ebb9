# SPDX-License-Identifier: MIT
"""Preferences, and what is saved automatically, as users meet both.

settings_test.py PROGRAMS [unittest's arguments]: runs in a session of its own.
"""

import re
import subprocess
import sys

import story
from story import SAMPLES

SWITCH = "Save Everything New Automatically"
ALL = "46 waypoints, 14 geocaches, 6 routes, 6 tracks (2,484 points)"


class SettingsTest(story.Story):
    def setUp(self):
        super().setUp()
        self.config = self.folder / "config/magellangps/config.toml"
        self.config.parent.mkdir(parents=True)
        self.environment = {"XDG_CONFIG_HOME": str(self.folder / "config"),
                            "XDG_STATE_HOME": str(self.folder / "state")}

    def open(self, *paths):
        opened = super().open(*paths)
        opened.find("push button", "Import…")
        return opened

    def open_preferences(self):
        opened = self.open()
        opened.key("ctrl+comma")
        opened.find("label", "Times in UTC")
        return opened

    def saved(self):
        return sorted((self.folder / "saved").glob("*.gpx"))

    def configure_saving(self, *, is_on):
        state = "true" if is_on else "false"
        self.config.write_text(f'[window]\ntiles = "none"\nsave-new = {state}\n'
                               f'save-folder = "{self.folder / "saved"}"\n')

    def test_setting_is_written_and_what_people_wrote_stays(self):
        before = ("# Mine\nkeep-backups = 3 # enough\n\n"
                  "[window]\nutc = false # local\ntiles = 'none'\n")
        self.config.write_text(before)
        opened = self.open_preferences()
        opened.press("check box", "Times in UTC")
        opened.wait_until(lambda: self.config.read_text() != before)
        self.assertEqual(self.config.read_text(), before.replace("false", "true"))
        self.command_line("info")

    def test_settings_are_there_again(self):
        self.config.write_text('[window]\nunits = "nautical"\nutc = true\ntiles = "none"\n'
                               'folder = "/somewhere"\nkeep-backups = 77\n')
        opened = self.open_preferences()
        for text in ("Nautical miles and metres", "Coasts and places", "/somewhere"):
            opened.find("label", text)
        self.assertTrue(opened.is_ticked("Times in UTC"))

    def test_scale_of_the_map_has_the_units(self):
        for units, expected in (("metric", "k?m"), ("imperial", "ft|mi"), ("nautical", "k?m")):
            self.config.write_text(f'[window]\nunits = "{units}"\ntiles = "none"\n')
            opened = self.open()
            scales = [name for name in opened.names("label")
                      if re.fullmatch(r"\d+\s(k?m|ft|mi)", name)]
            self.assertEqual(len(scales), 1, scales)
            self.assertRegex(scales[0], rf"\d\s({expected})$")
            opened.__exit__()

    def test_number_of_backups_is_the_command_lines_until_it_is_changed(self):
        self.config.write_text('keep-backups = 3\n[window]\ntiles = "none"\n')
        opened = self.open_preferences()
        opened.find("spin button", "Backups").set_current_value(4)
        opened.wait_until(lambda: self.config.read_text() ==
                          'keep-backups = 3\n[window]\nkeep-backups = 4\ntiles = "none"\n')

    def test_mistake_in_the_file_is_named_with_its_line(self):
        self.config.write_text("[window]\nunits = 5\ntiles = 'none'\n")
        self.open().find("label", lambda name: 'line 2: "units" needs a text' in name)

    def test_mistake_in_what_the_command_line_reads_is_named_and_stays(self):
        for text, mistake in (('keep-backups = "many"\n', f"{self.config}, line 1: "),
                              ("[acquire]\nfromat = 1\n", f"{self.config}, line 2: "),
                              ("utc\n", "The configuration file is not TOML: line 1")):
            with self.subTest(text):
                self.config.write_text(text + "[window]\ntiles = 'none'\n")
                opened = self.open(SAMPLES / "files" / "trip.log")
                opened.find("label", "Received: 1 track (277 points).")
                opened.find("label", lambda name: mistake in name)
                opened.__exit__()

    def test_setting_that_the_window_does_not_know_is_named(self):
        self.config.write_text("[window]\ntiles = 'none'\nunit = 'metric'\n")
        self.open().find("label", lambda name: 'line 3' in name and '"units"' in name)

    def test_every_control_of_the_preferences_has_a_name(self):
        self.config.write_text('[window]\ntiles = "none"\n')
        opened = self.open_preferences()
        # What else is there is the toolkit's.
        roles = {"push button", "check box", "spin button", "combo box"}
        self.assertEqual(opened.unnamed(roles), [])

    def test_what_is_new_is_saved_once_and_listed(self):
        self.configure_saving(is_on=True)
        opened = self.open(SAMPLES / "receiver")
        opened.press("page tab", "Saving")
        opened.find("label", lambda name: name.startswith("saved: ") and ALL in name)
        self.assertEqual(len(self.saved()), 1)
        self.assertEqual(self.saved()[0].read_text().count("<trk>"), 6)
        opened.__exit__()
        again = self.open(SAMPLES / "receiver")
        again.press("page tab", "Saving")
        again.find("label", lambda name: name.startswith("nothing new: "))
        self.assertEqual(len(self.saved()), 1)

    def test_desktop_is_notified_of_what_is_saved(self):
        log = self.folder / "notifications"
        desktop = subprocess.Popen([sys.executable, "-B", "-m", "dbusmock", "--session",
                                    "-t", "notification_daemon", "-l", log])
        self.addCleanup(desktop.wait)
        self.addCleanup(desktop.terminate)
        subprocess.run(["gdbus", "wait", "--session", "org.freedesktop.Notifications"], check=True)
        self.configure_saving(is_on=True)
        opened = self.open(SAMPLES / "receiver")
        opened.wait_until(lambda: log.exists() and "Notify" in log.read_text())
        notified = log.read_text()
        self.assertIn('"Magellan device 0417002219"', notified)
        self.assertIn("saved: ", notified)
        self.assertIn(ALL, notified)

    def test_memory_is_that_of_the_command_line(self):
        self.configure_saving(is_on=True)
        opened = self.open(SAMPLES / "receiver")
        opened.press("page tab", "Saving")
        opened.find("label", lambda name: name.startswith("saved: "))
        opened.__exit__()
        file = self.folder / "new.gpx"
        self.command_line("acquire", "--device", SAMPLES / "receiver", "--new-only", "-o", file)
        self.assertFalse(file.exists())

    def test_switch_starts_saving_and_is_remembered(self):
        self.configure_saving(is_on=False)
        opened = self.open(SAMPLES / "receiver")
        opened.press("page tab", "Saving")
        opened.press("check box", SWITCH)
        opened.find("label", lambda name: name.startswith("saved: "))
        opened.wait_until(lambda: "save-new = true\n" in self.config.read_text())
        opened.press("check box", SWITCH)
        opened.wait_until(lambda: "save-new = false\n" in self.config.read_text())

    def test_switch_without_a_folder_asks_for_one_and_stays_off(self):
        before = '[window]\ntiles = "none"\n'
        self.config.write_text(before)
        opened = self.open(SAMPLES / "receiver")
        opened.press("page tab", "Saving")
        opened.press("check box", SWITCH)
        opened.find("push button", "Cancel")
        self.assertEqual(self.config.read_text(), before)

    def test_folder_that_cannot_be_made_is_named(self):
        self.config.write_text('[window]\ntiles = "none"\nsave-new = true\n'
                               'save-folder = "/dev/null/saved"\n')
        opened = self.open(SAMPLES / "receiver")
        opened.press("page tab", "Saving")
        opened.find("label", lambda name: name.startswith("failed: ") and "/dev/null" in name)


if __name__ == "__main__":
    story.main()

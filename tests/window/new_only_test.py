# SPDX-License-Identifier: MIT
"""Downloads of only what is new, and what counts as saved afterwards.

new_only_test.py PROGRAMS [unittest's arguments]: runs in a session of its own.
"""

import story
from story import SAMPLES, begins

BOX = "Only what is new"
ALL = "46 waypoints, 14 geocaches, 6 routes, 6 tracks (2,484 points)"
LEFT_OUT = f"Left out because it was saved before: {ALL}."


class NewOnlyTest(story.Story):
    def setUp(self):
        super().setUp()
        self.config = self.folder / "config/magellangps/config.toml"
        self.config.parent.mkdir(parents=True)
        self.config.write_text('[window]\ntiles = "none"\n')
        self.environment = {"XDG_CONFIG_HOME": str(self.folder / "config"),
                            "XDG_STATE_HOME": str(self.folder / "state")}

    def open_and_tick(self):
        opened = self.open(SAMPLES / "receiver")
        opened.find("label", begins("Magellan device"))
        opened.press("check box", BOX)
        opened.wait_until(lambda: opened.is_ticked(BOX))
        return opened

    def download_new(self, opened, expected):
        opened.press("push button", "Download")
        opened.find("label", expected)

    def export(self, opened, path):
        opened.press("push button", "Export…")
        opened.type("Name:", str(path))
        opened.press("push button", "Save")

    def acquire_new(self, name):
        """What the command line writes, as a text; empty for nothing."""
        file = self.folder / name
        self.command_line("acquire", "--device", SAMPLES / "receiver", "--new-only", "-o", file)
        return file.read_text() if file.exists() else ""

    def test_what_was_exported_is_left_out_of_the_next_download(self):
        opened = self.open_and_tick()
        self.download_new(opened, f"Received: {ALL}.")
        self.assertFalse(any(map(begins("Left out"), opened.names("label"))))
        self.export(opened, self.folder / "trip.gpx")
        opened.find("label", begins("Saved: "))
        self.download_new(opened, "There is nothing new.")
        opened.find("label", begins(LEFT_OUT))
        self.assertEqual(self.acquire_new("new.gpx"), "")
        opened.press("check box", BOX)
        opened.wait_until(lambda: not opened.is_ticked(BOX))
        self.download_new(opened, f"Received: {ALL}.")
        self.assertFalse(any(map(begins("Left out"), opened.names("label"))))

    def test_what_was_not_ticked_is_new_again(self):
        opened = self.open_and_tick()
        self.download_new(opened, f"Received: {ALL}.")
        opened.press("check box", "Kayak round")
        opened.find("label", "71 of 72 ticked")
        self.export(opened, self.folder / "trip.gpx")
        opened.find("label", begins("Saved: "))
        self.download_new(opened, begins("Received: 1 track ("))
        opened.find("check box", "Kayak round")
        opened.__exit__()
        text = self.acquire_new("new.gpx")
        self.assertEqual(text.count("<trk>"), 1)
        self.assertIn("Kayak round", text)

    def test_what_was_not_exported_is_new_again(self):
        opened = self.open_and_tick()
        self.download_new(opened, f"Received: {ALL}.")
        self.export(opened, "/proc/trip.gpx")
        opened.find("label", begins("The output file cannot be created"))
        opened.__exit__()
        self.assertEqual(self.acquire_new("new.gpx").count("<wpt"), 60)

    def test_what_the_command_line_has_saved_is_left_out(self):
        self.assertEqual(self.acquire_new("new.gpx").count("<wpt"), 60)
        opened = self.open_and_tick()
        self.download_new(opened, "There is nothing new.")
        opened.find("label", begins(LEFT_OUT))

    def test_export_of_an_ordinary_download_is_not_noted(self):
        opened = self.download(SAMPLES / "receiver")
        opened.find("label", f"Received: {ALL}.")
        self.export(opened, self.folder / "trip.gpx")
        opened.find("label", begins("Saved: "))
        opened.__exit__()
        self.assertEqual(self.acquire_new("new.gpx").count("<wpt"), 60)

    def test_box_is_remembered(self):
        opened = self.open_and_tick()
        opened.wait_until(lambda: "new-only = true\n" in self.config.read_text())
        opened.__exit__()
        again = self.open(SAMPLES / "receiver")
        again.find("check box", BOX)
        self.assertTrue(again.is_ticked(BOX))

    def test_box_is_ticked_if_the_command_line_has_the_option(self):
        for text in ('new-only = true\n', '[acquire]\nnew-only = true\n'):
            with self.subTest(text):
                self.config.write_text(text + '[window]\ntiles = "none"\n')
                opened = self.open(SAMPLES / "receiver")
                opened.find("check box", BOX)
                self.assertTrue(opened.is_ticked(BOX))
                opened.__exit__()


if __name__ == "__main__":
    story.main()

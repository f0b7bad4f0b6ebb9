# SPDX-License-Identifier: MIT
"""Files that take long to write, and what users do meanwhile. A pipe that nobody reads keeps an
export from ending.

export_test.py PROGRAMS [unittest's arguments]: runs in a session of its own.
"""

import os

import story
from story import SAMPLES, begins

RECEIVED = "Received: 46 waypoints, 14 geocaches, 6 routes, 6 tracks (2,484 points)."


class ExportTest(story.Story):
    def export(self, opened, path):
        opened.press("push button", "Export…")
        opened.type("Name:", str(path))
        opened.press("push button", "Save")

    def begin_export(self):
        """Opens the window, and exports into a pipe. Returns both."""
        path = self.folder / "trip.gpx"
        os.mkfifo(path)
        pipe = os.open(path, os.O_RDONLY | os.O_NONBLOCK)
        opened = self.download(SAMPLES / "receiver")
        opened.find("label", RECEIVED)
        self.export(opened, path)
        opened.press("push button", "Replace")
        opened.find("push button", "Stop the Export")
        return opened, pipe

    def read(self, pipe):
        """Everything that is written into a pipe, until it is closed."""
        os.set_blocking(pipe, True)
        with os.fdopen(pipe, "rb") as file:
            return file.read()

    def test_window_can_be_used_while_a_file_is_written(self):
        opened, pipe = self.begin_export()
        self.assertFalse(opened.can_be_used("push button", "Export…"))
        opened.press("check box", "Kayak round")
        opened.find("label", "71 of 72 ticked")
        self.assertIn(b"Kayak round", self.read(pipe))  # it was ticked then
        opened.find("label", begins("Saved: "))
        opened.wait_until(lambda: opened.can_be_used("push button", "Export…"))

    def test_export_that_is_stopped_says_that_there_is_no_file(self):
        opened, pipe = self.begin_export()
        opened.press("push button", "Stop the Export")
        opened.wait_until(lambda: not opened.can_be_used("push button", "Stop the Export"))
        self.read(pipe)
        opened.find("label", begins("Stopped: "))
        self.assertNotIn("Stop the Export", opened.names("push button"))

    def test_closing_asks_and_goes_on(self):
        opened, pipe = self.begin_export()
        opened.key("ctrl+q")
        opened.find("label", "Stop the Export?")
        opened.press("push button", "Continue")
        self.read(pipe)
        opened.find("label", begins("Saved: "))

    def test_closing_asks_and_stops(self):
        opened, pipe = self.begin_export()
        opened.key("ctrl+q")
        opened.press("push button", "Stop and Close")
        opened.wait_until(lambda: not opened.can_be_used("push button", "Stop the Export"))
        self.read(pipe)
        self.assertEqual(opened.process.wait(story.window.PATIENCE), 0)

    def test_result_of_an_export_stays_beside_that_of_an_import(self):
        opened = self.download(SAMPLES / "receiver")
        opened.find("label", RECEIVED)
        self.export(opened, "/proc/trip.gpx")
        opened.find("label", begins("The output file cannot be created"))
        self.open_also(opened, SAMPLES / "files" / "trip.log")
        opened.find("label", "Received: 1 track (277 points).")
        opened.find("label", begins("The output file cannot be created"))
        self.export(opened, self.folder / "trip.gpx")
        opened.find("label", begins("Saved: "))
        opened.wait_until(lambda: not any(map(begins("The output file cannot be created"),
                                              opened.names("label"))))

    def test_file_is_not_replaced_by_what_was_read_of_it_even_after_an_import_that_failed(self):
        source = self.folder / "source.gpx"
        source.write_text("<gpx version='1.1' xmlns='http://www.topografix.com/GPX/1/1'>"
                          "<wpt lat='46.1' lon='7.2'><name>Hut</name></wpt></gpx>")
        broken = self.folder / "broken.gpx"
        broken.write_text("<gpx")
        opened = self.open(source)
        opened.find("label", begins("Received: "))
        self.open_also(opened, broken)
        opened.find("label", "Nothing was received.")
        self.export(opened, source)
        opened.press("push button", "Replace")
        opened.find("label", begins("The file was not replaced"))


if __name__ == "__main__":
    story.main()

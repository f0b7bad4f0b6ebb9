# SPDX-License-Identifier: MIT
"""Sending, as users meet it: what they see before, what they press, and what the receiver has then.

send_test.py PROGRAMS [unittest's arguments]: runs in a session of its own.
"""

import pathlib
import shutil
import subprocess
import sys

import story
from story import SAMPLES, begins

POINTS = """<gpx version='1.1' xmlns='http://www.topografix.com/GPX/1/1'>
<wpt lat='46.1' lon='7.2'><ele>3</ele><name>H\u00fctte</name></wpt>
<wpt lat='46.2' lon='7.3'><ele>4</ele><name>Hut</name></wpt>
<rte><name>Empty</name></rte></gpx>
"""
SENT = "Sent, and read back from the receiver: 2 waypoints, into 1 file."


class SendTest(story.Story):
    def setUp(self):
        super().setUp()
        self.file = self.folder / "points.gpx"
        self.file.write_text(POINTS, encoding="utf-8")
        self.receiver = self.copy("receiver")

    def copy(self, name):
        return shutil.copytree(SAMPLES / "receiver", self.folder / name)

    def open_plan(self):
        opened = self.open(self.receiver, self.file)
        opened.find("label", begins("Magellan device"))
        opened.find("label", begins("Received: 2 waypoints"))
        opened.press("page tab", "Send")
        opened.find("label", "2 waypoints, into 1 file.")
        return opened

    def test_plan_says_what_becomes_of_each_record_and_writes_nothing(self):
        before = self.contents(self.receiver)
        opened = self.open_plan()
        opened.find("label", "as \u201cHutte\u201d")
        opened.find("label", "left out: it has no points")
        opened.find("label", begins("create: My POIs/"))
        self.assertEqual(self.contents(self.receiver), before)

    def test_send_writes_what_the_command_line_writes_and_keeps_a_backup(self):
        expected = self.copy("expected")
        self.command_line("send", self.file, "--device", expected, "--no-backup", status=1)
        before = self.contents(self.receiver)
        opened = self.open_plan()
        opened.press("push button", "Send")
        opened.find("label", SENT)
        self.assertEqual(self.contents(self.receiver), self.contents(expected))
        kept = [path for path in opened.files() if path.name == "manifest.json"]
        self.assertEqual(len(kept), 1)
        self.assertLessEqual(self.contents(kept[0].parent / "files").items(), before.items())

    def test_result_of_a_send_stays_when_something_else_is_imported(self):
        opened = self.open_plan()
        opened.press("push button", "Send")
        opened.find("label", SENT)
        self.open_also(opened, SAMPLES / "files" / "trip.log")
        opened.find("label", "Received: 1 track (277 points).")
        self.assertIn(SENT, opened.names("label"))

    def test_what_was_sent_is_on_the_receiver_and_not_sent_again(self):
        opened = self.open_plan()
        opened.press("push button", "Send")
        opened.find("label", "on the receiver already")
        opened.find("label", "The receiver has everything already.")
        self.assertFalse(opened.can_be_used("push button", "Send"))
        self.assertFalse(any(map(begins("waypoint name:"), opened.names("label"))))

    def test_record_that_is_there_twice_is_sent_once(self):
        point = "<wpt lat='46.1' lon='7.2'><ele>3</ele><name>Hut</name></wpt>"
        self.file.write_text(f"<gpx version='1.1' xmlns='http://www.topografix.com/GPX/1/1'>"
                             f"{point}{point}</gpx>", encoding="utf-8")
        opened = self.open(self.receiver, self.file)
        opened.find("label", begins("Received: 2 waypoints"))
        opened.press("page tab", "Send")
        opened.find("label", "1 waypoint, into 1 file.")
        opened.find("label", "listed more than once: sent once")
        opened.press("push button", "Send")
        opened.find("label", "The receiver has everything already.")
        self.assertNotIn("listed more than once: sent once", opened.names("label"))

    def find_plan_of_another_import(self, opened):
        self.open_also(opened, SAMPLES / "files" / "trip.log")
        opened.find("label", "Received: 1 track (277 points).")
        opened.press("page tab", "Send")
        opened.find("label", "1 track (277 points), into 1 file.")

    def test_plan_is_of_what_was_imported_last(self):
        self.find_plan_of_another_import(self.open_plan())

    def test_plan_is_of_what_was_imported_after_a_send(self):
        opened = self.open_plan()
        opened.press("push button", "Send")
        opened.find("label", "The receiver has everything already.")
        self.find_plan_of_another_import(opened)

    def test_unticked_record_is_not_sent(self):
        opened = self.open_plan()
        opened.press("check box", "Send Hut")
        opened.find("label", "1 waypoint, into 1 file.")
        opened.press("push button", "Send")
        opened.find("label", begins("Sent, and read back"))
        text = (self.receiver / "My POIs" / "Default POI File.upt").read_text()
        self.assertIn("Hutte", text)
        self.assertNotIn(",Hut,", text)

    def test_receiver_that_has_changed_since_the_plan_gets_nothing(self):
        opened = self.open_plan()
        (self.receiver / "My POIs" / "Default POI File.upt").write_bytes(
            (self.receiver / "My POIs" / "South.upt").read_bytes())
        before = self.contents(self.receiver)
        opened.press("push button", "Send")
        opened.find("label", begins("Nothing was sent, because the receiver has changed."))
        self.assertEqual(self.contents(self.receiver), before)
        opened.find("label", begins("merge into: My POIs/"))  # the new plan

    def test_geocache_is_called_one(self):
        cache = "<type>Geocache|Traditional Cache</type></wpt>"
        self.file.write_text(POINTS.replace("</wpt>", cache, 1), encoding="utf-8")
        opened = self.open(self.receiver, self.file)
        opened.find("label", begins("Received: "))
        opened.press("page tab", "Send")
        opened.find("check box", "Send Hut")
        labels = opened.names("label")[::-1]  # those of this page first
        self.assertEqual([labels[labels.index(name) - 1] for name in ("H\u00fctte", "Hut")],
                         ["Geocache", "Waypoint"])

    def test_track_that_jumps_is_sent_as_the_command_line_sends_it(self):
        points = "".join(f"<trkpt lat='46' lon='{7 + second}'><ele>400</ele>"
                         f"<time>2024-06-01T10:00:0{second}Z</time></trkpt>" for second in range(3))
        self.file.write_text("<gpx version='1.1' xmlns='http://www.topografix.com/GPX/1/1'><trk>"
                             f"<name>Jump</name><trkseg>{points}</trkseg></trk></gpx>")
        expected = self.copy("expected")
        self.command_line("send", self.file, "--device", expected, "--no-backup")
        opened = self.open(self.receiver, self.file)
        opened.find("label", begins("Received: 1 track"))
        opened.find("label", "1 track was divided into segments at 2 jumps that no receiver can "
                             "make.")
        opened.press("page tab", "Send")
        opened.press("push button", "Send")
        opened.find("label", begins("Sent, and read back from the receiver: 1 track"))
        self.assertEqual(self.contents(self.receiver), self.contents(expected))

    def open_full(self, *names):
        """The page that sends tracks to a receiver that has a number for one track only."""
        folder = self.receiver / "Track Logs"
        for number in range(998):
            (folder / f"TKLG{number:03}.log").touch()
        tracks = "".join(f"<trk><name>{name}</name><trkseg><trkpt lat='46' lon='7.{i}'/></trkseg>"
                         "</trk>" for i, name in enumerate(names))
        self.file.write_text(f"<gpx xmlns='http://www.topografix.com/GPX/1/1'>{tracks}</gpx>")
        opened = self.open(self.receiver, self.file)
        opened.find("label", begins("Received: "))
        opened.press("page tab", "Send")
        return opened

    def test_track_without_a_free_number_is_named_in_its_row_and_not_counted(self):
        opened = self.open_full("Day", "Night", "Night")
        opened.find("label", "1 track (1 point), into 1 file. Does not fit: 2 tracks (2 points).")
        labels = opened.names("label")
        self.assertEqual(labels.count("does not fit: no number is free"), 2)
        self.assertEqual([label for label in labels if "not be on the device" in label],
                         ["The track \"Night\" would not be on the device. There are 2 of these."])
        opened.find("label", begins("No number is free for another track. Remove tracks from"))

    def test_long_result_leaves_the_page_room_in_a_narrow_window(self):
        opened = self.open_full(*map(str, range(30)))
        opened.find("label", begins("1 track (1 point), into 1 file."))
        opened.resize(360, 640)
        opened.press("push button", "Send")
        sentence = opened.find("label", "Not everything was sent.")
        button = opened.widgets("push button")
        button = next(one for one in button if "Send" in opened.labels_in(one))
        opened.wait_until(lambda: opened.is_inside(button))
        self.assertGreater(sentence.get_extents(opened.IN_WINDOW).width, 200)
        self.assertGreaterEqual(len([row for row in opened.widgets("label")
                                     if row.get_name().startswith("does not fit")]), 1)

    def test_very_long_name_does_not_make_the_lines_wider_than_the_window(self):
        self.file.write_text(POINTS.replace("Hut<", "X" * 3000 + "<"), encoding="utf-8")
        opened = self.open_plan()
        line = opened.find("label", begins('waypoint name: "X'))
        self.assertTrue(opened.is_inside(line, width_only=True))

    def test_note_is_below_the_name(self):
        opened = self.open_plan()
        note = opened.find("label", "as \u201cHutte\u201d")
        name = note.get_parent().get_parent().get_child_at_index(0)
        self.assertEqual(name.get_name(), "H\u00fctte")
        note, name = note.get_extents(opened.IN_WINDOW), name.get_extents(opened.IN_WINDOW)
        self.assertGreaterEqual(note.y, name.y + name.height)

    def test_receiver_that_is_deleted_is_not_sent_to_and_disappears(self):
        opened = self.open_plan()
        shutil.rmtree(self.receiver)
        opened.press("push button", "Send")
        opened.find("label", "Nothing was sent.")
        opened.find("label", begins("The receiver is not there any more. Plug it in again, or open "
                                    "it again if it is a folder."))
        opened.wait_until(lambda: str(self.receiver) not in opened.names("label"))

    def drag_file(self, opened):
        """Drags the file from another program's window onto the middle of this one."""
        source = subprocess.Popen(
            [sys.executable, "-B", pathlib.Path(__file__).with_name("drag_source.py"), self.file],
            env=opened.environment, stdout=subprocess.PIPE, text=True)
        self.addCleanup(source.stdout.close)
        self.addCleanup(source.wait)
        self.addCleanup(source.terminate)
        self.assertEqual(source.stdout.readline(), "ready\n")
        way = [("mousemove", "1150", "40"), ("mousedown", "1"), ("mousemove", "1130", "60"),
               ("mousemove", "900", "300"), ("mousemove", "700", "400"),
               ("mousemove", "698", "400"), ("mouseup", "1")]
        for step in way:
            subprocess.run(["xdotool", *step, "sleep", "0.3"], check=True)

    def test_file_that_is_dragged_onto_the_window_is_what_would_be_sent(self):
        opened = self.open(self.receiver)
        opened.find("label", begins("Magellan device"))
        self.drag_file(opened)
        opened.find("label", begins("Received: 2 waypoints"))
        opened.find("label", "2 waypoints, into 1 file.")

    def test_serial_port_cannot_be_sent_to(self):
        opened = self.open(self.file)
        opened.find("label", begins("Received: 2 waypoints"))
        opened.press("page tab", "Send")
        opened.find("label", "Nothing to Send")


if __name__ == "__main__":
    story.main()

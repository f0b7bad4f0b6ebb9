# SPDX-License-Identifier: MIT
"""The window, as its users meet it: what they press, and what they see then.

window_test.py PROGRAMS [unittest's arguments]: runs in a session of its own.
"""

import shutil
import subprocess

import story
import window
from gi.repository import Atspi
from story import PROGRAMS, RECEIVED, SAMPLES, begins

GERMAN = """msgid ""
msgstr "Content-Type: text/plain; charset=UTF-8\\n"
"Plural-Forms: nplurals=2; plural=n != 1;\\n"

msgid "Receivers"
msgstr "Empf\u00e4nger"

msgid "Received: {}."
msgstr "Empfangen: {}."

msgid "{} track"
msgid_plural "{} tracks"
msgstr[0] "{} Spur"
msgstr[1] "{} Spuren"

msgid "{} point"
msgid_plural "{} points"
msgstr[0] "{} Punkt"
msgstr[1] "{} Punkte"

msgid "Length"
msgstr "L\u00e4nge"

msgid "The elevation of {} is unknown and will be stored as 0."
msgstr "H\u00f6he unbekannt, wird 0: {}."

msgid "{} waypoint"
msgid_plural "{} waypoints"
msgstr[0] "{} Wegpunkt"
msgstr[1] "{} Wegpunkte"

msgid "waypoint"
msgstr "Wegpunkt"

msgid "name"
msgstr "Name"

msgid "{} {}: \\"{}\\" becomes \\"{}\\""
msgstr "{} {}: \u201e{}\u201c wird \u201e{}\u201c"
"""


class WindowTest(story.Story):
    def test_download_is_counted_and_listed(self):
        opened = self.download(SAMPLES / "receiver")
        opened.find("label", RECEIVED)
        opened.find("check box", "Kayak round")
        opened.find("label", "2008-12-18 21:03 · 5.40 km · 1 h 39 min · 23 m up")

    def test_export_writes_what_the_command_line_writes(self):
        opened = self.download(SAMPLES / "receiver")
        opened.find("label", RECEIVED)
        for name in ("trip.gpx", "trip.kml", "trip.geojson", "trip.csv"):
            with self.subTest(name):
                self.export(opened, name)
                opened.find("label", begins(f"Saved: {self.folder / name}"))
                expected = self.folder / "expected" / name
                expected.parent.mkdir(exist_ok=True)
                self.command_line("acquire", "--device", SAMPLES / "receiver", "-o", expected)
                self.assertEqual((self.folder / name).read_text(), expected.read_text())

    def test_unticked_record_is_not_exported(self):
        opened = self.download(SAMPLES / "receiver")
        opened.press("check box", "Kayak round")
        opened.wait_until(lambda: not opened.is_ticked("Kayak round"))
        self.export(opened, "trip.gpx")
        opened.find("label", begins("Saved: "))
        text = (self.folder / "trip.gpx").read_text()
        self.assertNotIn("Kayak round", text)
        self.assertIn("Lake way back", text)

    def test_kind_that_is_not_wanted_is_not_downloaded(self):
        opened = self.open(SAMPLES / "receiver")
        opened.find("label", begins("Magellan device"))
        opened.press("check box", "Routes")
        opened.press("check box", "Tracks")
        opened.wait_until(lambda: not opened.is_ticked("Tracks"))
        opened.press("push button", "Download")
        opened.find("label", "Received: 46 waypoints, 14 geocaches.")

    def test_no_kind_at_all_cannot_be_downloaded(self):
        opened = self.open(SAMPLES / "receiver")
        opened.find("label", begins("Magellan device"))
        for kind in ("Waypoints and geocaches", "Routes", "Tracks"):
            opened.press("check box", kind)
        opened.wait_until(lambda: not opened.can_be_used("push button", "Download"))

    def test_file_is_imported(self):
        opened = self.open(SAMPLES / "files" / "trip.log")
        opened.find("label", "Received: 1 track (277 points).")
        opened.find("check box", "Autumn walk")

    def test_damaged_file_is_accounted_for(self):
        damaged = self.folder / "damaged.log"
        text = (SAMPLES / "files" / "trip.log").read_bytes()
        damaged.write_bytes(text.replace(b",N,", b",X,", 1))
        opened = self.open(damaged)
        opened.find("label", begins("Received: 1 track (276 points)"))
        opened.find("label", lambda name: "1 damaged" in name)

    def test_missing_file_is_named(self):
        opened = self.open(self.folder / "missing.log")
        opened.find("label", "Nothing was received.")
        opened.find("label", lambda name: "missing.log" in name)

    def test_hostile_name_is_a_text(self):
        name = "<b>&amp;</b>"
        hostile = self.folder / "hostile.gpx"
        hostile.write_text('<gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1">'
                           '<wpt lat="1" lon="2"><name>&lt;b&gt;&amp;amp;&lt;/b&gt;</name></wpt>'
                           "</gpx>")
        opened = self.open(hostile)
        opened.find("check box", name)

    def test_unknown_extension_is_refused_and_nothing_is_written(self):
        opened = self.download(SAMPLES / "receiver")
        opened.find("label", RECEIVED)
        self.export(opened, "trip.xyz")
        opened.find("label", begins("The name of the file must end in one of these: "))
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_imported_file_is_not_overwritten(self):
        source = self.folder / "source.gpx"
        source.write_text('<gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1">'
                          '<wpt lat="1" lon="2"><name>A</name><extensions/></wpt></gpx>')
        before = source.read_text()
        opened = self.open(source)
        opened.find("check box", "A")
        self.export(opened, "source.gpx")
        opened.press("push button", "Replace")
        opened.find("label", begins("The file was not replaced"))
        self.assertEqual(source.read_text(), before)

    def test_folder_that_is_no_receiver_is_explained(self):
        opened = self.open(SAMPLES / "files")
        opened.press("push button", "Why Is Mine Missing?")
        opened.find("label", lambda name: "UNIT_ID.DAT" in name)

    def test_folder_with_files_of_a_receiver_is_imported(self):
        shutil.copy(SAMPLES / "files" / "points.upt", self.folder)
        opened = self.open(self.folder)
        opened.find("label", begins("Received: "))

    def test_receiver_whose_folder_is_deleted_is_explained_and_disappears(self):
        folder = shutil.copytree(SAMPLES / "receiver", self.folder / "copy")
        opened = self.open(folder)
        opened.find("label", begins("Magellan device"))
        shutil.rmtree(folder)
        opened.press("push button", "Download")
        opened.find("label", begins("The receiver is not there any more. Plug it in again, or open "
                                    "it again if it is a folder."))
        opened.wait_until(lambda: str(folder) not in opened.names("label"))

    def test_file_that_is_not_a_receivers_is_to_be_copied_again(self):
        file = self.folder / "random.upt"
        file.write_bytes(b"\x80\x01\x02" * 100)
        self.open(file).find("label", lambda name: "Copy the file from the receiver again" in name)

    def test_folder_that_is_opened_is_selected(self):
        copies = [shutil.copytree(SAMPLES / "receiver", self.folder / name) for name in "ab"]
        opened = self.open(copies[0])
        opened.find("label", str(copies[0]))
        self.open_also(opened, copies[1])
        opened.find("label", str(copies[1]))
        opened.press("push button", "Download")
        opened.find("label", RECEIVED)
        opened.press("page tab", "Send")
        opened.wait_until(lambda: opened.selected_row() == str(copies[1]))

    def test_fewer_records_replace_those_of_which_one_is_selected(self):
        opened = self.download(SAMPLES / "receiver")
        opened.find("label", RECEIVED)
        opened.click("label", "Coast Walk")
        self.open_also(opened, SAMPLES / "files" / "trip.log")
        opened.find("label", begins("Received: 1 track"))

    def test_import_that_brings_nothing_keeps_what_is_shown(self):
        bad = self.folder / "bad.gpx"
        bad.write_text("hello")
        opened = self.download(SAMPLES / "receiver")
        opened.find("label", RECEIVED)
        self.open_also(opened, bad)
        opened.find("label", "Nothing was received.")
        self.assertIn("Kayak round", opened.names("label"))

    def test_folders_and_files_are_imported_together(self):
        card = self.folder / "card"
        card.mkdir()
        shutil.copy(SAMPLES / "files" / "points.upt", card)
        opened = self.open(card, SAMPLES / "files" / "trip.log")
        opened.find("label", lambda text: "waypoints" in text and "277 points" in text)

    def test_export_of_what_is_not_complete_says_so(self):
        part = self.folder / "part.gpx"
        part.write_text('<gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1">'
                        '<wpt lat="1" lon="2"/><wpt lat="99" lon="2"/></gpx>')
        opened = self.open(part)
        opened.find("label", "Received, but not complete: 1 waypoint.")
        self.export(opened, "out.gpx")
        opened.find("label", "What was received is not complete.")

    def test_file_of_another_kind_is_named(self):
        text = self.folder / "notes.txt"
        text.write_text("notes")
        opened = self.open(text)
        opened.find("label", begins("This file cannot be imported"))

    def test_without_a_receiver_nothing_is_selected(self):
        opened = self.open()
        opened.find("label", begins("Plug a receiver in."))
        self.assertNotIn("Download", opened.names("push button"))
        self.assertNotIn("Routes", opened.names("check box"))
        opened.press("push button", "Why Is Mine Missing?")
        opened.find("label", lambda name: "(built-in volume), skipped: " in name)

    def test_keys_show_each_page(self):
        opened = self.open()
        opened.find("page tab", "Records")
        for key, page in ("2", "Send"), ("3", "Backups"), ("4", "Saving"), ("1", "Records"):
            opened.key("ctrl+" + key)
            opened.wait_until(lambda: page in opened.selected_tabs())

    def test_every_control_has_a_name(self):
        opened = self.download(SAMPLES / "receiver")
        opened.find("label", RECEIVED)
        opened.click("label", "Kayak round")
        for page in ("Send", "Saving", "Records"):
            opened.press("page tab", page)
            opened.find("label", begins("The receiver has everything") if page == "Send" else page)
            self.assertEqual(opened.unnamed(), [])

    def open_in_german(self, *paths):
        programs = shutil.copytree(PROGRAMS, self.folder / "bin", symlinks=True)
        messages = self.folder / "share" / "locale" / "de" / "LC_MESSAGES"
        messages.mkdir(parents=True)
        subprocess.run(["msgfmt", "-", "-o", messages / "magellangps-desktop.mo"], check=True,
                       text=True, input=GERMAN)
        return window.Window(programs / "magellangps-desktop", *paths,
                             environment={"LANGUAGE": "de"})

    def test_texts_are_those_of_the_users_language(self):
        with self.open_in_german(SAMPLES / "files" / "trip.log") as opened:
            opened.find("label", "Empf\u00e4nger")
            opened.find("label", "Records")  # has no translation here
            opened.find("label", "Empfangen: 1 Spur (277 Punkte).")
            opened.click("label", "Autumn walk")
            opened.find("label", "L\u00e4nge")

    def test_plan_of_a_send_is_in_the_users_language(self):
        points = self.folder / "points.gpx"
        points.write_text('<gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1">'
                          '<wpt lat="46.1" lon="7.2"><name>H\u00fctte</name></wpt>'
                          '<wpt lat="46.2" lon="7.3"><name>Hut</name></wpt></gpx>',
                          encoding="utf-8")
        receiver = shutil.copytree(SAMPLES / "receiver", self.folder / "receiver")
        with self.open_in_german(receiver, points) as opened:
            opened.find("label", begins("Empfangen: 2 Wegpunkte"))
            opened.press("page tab", "Send")
            opened.find("label", "H\u00f6he unbekannt, wird 0: 2 Wegpunkte.")
            opened.find("label", "Wegpunkt Name: \u201eH\u00fctte\u201c wird \u201eHutte\u201c")

    def test_window_from_right_to_left_has_figures_and_maps_from_left_to_right(self):
        self.environment = dict(self.environment, LANGUAGE="he")
        opened = self.download(SAMPLES / "receiver")
        opened.find("label", RECEIVED)
        opened.click("label", "Kayak round")
        opened.find("label", begins("5.40 km \u00b7 1 h 39 min \u00b7"))

        def left_edge(role, name):
            return opened.find(role, name).get_extents(Atspi.CoordType.WINDOW).x
        self.assertGreater(left_edge("push button", "Download"), left_edge("filler", "Map"))
        for page in ("Send", "Backups", "Saving", "Records"):
            opened.press("page tab", page)
        opened.find("label", str(SAMPLES / "receiver"))


if __name__ == "__main__":
    story.main()

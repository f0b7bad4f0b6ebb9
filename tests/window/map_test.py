# SPDX-License-Identifier: MIT
"""The map of the window: what it says, what a click selects, and which map is below the records.

map_test.py PROGRAMS [unittest's arguments]: runs in a session of its own.
"""

import re
import sqlite3
import subprocess
import time

import story
from gi.repository import Atspi

INSET = (-20, 5)  # pixels from the middle of the map to the middle of what it is fitted to
MAP_ROLE = "filler"
FRAME = 5  # pixels around a window
ACTIONS = ("--session", "--dest", "com.orvane.MagellanGPS", "--object-path",
           "/com/orvane/MagellanGPS/window/1")


def gpx(*waypoints):
    points = "".join(f'<wpt lat="{latitude}" lon="{longitude}"><name>{name}</name></wpt>'
                     for name, latitude, longitude in waypoints)
    return f'<gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1">{points}</gpx>'


class MapTest(story.Story):
    def open_waypoints(self, *waypoints):
        path = self.folder / "points.gpx"
        path.write_text(gpx(*waypoints))
        opened = self.open(path)
        opened.find("label", story.begins("Received: "))
        return opened

    def test_download_far_from_what_is_shown_can_be_drawn(self):
        self.environment = dict(story.WHEN, G_DEBUG="fatal-criticals")  # of the renderer
        opened = self.open_waypoints(("House", 46.5, 7.9))
        self.map_area(opened)  # has been painted by now
        self.open_also(opened, story.SAMPLES / "receiver")
        opened.find("label", story.begins("Magellan device"))
        opened.press("push button", "Download")
        opened.find("label", story.RECEIVED)
        self.map_area(opened)
        opened.find("label", "72 of 72 ticked")

    def map_area(self, opened):
        """Where the map is, once nothing above it moves any more."""
        found = opened.find(MAP_ROLE, "Map")
        before = None
        while True:
            area = found.get_extents(Atspi.CoordType.WINDOW)
            place = (area.x, area.y, area.width, area.height)
            if place == before:
                return place
            before = place
            time.sleep(1)

    def click_map(self, opened, dx=0, dy=0):
        x, y, width, height = self.map_area(opened)
        position = (x + width // 2 + INSET[0] + dx + FRAME, y + height // 2 + INSET[1] + dy + FRAME)
        subprocess.run(["xdotool", "mousemove", *map(str, position), "click", "1"], check=True)

    def map_source(self):
        answer = subprocess.run(["gdbus", "call", *ACTIONS, "--method", "org.gtk.Actions.Describe",
                                 "map-source"], check=True, capture_output=True, text=True)
        return answer.stdout

    def choose_map_file(self, opened, path):
        subprocess.run(["gdbus", "call", *ACTIONS, "--method", "org.gtk.Actions.Activate",
                        "map-source", "[<'file'>]", "{}"], check=True, stdout=subprocess.DEVNULL)
        opened.find("push button", "Open")
        subprocess.run(["xdotool", "type", "--delay", "30", str(path)], check=True)
        time.sleep(1)  # the dialog cannot be looked into: window.py tells why
        subprocess.run(["xdotool", "key", "Return"], check=True)

    def test_map_without_records_says_how_to_get_some(self):
        self.open().find("label", "Download from a receiver or import a file to see its records "
                                  "here.")

    def test_click_on_a_waypoint_selects_it(self):
        opened = self.open_waypoints(("Hut", 46, 7))
        self.click_map(opened)
        opened.find("label", "Location")

    def scales(self, opened):
        return [name for name in opened.names("label")
                if re.fullmatch(r"\d+\s(m|km|ft|mi)", name)]

    def test_keys_move_the_map_and_change_its_scale(self):
        opened = self.open_waypoints(("Hut", 46, 7))
        self.click_map(opened, dx=100)  # where nothing is
        opened.key("Right", "Down", "Down", "Up")
        self.click_map(opened, dx=-80, dy=-80)
        opened.find("label", "Location")
        before = self.scales(opened)
        opened.key("plus")
        opened.wait_until(lambda: self.scales(opened) != before)
        opened.key("minus")
        opened.wait_until(lambda: self.scales(opened) == before)

    def test_record_near_a_pole_is_told(self):
        opened = self.open_waypoints(("Pole", 89, 0), ("Hut", 46, 7))
        opened.find("label", "1 record is nearer to a pole than this map shows, and is drawn at "
                             "its edge.")

    def test_nothing_ticked_is_told(self):
        opened = self.open_waypoints(("Hut", 46, 7))
        opened.press("push button", "None")
        opened.find("label", "No record is ticked, so none is shown on the map.")

    def test_tiles_of_a_file_are_named(self):
        path = self.folder / "alps.mbtiles"
        subprocess.run(["convert", "-size", "256x256", "xc:red", self.folder / "tile.png"],
                       check=True)
        with sqlite3.connect(path) as tiles:
            tiles.execute("CREATE TABLE metadata (name text, value text)")
            tiles.execute("CREATE TABLE tiles (zoom_level int, tile_column int, tile_row int, "
                          "tile_data blob)")
            tiles.execute("INSERT INTO metadata VALUES ('attribution', 'Survey of the Alps')")
            tiles.execute("INSERT INTO tiles VALUES (0, 0, 0, ?)",
                          [(self.folder / "tile.png").read_bytes()])
        opened = self.open_waypoints(("Hut", 46, 7))
        self.choose_map_file(opened, path)
        opened.find("label", story.begins("Survey of the Alps"))
        self.assertIn("'file'", self.map_source())

    def test_file_that_is_no_map_is_told_and_the_map_stays(self):
        path = self.folder / "bad.mbtiles"
        path.write_text("no map")
        opened = self.open_waypoints(("Hut", 46, 7))
        before = self.map_source()
        self.choose_map_file(opened, path)
        opened.find("label", story.begins(f"{path}: this is not a map file."))
        self.assertEqual(self.map_source(), before)

    def test_controls_have_names(self):
        opened = self.open()
        for name in ("Show Everything", "Zoom In", "Zoom Out"):
            opened.find("push button", name)


if __name__ == "__main__":
    story.main()

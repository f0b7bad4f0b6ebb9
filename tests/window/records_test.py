# SPDX-License-Identifier: MIT
"""The list of records and what is beside it: searched, sorted, ticked and selected by users.

records_test.py PROGRAMS [unittest's arguments]: runs in a session of its own.
"""

import story
from gi.repository import Atspi
from story import begins


def gpx(*waypoints):
    """A map file with waypoints, each a name with latitude and longitude."""
    points = "".join(f'<wpt lat="{latitude}" lon="{longitude}"><name>{name}</name></wpt>'
                     for name, latitude, longitude in waypoints)
    return f'<gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1">{points}</gpx>'


class RecordsTest(story.Story):
    def download(self):
        opened = super().download(story.SAMPLES / "receiver")
        opened.find("check box", "Kayak round")
        return opened

    def open_waypoints(self, *waypoints):
        file = self.folder / "points.gpx"
        file.write_text(gpx(*waypoints))
        opened = self.open(file)
        opened.find("check box", waypoints[0][0])
        return opened

    def listed(self, opened):
        """The names of the rows, from top to bottom."""
        boxes = [box for box in opened.widgets("check box") if box.get_name() not in
                 ("Waypoints and geocaches", "Routes", "Tracks", "Only what is new",
                  "Save Everything New Automatically")]
        return [box.get_name() for box in boxes]

    def search(self, opened, text):
        opened.key("ctrl+f", "ctrl+a", "BackSpace")
        opened.write(text)

    def choose(self, opened, item):
        opened.press("push button", "Sort")
        opened.click("menu item", item)
        opened.wait_until(lambda: item not in opened.names("menu item"))

    def test_click_on_a_row_selects_it_and_ticks_nothing(self):
        opened = self.download()
        opened.click("label", "Kayak round")
        opened.find("label", "77 km north-west of Río Turbio")
        self.assertTrue(opened.is_ticked("Kayak round"))
        opened.find("label", "72 of 72 ticked")

    def test_click_on_the_box_unticks(self):
        opened = self.download()
        opened.press("check box", "Kayak round")
        opened.find("label", "71 of 72 ticked")
        self.assertFalse(opened.is_ticked("Kayak round"))

    def test_arrow_selects_and_space_unticks(self):
        opened = self.download()
        opened.click("label", "Kayak round")
        opened.find("label", "77 km north-west of Río Turbio")
        opened.key("Down")
        opened.find("label", "near Wanaka")
        opened.key("space")
        opened.find("label", "71 of 72 ticked")
        self.assertTrue(opened.is_ticked("Kayak round"))
        self.assertFalse(opened.is_ticked("Up to the saddle"))

    def test_search_ignores_case_and_accents(self):
        opened = self.open_waypoints(("Zürich", 47, 8), ("Bern", 46, 7), ("zurich lake", 47, 8))
        opened.find("check box", "Bern")
        self.search(opened, "ZURICH")
        opened.wait_until(lambda: self.listed(opened) == ["Zürich", "zurich lake"])
        self.search(opened, "")
        opened.wait_until(lambda: self.listed(opened) == ["Zürich", "Bern", "zurich lake"])

    def test_search_that_finds_nothing_says_so(self):
        opened = self.open_waypoints(("Bern", 46, 7))
        self.search(opened, "Basel")
        opened.find("label", "No record has these words in its name or its details.")
        self.assertEqual(self.listed(opened), [])

    def test_tick_none_after_a_search_unticks_what_was_found(self):
        opened = self.open_waypoints(("Zürich", 47, 8), ("Bern", 46, 7), ("Zug", 47, 8))
        self.search(opened, "z")
        opened.wait_until(lambda: self.listed(opened) == ["Zürich", "Zug"])
        opened.press("push button", "None")
        opened.find("label", "1 of 3 ticked")
        self.search(opened, "")
        opened.find("check box", "Bern")
        self.assertTrue(opened.is_ticked("Bern"))
        self.assertFalse(opened.is_ticked("Zug"))
        opened.press("push button", "Tick All")
        opened.find("label", "3 of 3 ticked")

    def test_rows_are_sorted_by_name_and_back(self):
        opened = self.open_waypoints(("Day 10", 47, 8), ("Day 2", 46, 7), ("Äpfel", 47, 8))
        self.choose(opened, "Name")
        opened.wait_until(lambda: self.listed(opened) == ["Äpfel", "Day 2", "Day 10"])
        self.choose(opened, "Reverse Order")
        opened.wait_until(lambda: self.listed(opened) == ["Day 10", "Day 2", "Äpfel"])

    def test_rows_are_sorted_by_distance_from_the_selected_one(self):
        opened = self.open_waypoints(("A", 47, 8), ("B", 10, 8), ("C", 48, 8))
        opened.click("label", "C")
        opened.find("label", "48.00000° N, 8.00000° E")
        self.choose(opened, "Distance from the Selected")
        opened.wait_until(lambda: self.listed(opened) == ["C", "A", "B"])

    def test_unticked_records_are_not_exported_after_sorting(self):
        opened = self.open_waypoints(("B", 47, 8), ("A", 10, 8))
        self.choose(opened, "Name")
        opened.wait_until(lambda: self.listed(opened) == ["A", "B"])
        opened.press("check box", "A")
        opened.find("label", "1 of 2 ticked")
        opened.press("push button", "Export…")
        opened.type("Name:", str(self.folder / "trip.csv"))
        opened.press("push button", "Save")
        opened.find("label", begins("Saved: "))
        text = (self.folder / "trip.csv").read_text()
        self.assertIn(",B,", text)
        self.assertNotIn(",A,", text)

    def test_details_of_a_geocache_are_shown(self):
        opened = self.download()
        self.search(opened, "cache")
        opened.wait_until(lambda: 0 < len(self.listed(opened)) < 20)
        opened.click("label", begins("Geocache"))
        opened.find("label", "Geocache")
        opened.find("label", "Difficulty")

    def select_track(self, opened, name):
        """Selects a track, and moves the keyboard to the start of its profile."""
        opened.click("label", name)
        opened.click("slider", begins("Profile."))
        opened.key("Home")

    def test_profile_is_read_with_keys(self):
        opened = self.download()
        self.select_track(opened, "Kayak round")
        opened.find("label", begins("0.00 km · "))
        opened.key("End")
        opened.find("label", lambda name: begins("5.40 km · ")(name) and
                    name.endswith("2008-12-18 22:42:06 Punta Arenas time"))
        opened.key("ctrl+Left")
        opened.find("label", lambda name: " · 2008-12-18 22:4" in name)

    def test_stretch_of_all_points_has_the_figures_of_the_track(self):
        opened = self.download()
        self.select_track(opened, "Kayak round")
        opened.key("shift+End")
        opened.find("label", lambda name: begins("Stretch: 5.40 km · 1 h 39 min · ")(name) and
                    "23 m up, 23 m down" in name)
        opened.key("Escape")
        opened.wait_until(lambda: not any(map(begins("Stretch"), opened.names("label"))))

    def test_figures_of_the_track_are_among_its_details(self):
        opened = self.download()
        opened.click("label", "Kayak round")
        opened.find("label", "Top speed")
        opened.find("label", "Average moving")

    def test_profile_is_shown_over_time(self):
        opened = self.download()
        self.select_track(opened, "Kayak round")
        opened.press("push button", "Time")
        opened.click("slider", begins("Profile."))
        opened.key("End")
        opened.find("label", begins("5.40 km · "))

    def open_track(self, points):
        file = self.folder / "track.gpx"
        file.write_text('<gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1"><trk>'
                        f"<name>A</name><trkseg>{points}</trkseg></trk></gpx>")
        opened = self.open(file)
        opened.click("label", "A")
        return opened

    def test_track_without_times_says_so(self):
        opened = self.open_track('<trkpt lat="1" lon="2"><ele>5</ele></trkpt>'
                                 '<trkpt lat="1.1" lon="2"><ele>6</ele></trkpt>')
        opened.find("label", "This track has no times, and so no speeds.")
        self.assertFalse(opened.can_be_used("push button", "Time"))

    def test_track_without_heights_and_times_says_so(self):
        opened = self.open_track('<trkpt lat="1" lon="2"/><trkpt lat="1.1" lon="2"/>')
        opened.find("label", "This track has neither heights nor times.")

    def test_track_of_one_point_says_so(self):
        opened = self.open_track('<trkpt lat="1" lon="2"><ele>5</ele></trkpt>')
        opened.find("label", "A track without length has no profile.")

    def test_narrow_window_shows_the_map_or_the_profile_of_a_record(self):
        opened = self.download()
        opened.resize(360, 640)
        opened.press("push button", "Show the Map")
        opened.wait_until(lambda: self.height_of_map(opened) > 300)
        opened.press("push button", "Back to the List")
        opened.click("label", "Kayak round")
        opened.press("push button", "Show the Map")
        opened.press("page tab", "Profile")
        opened.find("label", begins("5.40 km"))
        opened.resize(1100, 720)
        opened.wait_until(lambda: self.height_of_map(opened) < 330)

    def height_of_map(self, opened):
        return opened.find("filler", "Map").get_extents(Atspi.CoordType.WINDOW).height


if __name__ == "__main__":
    story.main()

#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The page in a browser, from the user's side.

Usage: page_test.py PROGRAM SAMPLES [TEST...]. Exit status 77 if there is no browser.
"""

import base64
import json
import math
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import states

try:
    from browser import Browser
except ImportError:
    Browser = None

DATA_START = '<script type="application/json" id="data">'
HOSTILE = "</script><script>window.wasHere=1</script><img src=x onerror=window.wasHere=1>&amp;'\""

# Counts the line segments drawn on the map, and measures how wide the widest is, in pixels.
WATCH_LINES = """
    window.drawn = { segments: 0, longest: 0 };
    {
        const canvas = CanvasRenderingContext2D.prototype;
        const { beginPath, moveTo, lineTo, stroke } = canvas;
        let at = null, lengths = [];
        canvas.beginPath = function () { lengths = []; beginPath.call(this); };
        canvas.moveTo = function (x, y) { at = [x, y]; moveTo.call(this, x, y); };
        canvas.lineTo = function (x, y) {
            lengths.push(Math.abs(x - at[0]));
            at = [x, y];
            lineTo.call(this, x, y);
        };
        canvas.stroke = function (...path) {
            if (this.lineWidth > 1) { // without the graticule
                drawn.segments += lengths.length;
                drawn.longest = lengths.reduce((a, b) => Math.max(a, b), drawn.longest);
            }
            stroke.call(this, ...path);
        };
    }
"""


def sentence(body):
    check = 0
    for character in body:
        check ^= ord(character)
    return f"${body}*{check:02X}\r\n"


def angle(degrees, letters, width):
    whole = int(abs(degrees))
    return f"{whole:0{width}d}{(abs(degrees) - whole) * 60:06.3f},{letters[degrees < 0]}"


def track_point(latitude, longitude, elevation, second, name):
    clock = f"{second // 3600 % 24:02d}{second // 60 % 60:02d}{second % 60:02d}.00"
    position = f"{angle(latitude, 'NS', 2)},{angle(longitude, 'EW', 3)}"
    day = f"{1 + second // 86400:02d}0608"
    return sentence(f"PMGNTRK,{position},{elevation:05d},M,{clock},A,{name},{day}")


def long_track(count=100000):
    """A track that goes to and fro across the whole map."""
    return [track_point(46 + 0.2 * abs(i * 37 % 20000 / 10000 - 1) * (i % 7 / 700 + 1),
                        7 + i / 200000, 500 + i % 300, 2 * i, "Long") for i in range(count)]


# Items in the form of the page's data.
def raw_track(name, points):
    return {"name": name, "points": points, "kilometres": 0, "first": None, "last": None,
            "ascent": None, "descent": None, "moving": None}


def raw_route(name, points=()):
    return {"name": name, "comment": name, "kilometres": 0, "points": list(points)}


# Keys as Selenium sends them.
PAGE_UP, PAGE_DOWN, END, HOME = "\ue00e", "\ue00f", "\ue010", "\ue011"
LEFT, RIGHT, SHIFT, ENTER, ESCAPE = "\ue012", "\ue014", "\ue008", "\ue007", "\ue00c"


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="page-test-")
        cls.browser = Browser()
        cls.browser.command("Page.addScriptToEvaluateOnNewDocument", source=WATCH_LINES)
        cls.sample = f"{cls.folder}/sample.html"
        cls.run_program("acquire", "--device", f"{SAMPLES}/receiver", "-o", cls.sample)
        cls.empty = cls.filled({})

    @classmethod
    def tearDownClass(cls):
        cls.browser.__exit__()
        shutil.rmtree(cls.folder)

    def setUp(self):
        self.browser.resize(1280, 900)
        self.browser.use_theme("light")

    def tearDown(self):
        self.browser.command("Emulation.setScriptExecutionDisabled", value=False)
        self.browser.run("localStorage.clear()")
        self.assertEqual(self.browser.complaints(), [])

    @staticmethod
    def run_program(*words):
        subprocess.run([PROGRAM, *words, "-q"], check=True)

    @classmethod
    def imported(cls, lines):
        source, page = f"{cls.folder}/import.log", f"{cls.folder}/import.html"
        pathlib.Path(source).write_text("".join(lines), encoding="ascii", newline="")
        cls.run_program("import", source, "-o", page)
        return page

    @classmethod
    def filled(cls, data):
        """Writes a page with the test's data and returns its path."""
        lists = ("areas", "places", "land", "icons", "waypoints", "geocaches", "routes", "tracks")
        texts = {"title": "", "receiver": "", "identifier": "", "made": None, "note": "",
                 "tiles": {"url": "", "attribution": ""}}
        whole = {**texts, **{name: [] for name in lists}, **data}
        text = re.sub("[<>&]", lambda found: f"\\u{ord(found[0]):04x}", json.dumps(whole))
        head, tail = pathlib.Path(cls.sample).read_text(encoding="utf-8").split(DATA_START)
        page = f"{cls.folder}/filled.html"
        tail = tail[tail.index("</script>"):]
        pathlib.Path(page).write_text(head + DATA_START + text + tail, encoding="utf-8")
        return page

    def text(self, selector):
        return self.browser.ask("document.querySelector(arguments[0]).textContent", selector)

    def texts(self, selector):
        return self.browser.ask("""Array.from(document.querySelectorAll(arguments[0]),
            (one) => one.textContent)""", selector)

    def column(self, table, number):
        return self.texts(f"#table-{table} td:nth-child({number})")

    def lengths(self):
        """The lengths in the table of tracks, in kilometres."""
        return [float(text.removesuffix(" km")) for text in self.column("tracks", 8)]

    def count(self, selector):
        return self.browser.ask("document.querySelectorAll(arguments[0]).length", selector)

    def is_shown(self, selector):
        return self.browser.ask("document.querySelector(arguments[0]).checkVisibility()", selector)

    def point(self, track, index):
        """The position of a track's point, in the window."""
        return self.browser.ask("""((track, index, { view, canvas }) => {
                const { left, top } = canvas.getBoundingClientRect();
                return [left + view.toPixelX(track.x[index]),
                    top + view.toPixelY(track.latitude[index])];
            })(page.collection.tracks[arguments[0]], arguments[1], page.map)""", track, index)

    def middle(self, selector):
        return self.browser.ask("""((box) => [box.left + box.width / 2, box.top + box.height / 2])(
            document.querySelector(arguments[0]).getBoundingClientRect())""", selector)

    def show(self, track):
        self.browser.run("page.showOnMap(page.collection.tracks[arguments[0]])", track)

    def assert_marked(self, track):
        """The mark is on the map and in the track's profile, at the same point."""
        self.assertTrue(self.is_shown("#dot"))
        self.assertTrue(self.is_shown("#tip"))
        card = f"#track-{track}"
        for part in "cursor", "elevation .spot", "speed .spot":
            self.assertTrue(self.is_shown(f"{card} .{part}"), part)
        tip, reading = self.text("#tip"), self.text(f"{card} .reading")
        self.assertRegex(tip, r"\d\.\d{5}° [NS], \d+\.\d{5}° [EW]")
        timestamp = re.search(r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d (UTC|[A-Z].* time)", tip).group()
        elevation = re.search(r"[\d,]+ (m|ft)\b", tip).group()
        self.assertIn(timestamp, reading)
        self.assertIn(elevation, reading)

    def test_everything_in_the_sample_is_shown(self):
        self.browser.open(self.sample)
        self.assertIn("6 tracks", self.text("#summary"))
        for kind, count in ("tracks", 6), ("routes", 6), ("waypoints", 46), ("geocaches", 14):
            self.assertEqual(self.count(f"#table-{kind} tbody tr"), count)
        self.assertEqual(self.count(".track"), 6)
        self.assertFalse(self.is_shown("#nothing"))
        self.assertGreater(self.browser.ask("drawn.segments"), 0)

    def test_pointing_at_the_map_marks_the_profile(self):
        self.browser.open(self.sample)
        self.show(4)
        self.browser.move(*self.point(4, 300))
        self.assert_marked(4)
        self.assertIn("Current Track", self.text("#tip"))

    def test_pointing_at_a_profile_marks_the_map(self):
        self.browser.open(self.sample)
        self.show(0)
        self.browser.move(*self.middle("#track-0 .chart"))
        self.assert_marked(0)
        dot = self.middle("#dot")
        index = self.browser.ask("page.mark.index")
        for got, wanted in zip(dot, self.point(0, index)):
            self.assertAlmostEqual(got, wanted, delta=1)
        self.browser.move(5, 5)
        self.assertFalse(self.is_shown("#dot"))
        self.assertFalse(self.is_shown(".track .cursor"))

    def test_keys_move_the_mark_along_a_profile(self):
        self.browser.open(self.sample)
        self.show(0)
        chart = self.browser.find("#track-0 .chart")
        for _ in range(3):
            chart.send_keys("\ue014")  # right
        self.browser.settle()
        self.assert_marked(0)
        self.assertGreater(int(chart.get_attribute("aria-valuenow")), 0)
        self.assertIn("Punta Arenas time", chart.get_attribute("aria-valuetext"))

    def test_page_keys_and_ends_move_the_mark_along_a_profile(self):
        self.browser.open(self.sample)
        self.show(0)
        chart = self.browser.find("#track-0 .chart")
        last = self.browser.ask("page.collection.tracks[0].count") - 1
        for key, index in (END, last), (RIGHT, last), (HOME, 0), (LEFT, 0), (PAGE_UP, last / 10), (
                PAGE_DOWN, 0), (PAGE_DOWN, 0):
            chart.send_keys(key)
            self.assertAlmostEqual(self.browser.ask("page.mark.index"), index, delta=1)

    def drag_on_profile(self, track, start, end):
        """Drags from one share of a profile's width to another."""
        left, top, width = self.browser.ask("""((box) => [box.left, box.top, box.width])(
            document.querySelector(arguments[0]).getBoundingClientRect())""",
                                            f"#track-{track} .chart")
        self.browser.move(left + start * width, top + 60)
        self.browser.move(left + start * width, top + 60, "mousePressed", buttons=1)
        self.browser.move(left + end * width, top + 60, buttons=1)
        self.browser.move(left + end * width, top + 60, "mouseReleased")

    def test_dragging_on_a_profile_marks_a_stretch_and_a_click_clears_it(self):
        self.browser.open(self.sample)
        self.show(1)
        before = self.browser.ask("page.map.canvas.toDataURL()")
        self.drag_on_profile(1, 0.75, 0.25)
        text = self.text("#track-1 .stretch")
        self.assertRegex(text, r"^Stretch: 1\.4\d km · .* min · \d\.\d km/h · \d+ m up, 0 m down · "
                               r"mean slope \+\d+\.\d %$")
        self.assertTrue(self.is_shown("#track-1 .band"))
        self.assertFalse(self.is_shown("#track-0 .stretch"))
        self.browser.move(5, 5)
        self.assertTrue(self.is_shown("#track-1 .band"))
        self.assertNotEqual(self.browser.ask("page.map.canvas.toDataURL()"), before)
        self.drag_on_profile(1, 0.5, 0.5)
        self.assertFalse(self.is_shown("#track-1 .stretch"))
        self.assertIsNone(self.browser.ask("page.stretch.track"))

    def test_shift_and_arrows_mark_a_stretch_and_escape_clears_it(self):
        self.browser.open(self.sample)
        self.show(0)
        chart = self.browser.find("#track-0 .chart")
        chart.send_keys(RIGHT * 3 + SHIFT + RIGHT + RIGHT)
        self.browser.settle()
        steps = self.browser.ask("[page.stretch.from, page.stretch.to, page.mark.index]")
        self.assertEqual(steps, [9, 15, 15])  # of 284 points, a hundredth is 3
        chart.send_keys(SHIFT + END)
        self.assertEqual(self.browser.ask("[page.stretch.from, page.stretch.to]"), [9, 283])
        chart.send_keys(ESCAPE)
        self.assertIsNone(self.browser.ask("page.stretch.track"))
        self.assertFalse(self.is_shown("#track-0 .stretch"))

    def test_click_pins_the_mark_and_escape_releases_it(self):
        self.browser.open(self.sample)
        self.show(4)
        x, y = self.point(4, 300)
        for kind, buttons in ("mousePressed", 1), ("mouseReleased", 0):
            self.browser.move(x, y, kind, buttons)
        self.browser.move(5, 5)
        self.assert_marked(4)
        self.assertTrue(self.browser.ask("page.mark.isPinned"))
        self.browser.find("#map canvas").send_keys(ESCAPE)
        self.assertFalse(self.is_shown("#tip"))
        self.browser.find("#track-4 .chart").send_keys(RIGHT + ENTER)
        self.browser.move(5, 5)
        self.assert_marked(4)

    def test_escape_releases_what_was_pinned_from_a_table(self):
        self.browser.open(self.sample)
        name = self.browser.find("#table-waypoints .link")
        name.click()
        self.assertTrue(self.browser.ask("page.mark.isPinned"))
        name.send_keys(ESCAPE)
        self.assertFalse(self.is_shown("#tip"))

    def test_tip_of_a_geocache_says_what_it_is_and_hides_its_hint_until_asked(self):
        self.browser.open(self.sample)
        self.browser.find("#table-geocaches .link").click()
        for text in ("Traditional · difficulty 1.5 · terrain 4", "Found 2008-08-11",
                     "Bring a pencil"):
            self.assertIn(text, self.text("#tip"))
        self.assertNotIn("stone", self.text("#tip") + self.text("#table-geocaches"))
        self.browser.find("#tip .ask").send_keys(ENTER)
        self.assertIn("under the third stone", self.text("#tip"))
        self.assertEqual(self.browser.ask("document.activeElement.className"), "hint")
        self.browser.find("#tip .hint").send_keys(ESCAPE)
        self.assertFalse(self.is_shown("#tip"))
        self.assertEqual(self.browser.ask("document.activeElement.tagName"), "CANVAS")

    def test_hint_that_the_reader_has_asked_for_stays_in_the_table(self):
        self.browser.open(self.sample)
        buttons = self.count("#table-geocaches .ask")
        self.browser.find("#table-geocaches .ask").click()
        self.browser.find("#clock").click()
        self.assertEqual(self.count("#table-geocaches .ask"), buttons - 1)
        self.assertIn("under the third stone", self.column("geocaches", 11))

    def test_tip_under_the_pointer_offers_the_hint(self):
        self.browser.open(self.sample)
        self.browser.run("page.map.fit(page.collection.areas[1].bounds)")
        self.browser.run("page.mark.set(page.collection.geocaches[0])")
        self.assertIn("Click for the hint", self.text("#tip"))
        self.assertEqual(self.count("#tip .ask"), 0)

    def test_symbols_are_drawn_and_explained(self):
        self.browser.open(self.sample)
        self.assertEqual(self.count("#table-waypoints .icon"), self.browser.ask(
            "page.collection.waypoints.filter(({ icon }) => icon).length"))
        self.assertEqual(self.count("#table-waypoints tr:has(.icon)"),
                         self.count("#table-waypoints .icon"))
        self.browser.find("#symbols summary").click()
        legend = self.texts("#symbols li")
        self.assertIn("Campground", legend)
        self.assertIn("Geocache that was found", legend)
        drawn = self.browser.ask("""((fill, filled) => {
                CanvasRenderingContext2D.prototype.fill = function (...path) {
                    filled.push(path[0] instanceof Path2D);
                    fill.apply(this, path);
                };
                page.map.fit(page.collection.areas[1].bounds);
                page.map.draw();
                CanvasRenderingContext2D.prototype.fill = fill;
                return filled.filter(Boolean).length;
            })(CanvasRenderingContext2D.prototype.fill, [])""")
        self.assertGreaterEqual(drawn, 5)

    def test_page_without_symbols_has_no_legend(self):
        self.browser.open(self.filled({"waypoints": [{"name": "A", "comment": "", "symbol": "zz",
                                                      "at": [46000000, 7000000, None, None]}]}))
        self.assertEqual(self.count("#symbols, .icon"), 0)

    def test_shift_and_arrows_after_a_jump_begin_at_the_mark(self):
        self.browser.open(self.sample)
        self.show(0)
        chart = self.browser.find("#track-0 .chart")
        chart.send_keys(SHIFT + RIGHT)
        chart.send_keys(END)
        chart.send_keys(SHIFT + LEFT)
        self.assertEqual(self.browser.ask("[page.stretch.from, page.stretch.to]"), [280, 283])

    def test_choices_keep_the_mark_and_the_stretch_on_what_is_still_shown(self):
        self.browser.open(self.sample)
        self.show(0)
        pinned = "[page.mark.item?.index, page.mark.index, page.mark.isPinned, page.stretch.to]"
        self.browser.run("""page.mark.pin(page.collection.tracks[0], 50);
            page.stretch.set(page.collection.tracks[0], 50, 100);""")
        for choose in (lambda: self.browser.choose("#units", "mi-ft"),
                       lambda: self.browser.choose("#axis", "time"),
                       lambda: self.browser.find("#clock").click(),
                       lambda: self.browser.find("#switches input").click(),
                       lambda: self.browser.find("#track-4 input").click()):
            choose()
            self.assertEqual(self.browser.ask(pinned), [0, 50, True, 100])
            self.assert_marked(0)
            self.assertTrue(self.is_shown("#track-0 .band"))
        self.assertIn(" mph", self.text("#track-0 .stretch"))
        self.assertIn(" UTC", self.text("#track-0 .reading"))
        self.browser.find("#track-0 input").click()
        self.assertEqual(self.browser.ask(pinned), [None, 0, False, 0])

    def test_hiding_a_layer_releases_the_mark_on_it(self):
        self.browser.open(self.sample)
        for kind, item in ("routes", "routes[0].points[0]"), ("waypoints", "waypoints[0]"), (
                "geocaches", "geocaches[0]"):
            self.browser.run(f"page.mark.pin(page.collection.{item})")
            position = ("routes", "waypoints", "geocaches").index(kind) + 1
            self.browser.find(f"#switches label:nth-child({position}) input").click()
            self.assertIsNone(self.browser.ask("page.mark.item"), kind)

    def test_figures_of_all_tracks_are_those_of_the_program(self):
        self.browser.open(self.sample)
        self.browser.run("page.cards.drawAllCharts()")
        for card in self.browser.ask("""page.cards.cards.map(({ track, figures_: own }) => [
                track.kilometres * 1000, own.metres, track.ascent ?? 0, own.ascent || 0,
                track.descent ?? 0, own.descent || 0, track.moving ?? 0, own.moving || 0])"""):
            # The page's coordinates are rounded: a step at the lowest speed counts or does not.
            for theirs, ours in zip(card[::2], card[1::2]):
                self.assertAlmostEqual(theirs, ours, delta=1 + theirs / 100)

    def test_units_are_chosen_for_the_whole_page_and_remembered(self):
        self.browser.open(self.sample)
        metric = self.lengths()
        self.browser.choose("#units", "mi-ft")
        self.browser.settle()
        self.assertEqual(self.browser.ask("document.getElementById('units').value"), "mi-ft")
        for reopened in False, True:
            if reopened:
                self.browser.open(self.sample)
            miles = [float(text.removesuffix(" mi")) for text in self.column("tracks", 8)]
            for length, text in zip(metric, miles):
                self.assertAlmostEqual(length / 1.609344, text, delta=0.01)
            self.assertIn(" mi ", self.text("#summary"))
            self.assertIn(" mph", self.text("#track-1 dl"))
            self.assertIn("(ft)", self.text("#track-1 .elevation"))
            self.assertRegex(self.text("#scale"), " (ft|mi)$")

    def test_units_can_be_chosen_where_nothing_can_be_remembered(self):
        self.browser.open(self.sample)
        refused = self.browser.command("Page.addScriptToEvaluateOnNewDocument", source="""
            Object.defineProperty(window, "localStorage",
                { get() { throw new DOMException("no", "SecurityError"); } });""")
        self.browser.open(self.sample)
        self.browser.choose("#units", "mi-m")
        self.assertRegex(self.column("tracks", 8)[0], " mi$")
        self.browser.command("Page.removeScriptToEvaluateOnNewDocument", **refused)
        self.browser.open(self.sample)

    def test_profile_can_be_drawn_over_time(self):
        self.browser.open(self.sample)
        self.show(0)
        self.assertIn("0 km", self.text("#track-0 .distances"))
        self.browser.choose("#axis", "time")
        self.browser.settle()
        self.assertIn("0:00 h", self.text("#track-0 .distances"))
        self.browser.run("page.cards.drawAllCharts()")
        self.assertIn("0 km", self.text("#track-5 .distances"))  # it has no times
        self.browser.move(*self.middle("#track-0 .chart"))
        self.assert_marked(0)
        half = self.browser.ask("""((track) => (page.collection.tracks[0].time[page.mark.index] -
            track.first) / (track.last - track.first))(page.collection.tracks[0])""")
        self.assertAlmostEqual(half, 0.5, delta=0.02)

    def shown(self):
        return self.browser.ask("""page.collection.tracks.filter((track) => track.isShown)
            .map((track) => track.index)""")

    def test_list_finds_tracks_and_chooses_which_are_shown(self):
        self.browser.open(self.sample)
        self.browser.find("#list summary").click()
        self.browser.settle()
        self.assertEqual(self.count("#list li"), 6)
        none, every = (self.browser.find(f"#list .row button:nth-of-type({i})") for i in (2, 1))
        none.click()
        self.assertEqual(self.shown(), [])
        self.browser.find("#list input[type=search]").send_keys("SADDLE")
        self.assertEqual(self.count("#list li:not([hidden])"), 2)
        every.click()
        self.assertEqual(self.shown(), [1, 3])
        self.browser.find("#list li:not([hidden]) input").click()
        self.assertEqual(self.shown(), [3])
        self.assertFalse(self.browser.ask("document.querySelector('#track-1 input').checked"))
        self.browser.find("#track-1 input").click()
        self.assertTrue(self.browser.ask("""document.querySelector(
            '#list li:not([hidden]) input').checked"""))
        self.browser.find("#list li:not([hidden]) button").click()
        self.assertEqual(self.shown(), [1])

    def test_list_says_that_nothing_was_found(self):
        self.browser.open(self.sample)
        self.browser.find("#list summary").click()
        self.browser.settle()
        self.assertFalse(self.is_shown("#list p"))
        self.browser.find("#list input[type=search]").send_keys("no such name")
        self.assertTrue(self.is_shown("#list p"))

    def test_list_of_a_single_track_is_left_out(self):
        self.browser.open(self.filled({"tracks": [raw_track("one", [0, 0, 0, None])]}))
        self.assertEqual(self.count("#list"), 0)

    def test_cards_follow_the_shown_area_and_the_date(self):
        self.browser.open(self.sample)
        order = """Array.from(document.getElementById("cards").children,
            (one) => Number(one.id.slice(6) || -1))"""
        self.assertEqual(self.browser.ask(order), [1, 2, 3, -1, 4, 0, 5])
        self.browser.find("#areas button:nth-child(3)").click()
        self.assertEqual(self.browser.ask(order), [4, -1, 0, 1, 2, 3, 5])
        self.browser.find("#areas button:nth-child(1)").click()
        self.assertEqual(self.browser.ask(order), [4, 0, 1, 2, 3, 5])

    def pressed_areas(self):
        return self.browser.ask("""Array.from(document.querySelectorAll(
            "#areas [aria-pressed=true]"), (one) => one.textContent)""")

    def test_button_of_an_area_is_released_when_the_map_goes_elsewhere(self):
        self.browser.open(self.sample)
        leave = [lambda: self.browser.find("#zoom-in").click(), lambda: self.show(4),
                 lambda: self.browser.find("#map canvas").send_keys(LEFT)]
        for i, go in enumerate(leave, 1):
            self.browser.find(f"#areas button:nth-child({i})").click()
            self.assertEqual(len(self.pressed_areas()), 1)
            go()
            self.assertEqual(self.pressed_areas(), [])

    def test_areas_after_the_seventh_are_in_a_list(self):
        points = [{"name": f"P{i}", "comment": "", "symbol": "",
                   "at": [0, i * 10000000, None, None]} for i in range(12)]
        areas = [{"place": f"near P{i}", "zone": "",
                  "bounds": [i * 10000000, 0, i * 10000000, 0]} for i in range(12)]
        self.browser.open(self.filled({"waypoints": points, "areas": areas}))
        self.assertEqual(self.count("#areas button"), 8)
        self.assertEqual(self.texts("#areas option"),
                         ["5 more", *[f"near P{i}" for i in range(7, 12)]])
        self.browser.choose("#areas select", "2")
        self.assertAlmostEqual(self.browser.ask("page.map.view.x"), 90)
        self.assertEqual(self.browser.find("#areas select").get_attribute("value"), "2")
        self.browser.find("#zoom-in").click()
        self.assertEqual(self.browser.find("#areas select").get_attribute("value"), "")
        self.browser.open(self.filled({"waypoints": points[:7], "areas": areas[:7]}))
        self.assertEqual((self.count("#areas button"), self.count("#areas select")), (8, 0))

    def test_lines_can_be_coloured_with_a_legend_in_the_chosen_units(self):
        self.browser.open(self.sample)
        pictures = {self.browser.ask("page.map.canvas.toDataURL()")}
        for kind, unit in ("speed", "km/h"), ("height", "m"), ("slope", "%"):
            self.browser.choose("#colours", kind)
            self.assertRegex(self.text("#legend"), f"^< .* {unit}> .* {unit}(not known)?$")
            pictures.add(self.browser.ask("page.map.canvas.toDataURL()"))
        self.assertEqual(len(pictures), 4)
        self.browser.choose("#colours", "height")
        self.browser.choose("#units", "mi-ft")
        self.assertRegex(self.text("#legend"), " ft(not known)?$")
        self.browser.choose("#colours", "track")
        self.assertEqual(self.count("#legend"), 0)

    def test_touching_marks_too(self):
        self.browser.resize(390, 844)
        self.browser.open(self.sample)
        self.show(0)
        self.browser.touch(*self.point(0, 100))
        self.assert_marked(0)
        self.browser.run("document.querySelector('#track-0 .chart').scrollIntoView(false)")
        self.browser.touch(*self.middle("#track-0 .chart"))
        self.assert_marked(0)

    def test_map_can_be_moved_and_zoomed(self):
        self.browser.open(self.sample)
        before = self.browser.ask("({ ...page.map.view })")
        x, y = self.middle("#map")
        self.browser.command("Input.dispatchMouseEvent", type="mouseWheel", x=x, y=y,
                             deltaX=0, deltaY=-250)
        self.browser.settle()
        zoomed = self.browser.ask("({ ...page.map.view })")
        self.assertAlmostEqual(zoomed["scale"] / before["scale"], 2, places=3)
        self.browser.move(x, y, "mousePressed", buttons=1)
        self.browser.move(x + 50, y + 20, buttons=1)
        self.browser.move(x + 50, y + 20, "mouseReleased")
        moved = self.browser.ask("({ ...page.map.view })")
        self.assertLess(moved["x"], zoomed["x"])
        self.assertGreater(moved["latitude"], zoomed["latitude"])
        self.browser.find("#zoom-out").click()
        self.browser.settle()
        self.assertAlmostEqual(self.browser.ask("page.map.view.scale"), before["scale"], places=3)

    def test_two_fingers_zoom_the_map(self):
        self.browser.open(self.sample)
        before = self.browser.ask("page.map.view.scale")
        x, y = self.middle("#map")
        for kind, spread in ("touchStart", 40), ("touchMove", 80):
            fingers = [{"x": x - spread, "y": y, "id": 1}, {"x": x + spread, "y": y, "id": 2}]
            self.browser.command("Input.dispatchTouchEvent", type=kind, touchPoints=fingers)
        self.browser.command("Input.dispatchTouchEvent", type="touchEnd", touchPoints=[])
        self.browser.settle()
        self.assertAlmostEqual(self.browser.ask("page.map.view.scale") / before, 2, places=2)

    def test_scale_bar_matches_the_map(self):
        self.browser.open(self.sample)
        metres = {"m": 1, "km": 1000}
        number, unit = self.text("#scale").split()
        width = self.browser.ask("document.getElementById('scale').offsetWidth")
        x, y = self.middle("#map")
        west, east = (self.browser.ask("page.map.view.fromPixelX(arguments[0])", x)
                      for x in (0, width))
        latitude = self.browser.ask("page.map.view.latitude")
        span = math.radians(east - west) * math.cos(math.radians(latitude)) * 6371008.8
        self.assertAlmostEqual(span / (float(number) * metres[unit]), 1, delta=0.02)

    def test_track_can_be_hidden_and_shown(self):
        self.browser.open(self.sample)
        self.show(4)
        box = self.browser.find("#track-4 input")
        box.click()
        self.browser.settle()
        self.browser.move(*self.point(4, 300))
        self.assertNotIn("Current Track", self.text("#tip"))
        box.click()
        self.browser.move(5, 5)
        self.browser.move(*self.point(4, 300))
        self.assertIn("Current Track", self.text("#tip"))

    def test_heading_sorts_in_both_directions_and_by_keyboard(self):
        self.browser.open(self.sample)
        heading = self.browser.find("#table-tracks th:nth-child(8)")
        heading.find_element("css selector", "button").click()
        lengths = self.lengths()
        self.assertEqual(lengths, sorted(lengths))
        self.assertEqual(heading.get_attribute("aria-sort"), "ascending")
        heading.find_element("css selector", "button").send_keys("\ue007")  # return
        lengths.reverse()
        self.assertEqual(self.lengths(), lengths)
        self.assertEqual(heading.get_attribute("aria-sort"), "descending")
        names = self.browser.find("#table-tracks th:first-child")
        names.find_element("css selector", "button").click()
        self.assertEqual(heading.get_attribute("aria-sort"), "none")
        self.assertEqual(self.column("tracks", 1)[0], "Current Track")

    def test_unknown_values_are_last_in_both_directions(self):
        self.browser.open(self.sample)
        button = self.browser.find("#table-tracks th:nth-child(3) button")
        for _ in range(2):
            button.click()
            self.assertEqual(self.column("tracks", 3)[-1], "–")

    def test_times_are_those_of_the_place_until_the_reader_wants_utc(self):
        self.browser.open(self.sample)
        starts = {"Auckland time": "2010-01-17 09:40:07", "UTC": "2010-01-16 20:40:07"}
        for zone in "Auckland time", "UTC", "Auckland time":
            self.assertEqual(self.column("tracks", 3)[1], starts[zone])
            self.assertEqual(self.column("tracks", 5)[1], zone)
            self.assertIn(zone, self.text(".track:nth-child(2) .reading"))
            self.browser.find("#clock").click()

    def test_utc_is_applied_to_the_open_list_and_keeps_the_order_of_a_table(self):
        self.browser.open(self.sample)
        self.browser.find("#list summary").click()
        self.browser.find("#table-tracks th:nth-child(8) button").click()
        order, days = self.column("tracks", 1), self.texts("#list .figures")
        self.browser.find("#clock").click()
        self.assertEqual(self.column("tracks", 1), order)
        self.assertNotEqual(self.texts("#list .figures"), days)

    def test_areas_have_the_names_of_places_and_the_map_has_towns(self):
        self.browser.open(self.sample)
        buttons = self.browser.ask("""Array.from(document.querySelectorAll("#areas button"),
            (button) => button.textContent)""")
        self.assertEqual(buttons[:3], ["Everything", "near Wanaka", "near Naters"])
        self.assertIn("near Wanaka and 3 other areas", self.text("#summary"))
        self.assertIn("near Wanaka", self.text(".track:nth-child(2) .reading"))
        names = self.browser.ask("page.collection.places.map((place) => place.name)")
        self.assertIn("Wanaka", names)

    def test_contrast_is_sufficient_in_every_state_and_theme(self):
        for theme in "light", "dark":
            self.browser.use_theme(theme)
            self.browser.open(self.sample)
            self.browser.find("#table-tracks th:nth-child(2) button").click()
            self.browser.find("#track-1 input").click()
            self.browser.find("#list summary").click()
            self.browser.choose("#colours", "speed")
            self.browser.find("#symbols summary").click()
            self.browser.find("#table-geocaches .ask").click()
            self.browser.run("""page.mark.pin(page.collection.tracks[0], 100);
                page.stretch.set(page.collection.tracks[0], 100, 200);""")
            self.assertEqual(states.low_contrasts(self.browser), [], theme)

    def test_contrast_test_finds_a_pale_text_under_the_pointer(self):
        self.browser.open(self.sample)
        self.browser.run("""const style = new CSSStyleSheet();
            style.replaceSync("#theme:hover { color: rgb(0 0 0 / 40%) !important; }");
            document.adoptedStyleSheets = [style];""")
        found = states.low_contrasts(self.browser)
        self.assertEqual([text.split(":")[0] for text in found], ["hover", "hover+active+focus"])

    def test_names_on_the_map_have_sufficient_contrast(self):
        for theme in "light", "dark":
            self.browser.use_theme(theme)
            self.browser.open(self.sample)
            self.browser.run("""const list = document.createElement("div");
                list.id = "colours";
                list.style.background = "var(--paper)";
                for (const name of [...Array.from({ length: 8 }, (_, i) => `track-${i}`), "soft",
                    "ink"]) {
                  const one = document.createElement("b");
                  one.textContent = name;
                  one.style.color = `var(--${name})`;
                  list.append(one);
                }
                document.body.append(list);""")
            found = self.browser.ask(states.LOW_CONTRASTS % "document.getElementById('colours')")
            self.assertEqual(found, [], theme)

    def test_land_can_be_told_from_the_sea_and_lines_of_unknown_values_from_others(self):
        for theme in "light", "dark":
            self.browser.use_theme(theme)
            self.browser.open(self.sample)
            self.assertGreaterEqual(states.contrast(self.browser, "--paper", "--sea"), 1.3)
        self.browser.choose("#colours", "speed")
        self.assertIn("not known", self.text("#legend"))  # a track without times
        one = raw_track("one", [0, 0, 0, 0, 9000, 0, 0, 9000])
        one.update(first=0, last=9000)
        self.browser.open(self.filled({"tracks": [one]}))
        self.browser.choose("#colours", "speed")
        self.assertNotIn("not known", self.text("#legend"))

    def test_map_is_drawn_in_forced_colours(self):
        for theme in "light", "dark":
            self.browser.use_theme(theme, "active")
            self.browser.open(self.sample)
            colours = self.browser.ask("""(({ canvas }) => {
                const { data } = canvas.getContext("2d")
                    .getImageData(0, 0, canvas.width, canvas.height);
                const counts = new Map();
                for (const pixel of new Uint32Array(data.buffer))
                    counts.set(pixel, (counts.get(pixel) ?? 0) + 1);
                return [...counts.values()].filter((count) => count > 50).length;
            })(page.map)""")
            self.assertGreater(colours, 4, theme)
            self.assertNotEqual(*self.browser.ask("""["true", "false"].map((pressed) =>
                getComputedStyle(document.querySelector(`#areas [aria-pressed=${pressed}]`))
                    .backgroundColor)"""))

    def test_map_keeps_its_size_when_a_legend_appears(self):
        self.browser.open(self.sample)
        before = self.browser.ask("page.map.box.clientHeight")
        for kind in "speed", "height", "slope":
            self.browser.choose("#colours", kind)
            self.assertEqual(self.browser.ask("page.map.box.clientHeight"), before)

    def is_area_in_sight(self, area):
        return self.browser.ask("""(({ bounds: { west, east, south, north } }, view) =>
            [view.toPixelX(west), view.toPixelX(east)].every((x) => x >= 0 && x <= view.width) &&
            [view.toPixelY(south), view.toPixelY(north)].every((y) => y >= 0 && y <= view.height)
            )(page.collection.areas[arguments[0]], page.map.view)""", area)

    def test_what_was_asked_for_stays_in_sight_until_the_map_is_moved(self):
        self.browser.resize(1280, 900)
        self.browser.open(self.sample)
        self.assertTrue(self.is_area_in_sight(0))
        self.browser.run("page.map.fit(page.collection.areas[1].bounds)")
        self.browser.find("#symbols summary").click()  # takes height from the map
        self.browser.settle()
        self.assertTrue(self.is_area_in_sight(1))
        self.browser.find("#zoom-in").click()
        scale = self.browser.ask("page.map.view.scale")
        self.browser.find("#symbols summary").click()
        self.browser.settle()
        self.assertEqual(self.browser.ask("page.map.view.scale"), scale)

    def test_more_waypoints_than_a_call_has_arguments_are_listed(self):
        count = 80000
        point = {"name": "", "comment": "", "symbol": "", "at": [46000000, 7000000, None, None]}
        self.browser.open(self.filled({"waypoints": [point] * count}))
        self.assertEqual(self.count("#table-waypoints tbody tr"), count)

    def test_the_controls_on_a_low_map_do_not_overlap(self):
        self.browser.resize(320, 256)
        self.browser.open(self.sample)
        arrow, zoom = self.browser.ask("""["#north", ".zoom"].map((part) => {
            const { top, bottom } = document.querySelector(part).getBoundingClientRect();
            return { top, bottom };
        })""")
        self.assertLess(arrow["bottom"], zoom["top"])

    def test_cards_out_of_view_have_their_figures(self):
        self.browser.open(self.sample)
        self.browser.driver.execute_async_script("""const done = arguments[0];
            const wait = () => page.cards.cards.every((card) => card.figures_) ? done() :
                setTimeout(wait, 10);
            wait();""")
        self.assertNotIn("…", "".join(self.texts(".track dd")))

    def test_targets_are_at_least_24_pixels(self):
        for width in 1280, 390:
            self.browser.resize(width, 844)
            self.browser.open(self.sample)
            self.browser.find("#list summary").click()
            self.browser.find("#symbols summary").click()
            self.browser.find("#table-geocaches .link").click()
            self.browser.settle()
            self.assertEqual(states.small_targets(self.browser), [])

    def test_every_card_has_a_heading(self):
        self.browser.open(self.sample)
        self.assertEqual(self.count(".track h3"), 6)
        levels = self.browser.ask("""Array.from(document.querySelectorAll("h1, h2, h3"),
            (one) => Number(one.tagName[1]))""")
        self.assertTrue(all(b - a <= 1 for a, b in zip(levels, levels[1:])), levels)

    def test_map_has_the_whole_width_without_tracks(self):
        page = self.filled({"waypoints": [
            {"name": "Beach", "comment": "", "symbol": "", "at": [0, 0, -3, None]}]})
        self.browser.open(page)
        self.assertGreater(self.browser.ask("page.map.box.offsetWidth"), 1200)

    def test_the_head_says_what_the_page_is_and_where_it_is_from(self):
        self.browser.open(self.sample)
        self.assertEqual(self.text("h1"), "sample")
        self.assertRegex(self.text("#origin"), r"^Magellan\b.* · downloaded on \d{4}-\d\d-\d\d$")
        self.browser.open(self.filled({"title": "<b>Our trip</b>"}))
        self.assertEqual(self.text("h1"), "<b>Our trip</b>")
        self.assertEqual(self.browser.driver.title, "<b>Our trip</b>")
        self.assertEqual(self.text("#origin"), "")
        self.browser.open(self.filled({}))
        self.assertEqual(self.text("h1"), "Tracks and places")

    def test_theme_follows_the_system_and_the_switch(self):
        background = "getComputedStyle(document.body).backgroundColor"
        picture = "page.map.canvas.toDataURL()"
        seen = {}
        for theme in "light", "dark":
            self.browser.use_theme(theme)
            self.browser.open(self.sample)
            seen[theme] = self.browser.ask(background), self.browser.ask(picture)
        self.assertNotEqual(seen["light"][0], seen["dark"][0])
        self.assertNotEqual(seen["light"][1], seen["dark"][1])
        self.browser.find("#theme").click()
        self.browser.settle()
        self.assertEqual((self.browser.ask(background), self.browser.ask(picture)), seen["light"])

    def test_empty_page_says_so(self):
        page = self.filled({})
        self.browser.open(page)
        self.assertTrue(self.is_shown("#nothing"))
        self.assertIn("There is nothing to show", self.text("#nothing"))
        self.assertFalse(self.browser.ask("Boolean(document.getElementById('overview'))"))
        self.assertEqual(self.text("#tables"), "")

    def test_empty_items_and_single_points_are_shown(self):
        tracks = [raw_track("none", []), raw_track("one", [0, 0, 0, None])]
        self.browser.open(self.filled({"tracks": tracks, "routes": [raw_route("")]}))
        self.assertEqual(self.column("tracks", 9), ["–", "–"])
        self.assertEqual(self.column("routes", 1), ["Unnamed route"])
        self.assertEqual(self.count(".track .no-profile"), 2)

    def test_items_without_any_point_are_shown(self):
        self.browser.open(self.filled({"tracks": [raw_track("none", [])],
                                       "routes": [raw_route("bare")]}))
        self.assertEqual(self.browser.ask("document.documentElement.dataset.ready"), "")
        self.assertEqual(self.column("tracks", 1), ["none"])
        self.browser.find("#table-routes .link").click()
        self.assertEqual(self.count(".track .no-profile"), 1)

    def test_elevation_just_below_the_sea_is_zero(self):
        beach = {"name": "Beach", "comment": "", "symbol": "", "at": [0, 0, -3, None]}
        self.browser.open(self.filled({"waypoints": [beach]}))
        self.assertEqual(self.column("waypoints", 4), ["0 m"])

    def without_scripts(self, page):
        """Opens a page in a browser that runs no scripts until the end of the test."""
        self.browser.command("Emulation.setScriptExecutionDisabled", value=True)
        self.browser.driver.get(f"file://{page}")

    def test_without_scripts_all_tables_are_there_on_paper_too(self):
        self.without_scripts(self.sample)
        self.assertEqual(self.texts("noscript h2"),
                         ["Tracks", "Routes", "Waypoints", "Geocaches"])
        self.assertEqual(self.count("noscript tbody tr"), 6 + 6 + 46 + 14)
        for hidden in "#nothing", "#overview", ".choices", ".advice":
            self.assertFalse(self.is_shown(hidden), hidden)
        for text in "sample", "near Wanaka", "2010-01-17 09:40:07", "Auckland", "2.93 km":
            self.assertIn(text, self.text("main"))
        paper = self.browser.command("Page.printToPDF", paperWidth=8.27, paperHeight=11.69)
        pages = re.findall(rb"/Type /Page\b", base64.b64decode(paper["data"]))
        self.assertIn(len(pages), (2, 3))
        self.assertEqual(states.low_contrasts(self.browser), [])

    def test_without_scripts_hostile_names_stay_text(self):
        self.without_scripts(self.imported([track_point(46, 7, 500, 0, HOSTILE)]))
        self.assertEqual(self.text("noscript td"), HOSTILE)
        self.assertEqual(self.count("script, img"), 2)

    def test_with_scripts_nothing_of_the_tables_without_them_is_seen(self):
        self.browser.open(self.sample)
        self.assertEqual(self.count("noscript *"), 0)

    def test_track_without_times_has_no_speed(self):
        self.browser.open(self.sample)
        self.show(5)
        self.browser.run("page.mark.set(page.collection.tracks[5], 100)")
        card = self.browser.find("#track-5")
        self.assertEqual(len(card.find_elements("css selector", ".elevation")), 1)
        self.assertEqual(card.find_elements("css selector", ".speed"), [])
        self.assertIn("no time", self.text("#tip"))

    def test_hostile_name_from_a_file_stays_text(self):
        self.browser.open(self.imported([track_point(46, 7, 500, 0, HOSTILE),
                                         track_point(46.01, 7, 510, 600, HOSTILE)]))
        self.assertEqual(self.text(".track bdi"), HOSTILE)
        self.assertIsNone(self.browser.ask("window.wasHere"))
        self.assertEqual(self.count("script, img"), 2)

    def test_names_of_every_kind_stay_text_and_within_the_page(self):
        for name in HOSTILE, "x" * 10000, "جبل الشيخ", "a\u202eb", "{{script}}", "__proto__":
            page = self.page_of_names(name)
            for width in 1280, 360:
                self.browser.resize(width, 800)
                self.browser.open(page)
                self.assert_names_fit(name, width)
            self.assertIsNone(self.browser.ask("window.wasHere"))
            self.assertEqual(self.count("script, img"), 2)

    def page_of_names(self, name):
        """Writes a page on which every text is `name`."""
        point = {"at": [46000000, 7000000, 100, None],
                 **dict.fromkeys(("name", "comment", "symbol"), name)}
        cache = {**point, **dict.fromkeys(("type", "owner", "hint", "difficulty", "terrain",
                                           "placed", "found"), name)}
        track = raw_track(name, [46000000, 7000000, 0, None, 9000, 0, 0, None])
        return self.filled({"note": name, "title": name, "receiver": name,
                            "identifier": name, "waypoints": [point], "geocaches": [cache],
                            "routes": [raw_route(name, [point, point])], "tracks": [track]})

    def assert_names_fit(self, name, width):
        ask = self.browser.ask
        self.assertEqual(self.text(".track bdi"), name)
        self.assertEqual(self.column("geocaches", 10), [f"✓ {name}"])
        self.assertEqual(ask("document.querySelector('.track bdi').title"), name)
        self.assertLessEqual(ask("document.documentElement.scrollWidth"), width)
        self.assertLess(ask("document.querySelector('.track').offsetHeight"), 500)
        self.browser.move(*self.point(0, 0))
        self.assertLessEqual(ask("document.getElementById('tip').offsetWidth"), 290)

    def test_track_over_the_date_line_has_no_line_across_the_map(self):
        points = []
        for i in range(60):
            longitude = (179.5 + 0.02 * i + 180) % 360 - 180
            points.append(track_point(-17 + 0.01 * (i % 5), longitude, 5, 60 * i, "West"))
        self.browser.open(self.imported(points))
        self.assertGreater(self.browser.ask("drawn.segments"), 10)
        self.assertLess(self.browser.ask("drawn.longest / page.map.view.width"), 0.5)
        width = self.browser.ask("((x) => x[59] - x[0])(page.collection.tracks[0].x)")
        self.assertLess(width, 1.3)

    def test_track_westward_around_the_world_is_on_the_map(self):
        points = [track_point(20, (-i + 180) % 360 - 180, 5, 60 * i, "Round") for i in range(361)]
        self.browser.open(self.imported(points))
        outside = self.browser.ask("""(({ view }, { x }) => x.filter((one) =>
            view.toPixelX(one) < 0 || view.toPixelX(one) > view.width).length)(
                page.map, page.collection.tracks[0])""")
        self.assertEqual(outside, 0)
        self.assertLess(self.browser.ask("drawn.longest / page.map.view.width"), 0.5)

    def test_track_over_a_pole_has_no_line_across_the_map(self):
        points = [track_point(90 - abs(2 - 0.1 * i), 20 if i < 20 else -160, 5, 60 * i, "North")
                  for i in range(41)]
        self.browser.open(self.imported(points))
        self.assertGreater(self.browser.ask("drawn.segments"), 1)
        self.assertLess(self.browser.ask("drawn.longest / page.map.view.width"), 0.5)

    def test_a_hundred_thousand_points_are_drawn_with_few_lines(self):
        self.browser.open(self.imported(long_track()))
        self.assertEqual(self.column("tracks", 11), ["100,000"])
        self.assertLess(self.browser.ask("drawn.segments"), 60000)
        self.browser.move(*self.point(0, 50000))
        self.assert_marked(0)

    def test_phone_does_not_scroll_sideways(self):
        self.browser.resize(360, 740)
        self.browser.open(self.sample)
        self.assertLessEqual(self.browser.ask("document.documentElement.scrollWidth"), 360)
        self.assertGreater(self.browser.ask("page.map.canvas.getBoundingClientRect().width"), 300)

    def test_table_of_tracks_fits(self):
        self.browser.open(self.sample)
        hidden = """((one) => one.scrollWidth - one.clientWidth)(
            document.querySelector("#table-tracks .scroll"))"""
        self.assertEqual(self.browser.ask(hidden), 0)

    def test_rows_of_the_list_have_their_buttons_beside_the_names_on_a_phone(self):
        for width in 360, 320:
            self.browser.resize(width, 740)
            self.browser.open(self.sample)
            self.browser.find("#list summary").click()
            self.browser.settle()
            for name, button in self.browser.ask("""Array.from(document.querySelectorAll(
                    "#list li"), (row) => ["label", "button"].map((part) =>
                        row.querySelector(part).getBoundingClientRect().top))"""):
                self.assertAlmostEqual(name, button, delta=4)
            self.assertLessEqual(self.browser.ask("document.documentElement.scrollWidth"), width)

    def test_every_profile_is_printed(self):
        self.browser.use_theme("dark")
        self.browser.open(self.sample)
        self.browser.command("Page.printToPDF")
        drawn = self.browser.ask("page.cards.cards.filter((card) => card.chart.isDrawn).length")
        self.assertEqual(drawn, 6)
        self.assertEqual(self.browser.ask("document.documentElement.dataset.theme ?? null"), None)

    def test_printed_map_is_sharp_and_not_stretched(self):
        self.browser.open(self.sample)
        before = self.browser.ask("({ ...page.map.view })")
        self.browser.run("""matchMedia("print").addEventListener("change", (event) => {
            const { canvas } = page.map, { width, height } = canvas.getBoundingClientRect();
            if (event.matches)
                window.onPaper = {
                    across: canvas.width / width, down: canvas.height / height, width };
        });""")
        self.browser.command("Page.printToPDF")
        paper = self.browser.ask("onPaper")
        self.assertAlmostEqual(paper["across"] / paper["down"], 1, places=2)
        self.assertGreaterEqual(paper["across"], 2)  # sharp
        self.assertLess(paper["width"], 700)  # of A4 and of Letter, within their margins
        self.browser.settle()
        self.assertEqual(self.browser.ask("({ ...page.map.view })"), before)

    def test_long_names_stay_in_their_cells_on_paper(self):
        self.browser.resize(703, 1032)  # A4 within its margins
        for name in "x" * 600, "Words of a name that go on and on " * 15, "12.5" * 40:
            self.browser.open(self.page_of_names(name))
            self.browser.command("Emulation.setEmulatedMedia", media="print")
            self.addCleanup(self.browser.command, "Emulation.setEmulatedMedia", media="")
            self.browser.settle()
            self.assertEqual(self.browser.ask("""Array.from(document.querySelectorAll(
                    "td, th, h1, h2, h3, .scroll, p"))
                .filter((one) => one.checkVisibility() && one.scrollWidth > one.clientWidth + 1 &&
                    getComputedStyle(one).overflowX === "visible")
                .map((one) => `${one.tagName}: ${one.textContent.slice(0, 30)}`)"""), [])
            self.assertLessEqual(self.browser.ask("document.documentElement.scrollWidth"), 703)

    def test_paper_has_no_page_with_little_on_it(self):
        self.browser.open(self.sample)
        paper = self.browser.command("Page.printToPDF", paperWidth=8.27, paperHeight=11.69)
        pages = re.findall(rb"/Type /Page\b", base64.b64decode(paper["data"]))
        self.assertEqual(len(pages), 4)

    def test_every_area_is_printed(self):
        self.browser.open(self.sample)
        self.browser.run("""addEventListener("beforeprint", () => {
                window.onPaper = Array.from(document.querySelectorAll("#paper h2"),
                    (one) => one.textContent);
            });""")
        self.browser.command("Page.printToPDF")
        shown = self.browser.ask("""Array.from(document.querySelectorAll(
            "#areas [aria-pressed=false]"), (one) => one.textContent)""")
        self.assertEqual(self.browser.ask("onPaper"), shown[1:])
        self.assertEqual(self.count("#paper *"), 0)

    def test_policy_blocks_loading_from_elsewhere(self):
        self.browser.open(self.sample)
        self.browser.driver.execute_async_script("""const done = arguments[0], image = new Image();
            image.onerror = () => done(); image.src = "http://127.0.0.1:9/x.png";""")
        complaints = " ".join(self.browser.complaints())
        self.assertIn("Content Security Policy", complaints)


if __name__ == "__main__":
    PROGRAM, SAMPLES = sys.argv[1:3]
    if Browser is None or not shutil.which("chromium") or not shutil.which("chromedriver"):
        print("skipped: needs Chromium, its driver and Selenium (scripts/install-packages test)")
        sys.exit(77)
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)

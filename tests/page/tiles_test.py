#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Map tiles on the page in a browser, from a server on this computer.

Usage: tiles_test.py PROGRAM SAMPLES [TEST...]. Exit status 77 if there is no browser.
"""

import http.server
import math
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import threading
import unittest
import zlib

import states

try:
    from browser import Browser
except ImportError:
    Browser = None

# Remembers where each tile was drawn last, in pixels of the map.
WATCH_TILES = """
    window.tiles = new Map();
    {
        const canvas = CanvasRenderingContext2D.prototype, { drawImage } = canvas;
        canvas.drawImage = function (image, ...numbers) {
            if (numbers.length === 8)
                tiles.set(image.src, { from: numbers.slice(0, 4), to: numbers.slice(4) });
            drawImage.call(this, image, ...numbers);
        };
    }
"""


def chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))


def picture(shade):
    """A PNG of 256 by 256 pixels with a frame, so that tiles can be told apart."""
    edge = bytes([0]) + b"\x60" * 256
    row = bytes([0]) + b"\x60" + bytes([shade]) * 254 + b"\x60"
    header = struct.pack(">IIBBBBB", 256, 256, 8, 0, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
            chunk(b"IDAT", zlib.compress(edge + row * 254 + edge)) + chunk(b"IEND", b""))


class TileServer(http.server.ThreadingHTTPServer):
    def __init__(self):
        super().__init__(("127.0.0.1", 0), Handler)
        self.paths = []
        self.is_broken = False
        threading.Thread(target=self.serve_forever, daemon=True).start()

    @property
    def template(self):
        return f"http://127.0.0.1:{self.server_port}/{{z}}/{{x}}/{{y}}.png"


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):  # the base class wants this name
        self.server.paths.append(self.path)
        if self.server.is_broken:
            self.send_error(503)
            return
        body = picture(200 + sum(map(int, re.findall(r"\d+", self.path))) % 2 * 40)
        self.send_response(200)
        self.send_header("Content-Type", "image/png")
        self.send_header("Cache-Control", "no-store")
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


def tile_at(longitude, latitude, zoom):
    """The path of the tile that shows a place, by the formula that servers document."""
    angle = math.radians(latitude)
    column = math.floor((longitude + 180) / 360 * 2 ** zoom)
    row = math.floor((1 - math.asinh(math.tan(angle)) / math.pi) / 2 * 2 ** zoom)
    return f"/{zoom}/{column}/{row}.png"


class TilesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="tiles-test-")
        cls.browser = Browser()
        cls.browser.command("Page.addScriptToEvaluateOnNewDocument", source=WATCH_TILES)

    @classmethod
    def tearDownClass(cls):
        cls.browser.__exit__()
        shutil.rmtree(cls.folder)

    def setUp(self):
        self.browser.driver.get("about:blank")  # asks the server for no more
        self.server = TileServer()
        self.browser.complaints()

    def tearDown(self):
        self.browser.driver.get("about:blank")
        self.server.shutdown()
        self.server.server_close()

    def open(self, *options, template=None):
        page = f"{self.folder}/page.html"
        subprocess.run([PROGRAM, "acquire", "--device", f"{SAMPLES}/receiver", "-o", page, "-q",
                        "--tiles", template or self.server.template, *options], check=True)
        self.browser.open(page)

    def wait(self, condition):
        """Waits until an expression in the page is true; the script's time limit ends it."""
        self.browser.driver.execute_async_script(f"""const done = arguments[arguments.length - 1];
            const look = () => {condition} ? done() : requestAnimationFrame(look);
            look();""")

    def press(self):
        self.browser.find("#tiles").click()

    def status(self):
        return self.browser.find(".tiles [role=status]").text

    def wait_for_tiles(self):
        self.wait("document.querySelector('.tiles [role=status]').textContent === '' && "
                  "tiles.size > 0")
        self.browser.settle()

    def assert_places_are_on_their_tiles(self, places):
        zoom = self.browser.ask("""Math.round(Math.log2(
            360 * page.map.view.scale * page.map.view.parallelScale / 256))""")
        for longitude, latitude in places:
            path = tile_at(longitude, latitude, zoom)
            shown, box = self.browser.ask("""((x, y, path) => [
                    [page.map.view.toPixelX(x), page.map.view.toPixelY(y)],
                    [...tiles].find(([url]) => url.endsWith(path))?.[1].to])(...arguments)""",
                                          longitude, latitude, path)
            self.assertIsNotNone(box, path)
            left, top, width, height = box
            self.assertTrue(left - 1 <= shown[0] <= left + width + 1, (shown, box))
            self.assertTrue(top - 1 <= shown[1] <= top + height + 1, (shown, box))

    def test_nothing_is_loaded_before_the_reader_asks(self):
        self.open()
        self.browser.run("page.map.zoomAt(2, 100, 100)")
        self.assertEqual(self.server.paths, [])
        self.assertEqual(self.status(), f"from 127.0.0.1:{self.server.server_port}")
        self.assertFalse(self.browser.find(".attribution").is_displayed())
        self.press()
        self.wait_for_tiles()
        self.assertNotEqual(self.server.paths, [])
        self.assertEqual(self.browser.complaints(), [])

    def test_tracks_lie_on_the_tiles_of_their_places(self):
        self.open()
        self.press()
        for step in "page.map.zoomAt(2, 100, 100)", "page.map.panBy(300, 200)":
            self.browser.run("tiles.clear()")
            self.browser.run(step)
            self.wait_for_tiles()
            places = self.browser.ask("""[[50, 50], [400, 300], [700, 500]].map(([px, py]) =>
                [page.map.view.fromPixelX(px), page.map.view.fromPixelY(py)])""")
            self.assert_places_are_on_their_tiles(places)

    def test_tiles_are_right_far_in_the_north_and_south(self):
        self.open()
        self.press()
        for latitude in 78.2, -70.5, 84.9:
            self.browser.run("tiles.clear()")
            self.browser.run(f"""page.map.fit({{ west: 15, east: 16, south: {latitude - 0.1},
                north: {latitude + 0.1} }})""")
            self.wait_for_tiles()
            self.assert_places_are_on_their_tiles([(15.2, latitude), (15.7, latitude + 0.05)])

    def test_pointing_works_while_tiles_are_shown(self):
        self.open()
        self.press()
        self.browser.run("page.map.fit({ west: -180, east: 180, south: -60, north: 75 })")
        found = self.browser.ask("""(([track], { map }) => map.itemAt(
            map.view.toPixelX(track.x[0]), map.view.toPixelY(track.latitude[0])).item.kind)(
            page.collection.tracks, page)""")
        self.assertIn(found, ("track", "waypoint", "geocache", "route point"))

    def test_a_second_press_takes_the_tiles_away(self):
        self.open()
        self.press()
        self.wait_for_tiles()
        self.press()
        self.browser.run("tiles.clear()")
        loaded = len(self.server.paths)
        self.browser.run("page.map.panBy(700, 0)")
        self.assertEqual(self.browser.ask("tiles.size"), 0)
        self.assertFalse(self.browser.ask("page.map.view.isMercator"))
        self.assertEqual(len(self.server.paths), loaded)
        self.assertFalse(self.browser.find(".attribution").is_displayed())

    def test_without_a_network_the_page_says_so_and_stays_usable(self):
        self.server.is_broken = True
        self.open()
        self.press()
        # It says that it loads once more while it tries others.
        self.wait("document.querySelector('.tiles [role=status]').textContent === "
                  f"'The map cannot be loaded from 127.0.0.1:{self.server.server_port}.'")
        self.browser.find("#table-waypoints .link").click()
        self.assertTrue(self.browser.find("#tip").is_displayed())
        self.assertEqual([message for message in self.browser.complaints()
                          if f":{self.server.server_port}/" not in message], [])
        self.server.is_broken = False
        self.press()
        self.press()
        self.wait_for_tiles()
        self.browser.complaints()

    def test_attribution_is_shown_with_the_tiles_and_stays_text(self):
        self.open("--tiles-attribution", "© <b>Me</b> & you")
        self.press()
        self.assertEqual(self.browser.find(".attribution").text, "© <b>Me</b> & you")

    def test_openstreetmap_is_named_and_linked(self):
        self.open(template="https://tile.openstreetmap.org/{z}/{x}/{y}.png")
        self.browser.run("document.querySelector('.attribution').hidden = false")
        self.assertEqual(self.browser.find(".attribution").text, "© OpenStreetMap contributors")
        self.assertEqual(self.browser.find(".attribution a").get_attribute("href"),
                         "https://www.openstreetmap.org/copyright")

    def test_the_policy_allows_pictures_of_the_tiles_server_only(self):
        self.open()
        page = pathlib.Path(f"{self.folder}/page.html").read_text(encoding="utf-8")
        policy = re.search(r'Content-Security-Policy"\s+content="([^"]*)"', page).group(1)
        self.assertTrue(policy.endswith(
            f"form-action 'none'; img-src http://127.0.0.1:{self.server.server_port}"), policy)
        self.assertEqual(policy.count("img-src"), 1)

    def test_tiles_from_a_folder(self):
        for column in "01":
            folder = pathlib.Path(self.folder, "maps", "1", column)
            folder.mkdir(parents=True)
            for row in "01":
                (folder / f"{row}.png").write_bytes(picture(220))
        self.open(template=f"file://{self.folder}/maps/{{z}}/{{x}}/{{y}}.png")
        self.browser.run("page.map.view.fit({ west: -180, east: 180, south: -80, north: 80 })")
        self.press()
        self.browser.run("page.map.zoomAt(0.001, 100, 100)")
        self.wait("[...tiles.keys()].some((url) => url.endsWith('/1/1/0.png'))")
        self.browser.complaints()

    def test_contrast_is_sufficient_while_tiles_are_shown_and_not(self):
        for theme in "light", "dark":
            self.browser.use_theme(theme)
            self.open()
            found = self.browser.ask(states.LOW_CONTRASTS % "document.querySelector('.tiles')")
            self.assertEqual(found, [], theme)
            self.press()
            self.wait_for_tiles()
            self.assertEqual(states.low_contrasts(self.browser), [], theme)
        self.assertEqual(states.small_targets(self.browser), [])

    def test_names_avoid_the_attribution(self):
        self.open("--tiles-attribution", "© Somebody whose name is long")
        self.press()
        self.browser.settle()
        left, top, right, bottom = self.browser.ask("""(({ left, top, right, bottom }) =>
            [left, top, right, bottom])(page.map.attribution_()[0])""")
        shown = self.browser.ask("document.querySelector('.attribution').getBoundingClientRect()")
        frame = self.browser.ask("document.querySelector('#map canvas').getBoundingClientRect()")
        self.assertAlmostEqual(left, shown["left"] - frame["left"], delta=1)
        self.assertAlmostEqual(bottom - top, shown["height"], delta=1)
        self.assertAlmostEqual(right - left, shown["width"], delta=1)

    def test_page_without_tiles_has_no_button(self):
        page = f"{self.folder}/plain.html"
        subprocess.run([PROGRAM, "acquire", "--device", f"{SAMPLES}/receiver", "-o", page, "-q"],
                       check=True)
        self.browser.open(page)
        self.assertEqual(self.browser.ask("document.querySelectorAll('#tiles').length"), 0)
        self.assertNotIn("img-src", pathlib.Path(page).read_text(encoding="utf-8"))


if __name__ == "__main__":
    if Browser is None or not shutil.which("chromium") or not shutil.which("chromedriver"):
        print("skipped: needs python3-selenium, chromium and chromedriver")
        sys.exit(77)
    PROGRAM, SAMPLES = (str(pathlib.Path(path).resolve()) for path in sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=2)

#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Pictures of the page in Firefox.

Usage: firefox_test.py PROGRAM SAMPLES [TEST...]. Exit status 77 without Firefox. With the
environment variable KEEP_PICTURES, the pictures stay in the folder that it names.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

try:
    from PIL import Image, ImageColor
except ImportError:
    Image = None

STYLE = pathlib.Path(__file__).resolve().parents[2] / "host/page/page.css"
MAP = (30, 170, 730, 780)  # within the map, in pixels of the window
WINDOW = "1280,900"

# The browser's own settings.
IS_DARK = "ui.systemUsesDarkTheme"
QUIET = {"datareporting.policy.dataSubmissionEnabled": "false",
         "toolkit.telemetry.enabled": "false", "app.update.enabled": "false"}


class FirefoxTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="firefox-test-")
        cls.page = f"{cls.folder}/sample.html"
        subprocess.run([PROGRAM, "acquire", "--device", f"{SAMPLES}/receiver", "-o", cls.page,
                        "-q"], check=True)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    def picture(self, name, **settings):
        """Returns the picture of the page's first screen."""
        profile = pathlib.Path(tempfile.mkdtemp(dir=self.folder))
        lines = [f'user_pref("{key}", {value});'
                 for key, value in {**QUIET, **settings}.items()]
        profile.joinpath("user.js").write_text("\n".join(lines), encoding="ascii")
        path = pathlib.Path(os.environ.get("KEEP_PICTURES", self.folder), f"firefox-{name}.png")
        subprocess.run(["firefox-esr", "--headless", "--no-remote", "--profile", profile,
                        f"--window-size={WINDOW}", "--screenshot", path, f"file://{self.page}"],
                       check=True, timeout=120, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                       env={**os.environ, "HOME": self.folder})
        return Image.open(path).convert("RGB")

    @staticmethod
    def lines_on_map(picture):
        """The tracks' colours that many pixels of the map have, in the light theme and the dark."""
        colours = {colour for count, colour in picture.crop(MAP).getcolors(1 << 20) if count > 100}
        style = STYLE.read_text(encoding="utf-8")
        themes = re.findall(
            r"--track-\d: var\(--if-light, (#\w+)\) var\(--if-dark, (#\w+)\)", style)
        return [len(colours & {ImageColor.getrgb(text) for text in theme})
                for theme in zip(*themes)]

    def test_map_is_drawn_in_both_themes(self):
        for name, is_dark, lines in ("light", 0, [3, 0]), ("dark", 1, [0, 3]):
            picture = self.picture(name, **{IS_DARK: is_dark})
            self.assertEqual(self.lines_on_map(picture), lines, name)

    def test_without_scripts_there_is_text_and_no_map(self):
        picture = self.picture("without-scripts", **{"javascript.enabled": "false"})
        self.assertEqual(self.lines_on_map(picture), [0, 0])
        self.assertGreater(len(picture.getcolors(1 << 20)), 20)


if __name__ == "__main__":
    PROGRAM, SAMPLES = sys.argv[1:3]
    if Image is None or not shutil.which("firefox-esr"):
        print("skipped: needs Firefox and Pillow (scripts/install-packages test)")
        sys.exit(77)
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)

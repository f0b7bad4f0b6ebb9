# SPDX-License-Identifier: MIT
"""What the stories of the window's users share. Importing this runs the story again in a session of
its own: on a screen in memory, with a bus of its own."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import screen

if not os.environ.get("WINDOW_TEST_SESSION"):
    os.environ["WINDOW_TEST_SESSION"] = "yes"
    sys.exit(screen.run([sys.executable, "-B", *sys.argv]))

import window  # noqa: E402

SAMPLES = pathlib.Path(__file__).parents[2] / "samples"
PROGRAMS = pathlib.Path(sys.argv.pop(1))
RECEIVED = "Received: 46 waypoints, 14 geocaches, 6 routes, 6 tracks (2,484 points)."  # the sample
WHEN = {"SOURCE_DATE_EPOCH": "1717236000"}


def begins(text):
    return lambda name: name.startswith(text)


class Story(unittest.TestCase):
    environment = WHEN  # of the programs, beside this one's own

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="window-test-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def open(self, *paths):
        opened = window.Window(PROGRAMS / "magellangps-desktop", *map(str, paths),
                               environment=self.environment)
        self.addCleanup(opened.__exit__)
        return opened

    def open_also(self, opened, *paths):
        """Hands paths to a window that is open."""
        subprocess.run([PROGRAMS / "magellangps-desktop", *paths], check=True,
                       env=opened.environment)

    def download(self, *paths):
        opened = self.open(*paths)
        opened.find("label", begins("Magellan device"))
        opened.press("push button", "Download")
        return opened

    def export(self, opened, name):
        opened.press("push button", "Export…")
        opened.type("Name:", str(self.folder / name))
        opened.press("push button", "Save")

    def command_line(self, *arguments, status=0):
        ended = subprocess.run([PROGRAMS / "magellangps", *map(str, arguments)], text=True,
                               env=dict(os.environ, **self.environment), capture_output=True)
        self.assertEqual(ended.returncode, status, ended.stderr)

    def contents(self, folder):
        """The files below a folder, by their paths in it."""
        return {str(path.relative_to(folder)): path.read_bytes()
                for path in folder.rglob("*") if path.is_file()}


def main():
    unittest.main(verbosity=2)

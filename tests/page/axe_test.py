#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The page against the accessibility rules of axe-core, in both themes and in its states.

Usage: axe_test.py PROGRAM SAMPLES FOLDER [TEST...]. npm installs the rules into the folder, in the
version that axe/package-lock.json names. Exit status 77 without npm, its registry or a browser.
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

try:
    from browser import Browser
except ImportError:
    Browser = None

# Returns a message for each element that breaks a rule.
RUN_AXE = """const done = arguments[0];
    axe.run(document, { resultTypes: ["violations"] }).then(({ violations }) =>
        done(violations.flatMap(({ id, nodes }) => nodes.map(({ target, failureSummary }) =>
            `${id}: ${target.join(" ")}: ${failureSummary}`))));"""


def install_rules(folder):
    """Returns the script with the rules, or None if it cannot be installed."""
    if not shutil.which("npm"):
        return None
    for path in (pathlib.Path(__file__).parent / "axe").iterdir():
        shutil.copy(path, folder)
    command = ["npm", "ci", "--no-audit", "--no-fund", "--loglevel=error"]
    if subprocess.run(command, cwd=folder, check=False, stdin=subprocess.DEVNULL).returncode != 0:
        return None
    return pathlib.Path(folder, "node_modules/axe-core/axe.min.js").read_text(encoding="utf-8")


class AxeTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="axe-test-")
        cls.page = f"{cls.folder}/sample.html"
        subprocess.run([PROGRAM, "acquire", "--device", f"{SAMPLES}/receiver", "-o", cls.page,
                        "-q"], check=True)
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.__exit__()
        shutil.rmtree(cls.folder)

    def open(self, theme="light", width=1280):
        self.browser.use_theme(theme)
        self.browser.resize(width, 900)
        self.browser.open(self.page)
        self.browser.driver.execute_script(RULES)

    def violations(self):
        return self.browser.driver.execute_async_script(RUN_AXE)

    def test_page_as_it_opens_breaks_no_rule(self):
        for theme in "light", "dark":
            for width in 1280, 360:
                self.open(theme, width)
                self.assertEqual(self.violations(), [], f"{theme}, {width}")

    def test_page_in_use_breaks_no_rule(self):
        for theme in "light", "dark":
            self.open(theme)
            self.browser.find("#list summary").click()
            self.browser.find("#list input[type=search]").send_keys("no such name")
            self.browser.choose("#colours", "speed")
            self.browser.find("#clock").click()
            self.browser.find("#symbols summary").click()
            self.browser.find("#table-geocaches .ask").click()
            self.browser.find("#table-tracks th:nth-child(2) button").click()
            self.browser.find("#track-1 input").click()
            self.browser.run("""page.mark.pin(page.collection.geocaches[0]);
                page.stretch.set(page.collection.tracks[0], 100, 200);""")
            self.assertEqual(self.violations(), [], theme)

    def test_rules_find_a_button_without_a_name(self):
        self.open()
        self.browser.run("document.getElementById('zoom-in').removeAttribute('aria-label')")
        self.browser.run("document.getElementById('zoom-in').textContent = ''")
        self.assertEqual([text.split(":")[0] for text in self.violations()], ["button-name"])


if __name__ == "__main__":
    PROGRAM, SAMPLES, FOLDER = sys.argv[1:4]
    if Browser is None or not shutil.which("chromium") or not shutil.which("chromedriver"):
        print("skipped: needs Chromium, its driver and Selenium (scripts/install-packages test)")
        sys.exit(77)
    pathlib.Path(FOLDER).mkdir(parents=True, exist_ok=True)
    RULES = install_rules(FOLDER)
    if RULES is None:
        print("skipped: needs npm and its registry, for the rules")
        sys.exit(77)
    unittest.main(argv=sys.argv[:1] + sys.argv[4:], verbosity=2)

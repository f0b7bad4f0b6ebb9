# SPDX-License-Identifier: MIT
"""A browser without a window, for the page's tests and pictures.

It downloads nothing and saves nothing.
"""

import base64
import shutil
import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.support.select import Select

ARGUMENTS = [
    "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
    "--disable-background-networking", "--disable-component-update", "--disable-sync",
    "--disable-dev-shm-usage", "--hide-scrollbars",
]


class Browser:
    """A context manager: at its end, the browser is closed and its profile deleted."""

    def __init__(self, width=1280, height=900):
        self.folder = tempfile.mkdtemp(prefix="page-")
        options = webdriver.ChromeOptions()
        options.binary_location = shutil.which("chromium")
        for argument in ARGUMENTS + [f"--user-data-dir={self.folder}"]:
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        service = Service(shutil.which("chromedriver"))
        self.driver = webdriver.Chrome(service=service, options=options)
        self.driver.set_script_timeout(60)
        self.resize(width, height)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.driver.quit()
        shutil.rmtree(self.folder, ignore_errors=True)

    def command(self, name, **parameters):
        return self.driver.execute_cdp_cmd(name, parameters)

    def resize(self, width, height):
        self.command("Emulation.setDeviceMetricsOverride", width=width, height=height,
                     deviceScaleFactor=1, mobile=width < 600)

    def use_theme(self, theme, forced_colours="none"):
        """Sets the theme of the user's system: "light" or "dark". With forced colours "active",
        pages have the system's few colours."""
        self.command("Emulation.setEmulatedMedia", features=[
            {"name": "prefers-color-scheme", "value": theme},
            {"name": "prefers-reduced-motion", "value": "reduce"},
            {"name": "forced-colors", "value": forced_colours},
        ])

    def open(self, path):
        """Opens a page and waits until its map is drawn."""
        self.driver.get(f"file://{path}")
        self.settle()

    def settle(self):
        """Waits until pending changes are drawn."""
        self.driver.execute_async_script("""const done = arguments[arguments.length - 1];
            const afterFrame = (action) => requestAnimationFrame(action);
            afterFrame(() => afterFrame(() => afterFrame(done)));""")

    def ask(self, script, *arguments):
        """Returns the value of an expression in the page."""
        return self.driver.execute_script(f"return {script};", *arguments)

    def run(self, script, *arguments):
        self.driver.execute_script(script, *arguments)
        self.settle()

    def find(self, selector):
        """Returns the first element that a selector matches."""
        return self.driver.find_element("css selector", selector)

    def choose(self, selector, value):
        """Chooses from a list."""
        Select(self.find(selector)).select_by_value(value)
        self.settle()

    def complaints(self):
        """Returns what the page or the browser has logged since the last call."""
        return [entry["message"] for entry in self.driver.get_log("browser")]

    def move(self, x, y, kind="mouseMoved", buttons=0):
        self.command("Input.dispatchMouseEvent", type=kind, x=x, y=y, buttons=buttons,
                     button="left" if buttons or kind == "mouseReleased" else "none",
                     clickCount=0 if kind == "mouseMoved" else 1)
        self.settle()

    def touch(self, x, y):
        self.command("Input.dispatchTouchEvent", type="touchStart", touchPoints=[{"x": x, "y": y}])
        self.command("Input.dispatchTouchEvent", type="touchEnd", touchPoints=[])
        self.settle()

    def picture(self, path):
        data = self.command("Page.captureScreenshot", format="png")["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(data))

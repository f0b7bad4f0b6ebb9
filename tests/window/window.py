# SPDX-License-Identifier: MIT
"""A desktop program on a screen of its own, driven as a screen reader drives it."""

import os
import pathlib
import re
import subprocess
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

CONTROLS = {"push button", "toggle button", "check box", "combo box", "list", "list item",
            "page tab", "page tab list", "progress bar", "spin button", "text"}
CHECK_MARK = 14  # pixels from the left edge of a check box
FRAME = 5  # pixels around a window, which is in the corner of the screen
PATIENCE = 30  # seconds; a busy machine takes some of them


class Window:
    """A context manager: at its end, the program is closed."""

    IN_WINDOW = Atspi.CoordType.WINDOW

    def __init__(self, program, *arguments, environment=None):
        self.home = tempfile.TemporaryDirectory(prefix="window-")
        variables = dict(os.environ, HOME=self.home.name, XDG_RUNTIME_DIR=self.home.name,
                         GSK_RENDERER="cairo", GDK_BACKEND="x11", LC_ALL="C.UTF-8",
                         GSETTINGS_BACKEND="memory", **(environment or {}))
        self.environment = variables
        if "XDG_CONFIG_HOME" not in (environment or {}):  # nothing comes from the network
            folder = pathlib.Path(self.home.name, "config", "magellangps")
            folder.mkdir(parents=True)
            (folder / "config.toml").write_text('[window]\ntiles = "none"\n')
            variables["XDG_CONFIG_HOME"] = str(folder.parent)
        self.process = subprocess.Popen([program, *arguments], env=variables)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(PATIENCE)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        self.home.cleanup()

    def find(self, role, name):
        """The first widget of a role whose name matches; waits for it.

        The name is a text, or a function that decides.
        """
        matches = name if callable(name) else lambda text: text == name
        return self._wait_for(lambda: _find(self._application(), role, matches), f"{role} {name}")

    def files(self):
        """What the program has in the home folder that it got."""
        return [path for path in pathlib.Path(self.home.name).rglob("*") if path.is_file()]

    def names(self, role):
        """The names of all widgets of a role."""
        return [widget.get_name() for widget in _all(self._application())
                if widget.get_role_name() == role]

    def selected_row(self):
        """The last label of the row that is selected in the list of devices."""
        for item in self.widgets("list item"):
            if item.get_state_set().contains(Atspi.StateType.SELECTED):
                return self.labels_in(item)[-1]
        return None

    def selected_tabs(self):
        """The names of the pages that are shown."""
        return {tab.get_name() for tab in self.widgets("page tab")
                if tab.get_state_set().contains(Atspi.StateType.SELECTED)}

    def labels_in(self, widget):
        return [label.get_name() for label in _all(widget) if label.get_role_name() == "label"]

    def widgets(self, role):
        """All widgets of a role, from top to bottom."""
        found = [widget for widget in _all(self._application()) if widget.get_role_name() == role]
        return sorted(found, key=lambda widget: widget.get_extents(Atspi.CoordType.WINDOW).y)

    def unnamed(self, roles=CONTROLS):
        """The roles and names of the controls without a name, of some roles.

        The toolkit gives a control that has none the name of its class.
        """
        return [(widget.get_role_name(), widget.get_name()) for widget in _all(self._application())
                if widget.get_role_name() in roles and
                re.match(r"$|(gtkmm__)?(Gtk|Adw|Shumate)[A-Z]", widget.get_name())]

    def press(self, role, name):
        """Does what a click does, once the widget can be used."""
        widget = self.find(role, name)
        self._wait_for(lambda: widget.get_state_set().contains(Atspi.StateType.SENSITIVE),
                       f"{role} {name} that can be used")
        if widget.get_n_actions() > 0:
            assert widget.do_action(0)
        else:  # a check box: this version of the toolkit tells of no action
            place = self._resting_place(widget)
            subprocess.run(["xdotool", "mousemove", str(place.x + CHECK_MARK),
                            str(place.y + place.height // 2 + FRAME), "click", "1"], check=True)

    def click(self, role, name):
        """Moves the pointer to the start of a widget, and clicks."""
        place = self._resting_place(self.find(role, name))
        subprocess.run(["xdotool", "mousemove", str(place.x + 2 * FRAME),
                        str(place.y + place.height // 2 + FRAME), "click", "1"], check=True)

    def key(self, *keys):
        """Presses keys, one after another."""
        subprocess.run(["xdotool", "key", "--delay", "50", *keys], check=True)

    def resize(self, width, height):
        """Gives all of its windows another size, in pixels."""
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name",
                                "Magellan GPS"], check=True, capture_output=True, text=True)
        for window in found.stdout.split():
            subprocess.run(["xdotool", "windowsize", window, str(width), str(height)], check=True)

    def write(self, text):
        """Types a text, in ASCII, wherever the keyboard is."""
        subprocess.run(["xdotool", "type", "--delay", "50", text], check=True)

    def type(self, name, text):
        """Replaces the text of an entry."""
        assert self.find("text", name).set_text_contents(text)

    def is_ticked(self, name):
        states = self.find("check box", name).get_state_set()
        return states.contains(Atspi.StateType.CHECKED)

    def is_inside(self, widget, width_only=False):
        """Whether a widget ends within its window."""
        place = widget.get_extents(self.IN_WINDOW)
        frame = self.widgets("frame")[0].get_extents(self.IN_WINDOW)
        return (place.x >= 0 and place.x + place.width <= frame.width and
                (width_only or place.y + place.height <= frame.height))

    def can_be_used(self, role, name):
        return self.find(role, name).get_state_set().contains(Atspi.StateType.SENSITIVE)

    def wait_until(self, condition):
        self._wait_for(condition, "change")

    def _resting_place(self, widget):
        """Where a widget is, once it does not move any more."""
        place, before = widget.get_extents(Atspi.CoordType.WINDOW), None
        while before is None or (place.x, place.y) != (before.x, before.y):
            time.sleep(0.5)  # longer than what appears above it takes to do so
            before, place = place, widget.get_extents(Atspi.CoordType.WINDOW)
        return place

    def _application(self):
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(i)
            if child and child.get_process_id() == self.process.pid:
                return child
        return None

    def _wait_for(self, condition, what):
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            assert self.process.poll() is None, f"the program ended: {self.process.returncode}"
            try:
                found = condition()
            except gi.repository.GLib.Error:  # a widget that has just gone
                found = None
            if found:
                return found
            time.sleep(0.05)
        labels = self.names("label")
        raise AssertionError(f"no {what}; the first and last labels are {labels[:8] + labels[-4:]}")


def _all(widget):
    # The toolkit ends the program if somebody looks into the lists of its file dialog while that is
    # closed.
    if not widget or widget.get_name() == "GtkPaned":
        return
    yield widget
    for i in range(widget.get_child_count()):
        yield from _all(widget.get_child_at_index(i))


def _find(widget, role, matches):
    return next((found for found in _all(widget)
                 if found.get_role_name() == role and any(map(matches, _names(found)))), None)


def _names(widget):
    """The name of a widget, and those of the labels in it; spaces may be unbreakable there."""
    yield widget.get_name().replace("\xa0", " ")
    for i in range(widget.get_child_count()):
        child = widget.get_child_at_index(i)
        if child and child.get_role_name() == "label":
            yield child.get_name().replace("\xa0", " ")

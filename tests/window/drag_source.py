# SPDX-License-Identifier: MIT
"""A window, in the upper right corner of the screen, from which a file can be dragged.

drag_source.py FILE: prints "ready" once it is shown.
"""

import pathlib
import subprocess
import sys

import gi

gi.require_version("Gtk", "4.0")
from gi.repository import Gdk, Gio, GLib, Gtk  # noqa: E402

TITLE = "drag source"
PLACE = ("1110", "0")


def show(application):
    uri = pathlib.Path(sys.argv[1]).as_uri() + "\r\n"
    source = Gtk.DragSource(actions=Gdk.DragAction.COPY)
    source.set_content(Gdk.ContentProvider.new_for_bytes("text/uri-list",
                                                         GLib.Bytes.new(uri.encode())))
    window = Gtk.ApplicationWindow(application=application, title=TITLE, decorated=False,
                                   default_width=80, default_height=80,
                                   child=Gtk.Label(label="Drag this"))
    window.get_child().add_controller(source)
    window.present()
    GLib.timeout_add(100, place)


def place():
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", TITLE],
                           capture_output=True, text=True)
    if not found.stdout:
        return True  # once more
    subprocess.run(["xdotool", "windowmove", "--sync", found.stdout.split()[0], *PLACE])
    print("ready", flush=True)
    return False


application = Gtk.Application(application_id="com.orvane.DragSource",
                              flags=Gio.ApplicationFlags.NON_UNIQUE)
application.connect("activate", show)
application.run([])

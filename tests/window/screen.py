# SPDX-License-Identifier: MIT
"""A screen in memory and a session bus, for programs with a window."""

import os
import shutil
import subprocess
import tempfile

SKIPPED = 77  # for ctest


def run(command):
    """Runs a command on a new screen. Returns its exit status."""
    if not shutil.which("Xvfb") or not shutil.which("dbus-run-session"):
        return SKIPPED
    reading, writing = os.pipe()
    # No other user of this machine can reach a screen without a network.
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1200x800x24",
                               "-nolisten", "tcp", "-ac", "-noreset"], pass_fds=[writing],
                              stderr=subprocess.DEVNULL)
    os.close(writing)
    try:
        with os.fdopen(reading) as ready:
            number = ready.readline().strip()
        with tempfile.TemporaryDirectory(prefix="screen-") as folder:
            variables = dict(os.environ, DISPLAY=f":{number}", XDG_RUNTIME_DIR=folder)
            return subprocess.run(["dbus-run-session", "--", *command],
                                  env=variables).returncode
    finally:
        server.terminate()
        server.wait()

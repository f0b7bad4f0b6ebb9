"""Runs a command and measures it. Used by the scripts of this folder."""

import dataclasses
import os
import subprocess
import sys
import time


@dataclasses.dataclass
class Usage:
    wall: float       # seconds
    processor: float  # seconds, user and system, of all threads
    peak: float       # MB of memory


def run(command, state):
    """@param state  the folder that the program uses as the user's state and configuration"""
    environment = {"XDG_STATE_HOME": str(state), "XDG_CONFIG_HOME": str(state)}
    started = time.monotonic()
    with subprocess.Popen(command, stdout=subprocess.DEVNULL, env=environment) as child:
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
    wall = time.monotonic() - started
    if status != 0:
        sys.exit(f"{command} failed")
    return Usage(wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024)

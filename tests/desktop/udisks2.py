# SPDX-License-Identifier: MIT
"""A mocked udisks2 for dbusmock: one partition, /dev/sdb1, of one drive.

A partition with open files cannot be unmounted. Mounting and unmounting change the mount table of
the mocked machine in the folder UMOCKDEV_DIR.
Parameters: "folder", where the partition is mounted; "fails", the name of the error that a method
raises; "can_power_off" and "ejectable", of the drive.
"""

import contextlib
import os
import pathlib

import dbus
import dbusmock

BUS_NAME = "org.freedesktop.UDisks2"
MAIN_OBJ = "/org/freedesktop/UDisks2/Manager"
MAIN_IFACE = "org.freedesktop.UDisks2.Manager"
SYSTEM_BUS = True
BLOCK = "/org/freedesktop/UDisks2/block_devices/sdb1"
DRIVE = "/org/freedesktop/UDisks2/drives/Stick"
NODE = "/dev/sdb1"
BUSY = "org.freedesktop.UDisks2.Error.DeviceBusy"


def load(mock, parameters):
    fails = parameters.get("fails", {})
    table = pathlib.Path(os.environ["UMOCKDEV_DIR"], "proc/self/mountinfo")

    def may_fail(method):
        if method in fails:
            raise dbus.exceptions.DBusException("it was refused", name=fails[method])

    def resolve(_self, device, _options):
        return dbus.Array([BLOCK] if device["path"] == NODE else [], signature="o")

    def mount(_self, _options):
        may_fail("Mount")
        with table.open("a", encoding="utf-8") as lines:
            lines.write(f"95 27 8:17 / {parameters['folder']} rw - vfat {NODE} rw\n")
        return parameters["folder"]

    def is_in_use():
        for file in pathlib.Path("/proc").glob("[0-9]*/fd/*"):
            with contextlib.suppress(OSError):
                if (os.readlink(file) + "/").startswith(parameters["folder"] + "/"):
                    return True
        return False

    def unmount(_self, _options):
        may_fail("Unmount")
        if is_in_use():
            raise dbus.exceptions.DBusException("it is in use", name=BUSY)
        lines = table.read_text(encoding="utf-8").splitlines(keepends=True)
        table.write_text("".join(line for line in lines if NODE not in line), encoding="utf-8")

    def leave(_self, _options):
        may_fail("PowerOff")
        if NODE in table.read_text(encoding="utf-8"):
            raise dbus.exceptions.DBusException("it is mounted", name=BUSY)

    mock.AddMethod(MAIN_IFACE, "ResolveDevice", "a{sv}a{sv}", "ao", resolve)
    mock.AddObject(BLOCK, "org.freedesktop.UDisks2.Block", {"Drive": dbus.ObjectPath(DRIVE)}, [])
    dbusmock.get_object(BLOCK).AddMethods("org.freedesktop.UDisks2.Filesystem", [
        ("Mount", "a{sv}", "s", mount),
        ("Unmount", "a{sv}", "", unmount)])
    mock.AddObject(DRIVE, "org.freedesktop.UDisks2.Drive",
                   {"CanPowerOff": parameters.get("can_power_off", True),
                    "Ejectable": parameters.get("ejectable", True)},
                   [("PowerOff", "a{sv}", "", leave), ("Eject", "a{sv}", "", leave)])
    print("ready", flush=True)

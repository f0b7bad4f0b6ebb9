# SPDX-License-Identifier: MIT
"""Receivers that come and go while the window is open, on a mocked machine.

umockdev-wrapper python3 plug_test.py PROGRAMS: runs in a session of its own.
"""

import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys

import story
from story import PROGRAMS, SAMPLES, begins

import gi

gi.require_version("UMockdev", "1.0")
from gi.repository import UMockdev  # noqa: E402

PARTITION = "/sys/devices/usb1/1-1/block/sdb/sdb1"
UDISKS = pathlib.Path(__file__).parents[1] / "desktop" / "udisks2.py"
STICK = """P: /devices/usb1
E: SUBSYSTEM=usb
E: DEVTYPE=usb_device

P: /devices/usb1/1-1
E: SUBSYSTEM=usb
E: DEVTYPE=usb_device

P: /devices/usb1/1-1/block/sdb
N: sdb
E: SUBSYSTEM=block
E: DEVTYPE=disk
E: DEVNAME=/dev/sdb
E: MAJOR=8
E: MINOR=16
A: dev=8:16\\n
A: removable=1\\n

P: /devices/usb1/1-1/block/sdb/sdb1
N: sdb1
E: SUBSYSTEM=block
E: DEVTYPE=partition
E: DEVNAME=/dev/sdb1
E: ID_FS_TYPE=vfat
E: ID_FS_LABEL=MAGELLAN
E: MAJOR=8
E: MINOR=17
A: dev=8:17\\n

"""
OTHER_STICK = (STICK.split("\n\n", 1)[1].replace("sdb", "sdc").replace("1-1", "1-3")
               .replace("8:1", "8:3").replace("MINOR=1", "MINOR=3").replace("MAGELLAN", "OTHER"))
PORT = """P: /devices/usb1/1-2
E: SUBSYSTEM=usb
E: DEVTYPE=usb_device
A: idVendor=067b\\n
A: idProduct=2303\\n

P: /devices/usb1/1-2/ttyUSB0
L: driver=../../../../bus/usb-serial/drivers/pl2303
E: SUBSYSTEM=usb-serial

P: /devices/usb1/1-2/ttyUSB0/tty/ttyUSB0
N: ttyUSB0
E: SUBSYSTEM=tty
E: DEVNAME=/dev/ttyUSB0
E: ID_BUS=usb
E: MAJOR=188
E: MINOR=0
A: dev=188:0\\n

"""
PORT_NODE = "/sys/devices/usb1/1-2/ttyUSB0/tty/ttyUSB0"


class PlugTest(story.Story):
    def setUp(self):
        super().setUp()
        self.environment = {"DBUS_SYSTEM_BUS_ADDRESS": os.environ["DBUS_SESSION_BUS_ADDRESS"]}
        self.testbed = UMockdev.Testbed.new()
        self.receiver = shutil.copytree(SAMPLES / "receiver", self.folder / "receiver")
        os.environ["UMOCKDEV_DIR"] = self.testbed.get_root_dir()  # for what is started from here
        self.table = pathlib.Path(self.testbed.get_root_dir(), "proc/self/mountinfo")
        self.table.parent.mkdir(parents=True)
        self.table.write_text("")

    def plug_in(self):
        self.testbed.add_from_string(STICK)
        self.testbed.uevent(PARTITION, "add")

    def mount(self):
        self.table.write_text(f"95 27 8:17 / {self.receiver} rw - vfat /dev/sdb1 rw\n")
        self.testbed.uevent(PARTITION, "change")

    def unmount(self):
        self.table.write_text("")
        self.testbed.uevent(PARTITION, "change")

    def plug_in_cable(self, *options):
        """A USB serial adapter, behind which is a receiver. Returns the receiver."""
        receiver = subprocess.Popen(
            [PROGRAMS / "magellangps-simulator", "--unpaced", *options, SAMPLES / "files"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.addCleanup(receiver.stdout.close)
        self.addCleanup(receiver.wait)
        self.addCleanup(receiver.terminate)
        self.testbed.add_from_string(PORT)
        node = pathlib.Path(self.testbed.get_root_dir(), "dev/ttyUSB0")
        node.unlink(missing_ok=True)
        node.symlink_to(receiver.stdout.readline().strip())
        self.testbed.uevent(PORT_NODE, "add")
        return receiver

    def start_disk_service(self):
        service = subprocess.Popen(
            [sys.executable, "-B", "-m", "dbusmock", "--session", "-t", UDISKS, "-p",
             json.dumps({"folder": str(self.receiver)})], stdout=subprocess.PIPE, text=True)
        self.addCleanup(service.stdout.close)
        self.addCleanup(service.wait)
        self.addCleanup(service.kill)  # ends it even while it is stopped
        while service.stdout.readline() != "ready\n":
            pass
        return service

    def test_receiver_that_is_mounted_appears_and_downloads(self):
        opened = self.open()
        opened.find("label", begins("Plug a receiver in."))
        self.plug_in()
        self.mount()
        opened.find("label", begins("Magellan device"))
        opened.press("push button", "Download")
        opened.find("label", begins("Received: 46 waypoints"))

    def test_receiver_that_is_unmounted_disappears(self):
        self.plug_in()
        self.mount()
        opened = self.open()
        opened.find("label", begins("Magellan device"))
        self.unmount()
        opened.find("label", begins("Plug a receiver in."))
        opened.wait_until(lambda: not any(map(begins("Magellan device"), opened.names("label"))))

    def test_selected_receiver_stays_selected_when_another_one_is_mounted_before_it(self):
        second = shutil.copytree(self.receiver, self.folder / "another")
        self.plug_in()
        self.mount()
        opened = self.open()
        opened.find("label", str(self.receiver))
        opened.wait_until(lambda: opened.selected_row() == str(self.receiver))
        present = self.table.read_text()
        self.table.write_text(present.replace(str(self.receiver), str(second)) + present)
        self.testbed.uevent(PARTITION, "change")
        opened.find("label", str(second))
        self.assertEqual(opened.selected_row(), str(self.receiver))

    def test_unmounted_receiver_is_mounted_at_the_press_of_a_button(self):
        self.start_disk_service()
        self.plug_in()
        opened = self.open()
        opened.press("push button", 'Mount vfat "MAGELLAN"')
        opened.find("label", begins("Magellan device"))

    def test_disk_that_cannot_be_mounted_is_explained(self):
        self.plug_in()
        opened = self.open()
        opened.press("push button", 'Mount vfat "MAGELLAN"')
        opened.find("label", lambda text: "udisks2" in text)

    def test_receiver_that_is_ejected_is_unmounted_and_can_be_unplugged(self):
        self.start_disk_service()
        self.plug_in()
        self.mount()
        opened = self.open()
        opened.press("push button", "Eject")
        opened.find("label", "The device /dev/sdb1 is switched off and can be unplugged.")
        opened.wait_until(lambda: not any(map(begins("Magellan device"), opened.names("label"))))
        self.assertEqual(self.table.read_text(), "")

    def test_receiver_cannot_be_ejected_without_udisks2_and_stays(self):
        self.plug_in()
        self.mount()
        opened = self.open()
        opened.press("push button", "Eject")
        opened.find("label", begins("The disk cannot be unmounted, because udisks2 is not running"))
        opened.find("label", begins("Magellan device"))

    def test_receiver_is_not_ejected_while_a_transfer_runs(self):
        service = self.start_disk_service()
        self.plug_in()
        self.mount()
        self.testbed.add_from_string(OTHER_STICK)
        opened = self.open()
        opened.find("push button", "Eject")
        opened.find("push button", 'Mount vfat "OTHER"')
        os.kill(service.pid, signal.SIGSTOP)  # the import waits for the end of the mounting
        opened.press("push button", 'Mount vfat "OTHER"')
        opened.wait_until(lambda: not opened.can_be_used("push button", 'Mount vfat "OTHER"'))
        self.open_also(opened, SAMPLES / "files" / "trip.log")
        opened.find("push button", "Stop")
        opened.press("push button", "Eject")
        opened.find("label", begins("The receiver was not ejected, because a transfer is running."))
        os.kill(service.pid, signal.SIGCONT)
        opened.find("label", begins("Received: 1 track"))
        opened.find("label", begins("Magellan device"))

    def test_copy_of_a_receiver_cannot_be_ejected(self):
        opened = self.open(self.receiver)
        opened.find("label", begins("Magellan device"))
        self.assertNotIn("Eject", opened.names("push button"))

    def test_receiver_on_a_cable_that_is_plugged_in_downloads(self):
        opened = self.open()
        opened.find("label", begins("Plug a receiver in."))
        self.plug_in_cable()
        opened.find("label", "/dev/ttyUSB0")
        opened.press("push button", "Download")
        opened.find("label", begins("Received: "))

    def test_cable_that_is_pulled_out_disappears(self):
        self.plug_in_cable()
        opened = self.open()
        opened.find("label", "/dev/ttyUSB0")
        self.testbed.uevent(PORT_NODE, "remove")
        self.testbed.remove_device(PORT_NODE)
        opened.wait_until(lambda: "/dev/ttyUSB0" not in opened.names("label"))

    def test_download_that_is_stopped_keeps_what_has_arrived(self):
        self.plug_in_cable("--fault", "track-data:stop")
        opened = self.open()
        opened.find("label", "/dev/ttyUSB0")
        opened.press("push button", "Download")
        opened.press("push button", "Stop")
        opened.find("label", begins("Nothing was received."))

    def test_port_that_hangs_up_in_a_download_is_explained(self):
        receiver = self.plug_in_cable("--fault", "track-data:stop")
        opened = self.open()
        opened.find("label", "/dev/ttyUSB0")
        opened.press("push button", "Download")
        opened.find("progress bar", lambda name: True)
        receiver.kill()
        opened.find("label", begins("Nothing was received."))
        opened.find("label", lambda name: "The port is gone. Plug the receiver" in name)


if __name__ == "__main__":
    story.main()

# SPDX-License-Identifier: MIT
"""What users see when the receiver is pulled out, the disk is full or the program is killed, and
what they have then.

trouble_test.py PROGRAMS [unittest's arguments]: runs in a session of its own.
"""

import errno
import shutil
import signal

import story
from story import PROGRAMS, RECEIVED, SAMPLES, begins

FAILING_CALLS = PROGRAMS.parent / "tests" / "failing_calls.so"
MANY = 100_000  # waypoints
GPX = '<gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1">'
CAMP = GPX + '<wpt lat="46.5" lon="7.5"><name>New camp</name></wpt></gpx>'


class TroubleTest(story.Story):
    def setUp(self):
        super().setUp()
        self.receiver = self.copy("receiver")
        self.calls = self.folder / "calls.log"

    def copy(self, name):
        return shutil.copytree(SAMPLES / "receiver", self.folder / name)

    def fail(self, folder, kind="", call=0, error=errno.EIO):
        """One of the calls on the files below a folder fails in the programs that are opened next.
        With 0, none does."""
        self.environment = dict(
            story.WHEN, LD_PRELOAD=str(FAILING_CALLS), FAULT_ROOT=str(folder), FAULT_KIND=kind,
            FAULT_CALL=str(call), FAULT_ERROR=str(int(error)), FAULT_LOG=str(self.calls))

    def first_write(self):
        """The number of the first call that wrote below the folder."""
        names = [line.split()[0] for line in self.calls.read_text().splitlines()]
        self.calls.unlink()
        return names.index("write") + 1

    def send(self, receiver):
        file = self.folder / "camp.gpx"
        file.write_text(CAMP)
        opened = self.open(receiver, file)
        opened.find("label", begins("Received: 1 waypoint"))
        opened.press("page tab", "Send")
        opened.press("push button", "Send")
        return opened

    def export_over(self, path):
        opened = self.download(self.receiver)
        opened.find("label", RECEIVED)
        self.export(opened, path)
        opened.press("push button", "Replace")
        return opened

    def test_receiver_that_is_pulled_out_in_a_download_keeps_what_has_arrived(self):
        self.fail(self.receiver / "Track Logs", "gone", call=8)
        opened = self.download(self.receiver)
        opened.find("label", begins("Received, but not complete: "))
        opened.find("label", lambda name: "Track Logs" in name)
        opened.find("check box", "Coast Walk")

    def test_disk_that_is_full_leaves_the_file_that_was_there(self):
        out = self.folder / "out"
        out.mkdir()
        file = out / "trip.gpx"
        file.write_text("what was there")
        self.fail(out)
        opened = self.export_over(file)
        opened.find("label", begins("Saved: "))
        opened.__exit__()
        file.write_text("what was there")
        self.fail(out, "once", self.first_write(), errno.ENOSPC)
        opened = self.export_over(file)
        opened.find("label", lambda name: "trip.gpx" in name and "space" in name)
        self.assertEqual(self.contents(out), {"trip.gpx": b"what was there"})

    def test_program_that_is_killed_in_a_send_leaves_whole_files_and_a_backup(self):
        receiver = self.copy("first")
        self.fail(receiver)
        opened = self.send(receiver)
        opened.find("label", begins("Sent, and read back"))
        opened.__exit__()
        before = self.contents(self.receiver)
        self.fail(self.receiver, "kill", self.first_write())
        opened = self.send(self.receiver)
        self.assertEqual(opened.process.wait(), -signal.SIGKILL)
        self.assertTrue(any(path.name == "manifest.json" for path in opened.files()))
        for name, content in before.items():
            self.assertEqual((self.receiver / name).read_bytes(), content, name)
        self.environment = story.WHEN
        opened = self.download(self.receiver)
        opened.find("label", RECEIVED)

    def test_window_that_is_closed_while_it_saves_asks_and_ends_the_transfer_first(self):
        gate = self.folder / "gate"
        gate.touch()
        self.fail(self.receiver / "Track Logs", "wait", call=20)
        config = self.folder / "config" / "magellangps" / "config.toml"
        config.parent.mkdir(parents=True)
        config.write_text('[window]\ntiles = "none"\nsave-new = true\n'
                          f'save-folder = "{self.folder / "saved"}"\n')
        self.environment |= {"FAULT_GATE": str(gate),
                             "XDG_CONFIG_HOME": str(self.folder / "config"),
                             "XDG_STATE_HOME": str(self.folder / "state")}
        opened = self.open(self.receiver)
        opened.press("page tab", "Saving")
        opened.find("label", "A receiver is being read\u2026")
        opened.key("ctrl+q")
        opened.press("push button", "Continue")
        opened.wait_until(lambda: "Stop the Transfer?" not in opened.names("label"))
        opened.key("ctrl+q")
        opened.press("push button", "Stop and Close")
        gate.unlink()
        self.assertEqual(opened.process.wait(), 0)
        self.assertEqual(list((self.folder / "saved").glob("*.gpx")), [])

    def test_very_many_waypoints_are_listed_and_exported(self):
        file = self.folder / "many.gpx"
        points = (f'<wpt lat="{i / 2000}" lon="{i / 1000}"><name>P{i}</name></wpt>'
                  for i in range(MANY))
        file.write_text(f"{GPX}{''.join(points)}</gpx>")
        opened = self.open(file)
        opened.find("label", f"Received: {MANY:,} waypoints.")
        self.export(opened, "out.gpx")
        opened.find("label", begins("Saved: "))
        self.assertEqual((self.folder / "out.gpx").read_text().count("<wpt "), MANY)


if __name__ == "__main__":
    story.main()

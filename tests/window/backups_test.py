# SPDX-License-Identifier: MIT
"""The page of backups: what users see of them, and what putting one back does.

backups_test.py PROGRAMS [unittest's arguments]: runs in a session of its own.
"""

import shutil

import story
from story import SAMPLES, begins

RESTORED = "The backup is restored: the receiver holds what it held then."
GPX = ('<gpx version="1.1" xmlns="http://www.topografix.com/GPX/1/1">'
       '<wpt lat="46.5" lon="7.5"><name>New camp</name></wpt></gpx>')
ROUTES = "Routes/South.rte"


def has(text):
    return lambda name: text in name


def is_time(name):
    return name.endswith(" UTC") and name.startswith("20")


class BackupsTest(story.Story):
    def setUp(self):
        super().setUp()
        self.device = self.folder / "receiver"
        shutil.copytree(SAMPLES / "receiver", self.device)
        self.environment = {"XDG_STATE_HOME": str(self.folder / "state"), "TZ": "UTC"}
        self.original = self.contents(self.device)

    def send(self):
        """Sends a waypoint from the command line, which makes a backup."""
        file = self.folder / "new.gpx"
        file.write_text(GPX)
        self.command_line("send", "-q", "--device", self.device, file)

    def backups(self):
        kept = self.folder / "state" / "magellangps" / "backups"
        return sorted(path for path in kept.glob("*/*") if not path.name.startswith("."))

    def show_backups(self):
        opened = self.open(self.device)
        opened.find("label", begins("Magellan device"))
        opened.press("page tab", "Backups")
        return opened

    def test_without_backups_the_page_says_when_one_is_made(self):
        opened = self.show_backups()
        opened.find("label", "There is no backup of this receiver. One is made before each send.")

    def test_backup_of_a_send_is_put_back_byte_for_byte(self):
        self.send()
        self.assertNotEqual(self.contents(self.device), self.original)
        sent = self.device / "My POIs" / "Default POI File.upt"
        sent.unlink()
        south = self.device / ROUTES
        south.write_bytes(b"")
        opened = self.show_backups()
        opened.find("label", begins("The Selected Receiver: "))
        opened.click("label", is_time)
        opened.find("label", has(f"{ROUTES}: gets 3 routes instead of no records"))
        opened.press("push button", "Restore…")
        opened.find("label", has("1 file of the receiver becomes what it was on 20"))
        opened.press("push button", "Restore")
        opened.find("label", RESTORED)
        opened.find("label", has(f"restored: {ROUTES}"))
        self.assertEqual(self.contents(self.device), self.original)
        opened.wait_until(lambda: len([name for name in opened.names("label") if is_time(name)])
                          == 2)
        self.assertEqual(len(self.backups()), 2)

    def test_times_are_local_or_in_utc_as_the_preferences_say(self):
        self.send()
        kept = self.backups()[0]
        kept.rename(kept.with_name("20260701T233000Z"))
        self.environment["TZ"] = "Asia/Kolkata"
        opened = self.show_backups()
        opened.find("label", "2026-07-02 05:00:00 UTC+05:30")
        opened.key("ctrl+comma")
        opened.press("check box", "Times in UTC")
        opened.find("label", "2026-07-01 23:30:00 UTC")

    def test_every_backup_of_many_can_be_shown(self):
        self.send()
        first = self.backups()[0]
        for day in range(1, 28):
            shutil.copytree(first, first.with_name(f"202601{day:02}T120000Z"))
        opened = self.show_backups()
        opened.press("push button", "Show 3 More")
        opened.find("label", "2026-01-01 12:00:00 UTC")
        self.assertEqual(len(set(filter(is_time, opened.names("label")))), 28)

    def test_file_that_the_backup_does_not_have_is_announced_and_stays(self):
        self.send()
        after = self.contents(self.device)
        opened = self.show_backups()
        opened.click("label", is_time)
        opened.find("label", has("there is nothing to restore"))
        opened.find("label", has("1 file is not in the backup, and will stay: "
                                 "My POIs/Default POI File.upt."))
        self.assertFalse(opened.can_be_used("push button", "Restore…"))
        self.assertEqual(self.contents(self.device), after)

    def test_answer_no_changes_nothing(self):
        self.send()
        (self.device / ROUTES).write_bytes(b"")
        before = self.contents(self.device)
        opened = self.show_backups()
        opened.click("label", is_time)
        opened.press("push button", "Restore…")
        opened.press("push button", "Cancel")
        opened.wait_until(lambda: "Restore This Backup?" not in opened.names("label"))
        self.assertEqual(self.contents(self.device), before)
        self.assertEqual(len(self.backups()), 1)

    def test_damaged_backup_is_refused_with_its_file(self):
        self.send()
        (self.backups()[0] / "files" / ROUTES).write_bytes(b"damaged")
        opened = self.show_backups()
        opened.click("label", is_time)
        opened.find("label", has("A file of the backup is damaged."))
        self.assertFalse(opened.can_be_used("push button", "Restore…"))

    def test_backup_without_its_list_is_named(self):
        self.send()
        (self.backups()[0] / "manifest.json").write_text("{")
        opened = self.show_backups()
        opened.find("label", has("is damaged: its list of files"))

    def test_backups_of_another_receiver_cannot_be_restored(self):
        self.send()
        shutil.move(self.folder / "state/magellangps/backups/0417002219",
                    self.folder / "state/magellangps/backups/99")
        opened = self.show_backups()
        opened.find("label", "Receiver 99")
        opened.find("label", "To restore one of these, plug the receiver in and select it.")
        opened.find("label", is_time)
        self.assertNotIn("Restore…", opened.names("push button"))

    def test_receiver_that_is_gone_ends_in_a_message(self):
        self.send()
        (self.device / ROUTES).write_bytes(b"")
        opened = self.show_backups()
        opened.click("label", is_time)
        opened.press("push button", "Restore…")
        opened.find("label", has("1 file of the receiver becomes"))
        shutil.rmtree(self.device)
        opened.press("push button", "Restore")
        opened.find("label", "The backup was not restored, or not completely.")

    def test_everything_has_a_name(self):
        self.send()
        opened = self.show_backups()
        opened.click("label", is_time)
        opened.find("label", has("there is nothing to restore"))
        self.assertEqual(opened.unnamed(), [])


if __name__ == "__main__":
    story.main()

"""The X server, those beside the program on it, the disk and the clock misbehave."""

import contextlib
import json
import os
import pathlib
import shutil
import signal
import subprocess
import time
import unittest

from peers import CLOCK, DISK, DISPLAY, LAST, NEW
from peers_runner import PeersTest
from support import wait_until
from Xlib import X

from desktop import processes

SMALL_DISK = os.environ.get("CORVANE_SMALL_DISK")
FAKETIME = next(pathlib.Path("/usr/lib").glob("*/faketime/libfaketimeMT.so.1"), None)
ROUND_THE_CARD = (-340, 10), (340, 10), (-340, 200), (340, 200), (0, 380)


class DesktopTest(PeersTest):
    def test_display(self):
        self.run_rows(DISPLAY)

    def still_works(self, row):
        self.refresh(row.sees)
        self.opens_and_folds()

    def compositor(self, row):
        corvane, before = self.start(), self.kept()
        processes.stop(self.desktop.process("picom"))
        self.still_works(row)
        corvane.settled()
        for place in ROUND_THE_CARD:
            self.assertEqual(self.colour_at(*place), self.desktop.backdrop.colour, place)
        self.desktop.start_compositor()
        self.still_works(row)
        self.assertEqual(self.kept(), before)

    def window_manager(self, row):
        corvane, before = self.start(), self.kept()
        processes.stop(self.desktop.process("openbox"))
        self.still_works(row)
        self.fill_form()
        corvane.press_button("Back to the balance")
        self.desktop.start_window_manager()
        self.still_works(row)
        self.assertEqual(self.kept(), before)

    def monitors(self, row):
        corvane, before = self.start(), self.kept()
        corvane.leave()

        def xrandr(*arguments):
            subprocess.run(["xrandr", *arguments], env=self.desktop.environment, check=True)

        def middle():
            place = self.desktop.screen.window_named("Corvane").get_geometry()
            return place.x + place.width / 2
        width = self.desktop.screen.width
        here = middle()
        xrandr("--setmonitor", "*right", f"{width // 2}/200x1080/200+{width // 2}+0", "screen")
        wait_until(lambda: abs(middle() - here - width // 4) < 2, "the island on the other monitor")
        xrandr("--delmonitor", "right")
        wait_until(lambda: middle() == here, "the island where it was")
        corvane.hover()
        self.still_works(row)
        self.assertEqual(self.kept(), before)

    def covered(self, row):
        corvane, screen = self.start(), self.desktop.screen
        corvane.leave()
        window = screen.root.create_window(0, 0, screen.width, 400, 0, X.CopyFromParent,
                                           background_pixel=0xffffff, override_redirect=True)
        window.map()
        wait_until(lambda: corvane.outline() is None, "the window over the island")
        corvane.hover()
        self.refresh(row.sees)
        window.destroy()
        self.still_works(row)

    def grabbed(self, row):
        corvane, screen = self.start(), self.desktop.screen
        grabs = (screen.root.grab_pointer(False, 0, X.GrabModeAsync, X.GrabModeAsync, 0, 0, 0),
                 screen.root.grab_keyboard(False, X.GrabModeAsync, X.GrabModeAsync, 0))
        self.assertEqual(grabs, (X.GrabSuccess, X.GrabSuccess))
        self.still_works(row)
        screen.display.ungrab_pointer(0)
        screen.display.ungrab_keyboard(0)
        corvane.press_button("RECEIVE")
        corvane.wait_for("COPY ADDRESS")
        corvane.press_button("Back to the balance")
        self.still_works(row)

    def display_stands_still(self, row):
        self.start()
        server = self.desktop.process("Xvfb")
        server.send_signal(signal.SIGSTOP)
        time.sleep(3)  # nothing tells how far the program has got
        server.send_signal(signal.SIGCONT)
        self.still_works(row)

    def stopped(self, row):
        corvane, before = self.start(), self.kept()
        self.world(NEW)
        self.localnet.control("fault", match="getBalance", kind="latency", ms=1000)
        after = self.press_refresh()

        def asks(**more):
            return any(entry["name"] == "getBalance" for entry in self.localnet.requests(after, **more))
        wait_until(lambda: asks(waiting=True), "a request without a reply")
        corvane.send_signal(signal.SIGSTOP)
        wait_until(asks, "the reply to a program that stands still")
        corvane.send_signal(signal.SIGCONT)
        self.cycle_ended(after)
        self.still_works(row)
        self.assertEqual(self.kept(), before)

    def cut_off(self, _row):
        corvane = self.start()
        before = self.kept()[:3]
        self.desktop.screen.window_named("Corvane").kill_client()
        self.desktop.screen.display.sync()
        self.assertEqual(corvane.wait_for_end(10), 1, corvane.messages())
        self.assertEqual(self.kept()[:3], before)
        self.stop()

    def display_dies(self, _row):
        corvane = self.start()
        before = self.kept()[:3]
        self.desktop.lose_display()
        self.assertEqual(corvane.wait_for_end(10), 1, corvane.messages())
        self.assertEqual(self.kept()[:3], before)
        self.stop()


class DiskTest(PeersTest):
    def test_disk(self):
        self.run_rows(DISK)

    def unwritable(self, row, how):
        if how == "read-only" and os.geteuid() == 0 or how == "full" and not SMALL_DISK:
            self.skipTest("needs with_polkit.py and root")
        self.prepare()
        environment = {"XDG_CONFIG_HOME": SMALL_DISK} if how == "full" else {}
        with self.run_with_key(environment=environment) as corvane:
            corvane.hover()
            self.shows(LAST)
            before = self.kept()
            with self.spoiled(corvane.settings_file, how):
                corvane.tree.find(LAST[0], "push button").press()
                self.shows(row.sees)
                self.opens_and_folds()
            corvane.tree.find(row.sees[0], "push button").press()
            self.shows(LAST)
            keys, accounts, settings, said = before
            self.assertEqual(self.kept(),
                             (keys, accounts, settings | {"corvane.displayUSD": True}, said))
            self.assertEqual(os.listdir(corvane.settings_file.parent), ["settings.json"])

    @contextlib.contextmanager
    def spoiled(self, file, how):
        """The settings file where it cannot be written, or gone; it must not be written halfway."""
        before = file.read_bytes()
        if how.endswith("deleted"):
            shutil.rmtree(file.parent) if how == "all deleted" else file.unlink()
            yield
            self.assertEqual(json.loads(file.read_text()),
                             {**json.loads(before), "corvane.displayUSD": False})
            return
        aside, filler = file.with_name("aside"), pathlib.Path(SMALL_DISK or "") / "filler"
        if how == "read-only":
            file.parent.chmod(0o500)
        elif how == "full":
            with contextlib.suppress(OSError), open(filler, "wb", buffering=0) as full:
                while True:
                    full.write(bytes(4096))
        else:
            file.rename(aside)
            file.mkdir()
        yield
        file.parent.chmod(0o700)
        if how == "folder":
            file.rmdir()
            aside.rename(file)
        filler.unlink(missing_ok=True)
        self.assertEqual(file.read_bytes(), before)

    def unreadable(self, row, how):
        """A demo, since what the settings say is not known."""
        folder = pathlib.Path(self.desktop.environment["XDG_CONFIG_HOME"]) / "corvane-demo"
        shutil.rmtree(folder, ignore_errors=True)
        with self.run_corvane(how if isinstance(how, str) else None) as corvane:
            file = corvane.settings_file
            if not isinstance(how, str):
                corvane.stop()
                file.unlink()
                how(file)
                before = file.lstat()
                corvane.start()
            corvane.hover()
            corvane.wait_for(*row.sees)
            corvane.tree.find(row.sees[0], "push button").press()
            corvane.wait_for("0.0000 SOL")
            if isinstance(how, str):
                self.assertEqual((folder / "settings.json.damaged").read_text(), how)
                self.assertEqual(corvane.settings()["corvane.address"], corvane.address)
            else:
                self.assertEqual(file.lstat(), before)
                self.assertEqual(list(folder.iterdir()), [file])
            corvane.leave()


@unittest.skipUnless(FAKETIME, "needs libfaketime")
class ClockTest(PeersTest):
    def test_clock(self):
        self.run_rows(CLOCK)

    def jumps(self, row, offset):
        self.prepare()
        clock = self.desktop.folder / "clock"
        clock.write_text("+0")
        # The clock that only counts goes on as it does when somebody sets the other one.
        environment = {"LD_PRELOAD": str(FAKETIME), "FAKETIME_TIMESTAMP_FILE": str(clock),
                       "FAKETIME_NO_CACHE": "1", "FAKETIME_DONT_FAKE_MONOTONIC": "1"}
        with self.run_with_key(environment=environment) as corvane:
            corvane.hover()
            self.shows(LAST)
            before = self.kept()
            clock.write_text(offset)
            self.world(NEW)
            wait_until(lambda: self.figures() == set(row.sees), "the next cycle of the polling",
                       seconds=40)
            self.opens_and_folds()
            self.assertEqual(self.kept(), before)


if __name__ == "__main__":
    unittest.main()

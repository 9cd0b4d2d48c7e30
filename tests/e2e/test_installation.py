"""The application moves itself to the applications folder, restarts there, and stays installed: login item,
menu, tour. Runs only with the folder created by with_polkit.py."""

import os
import pathlib
import shutil
import unittest

from support import IslandTest, wait_until

from desktop import AccessibleTree, StatusNotifierHost

BUNDLE = pathlib.Path(os.environ.get("CORVANE_BUNDLE", "build/release/Corvane.app"))
INSTALLED = pathlib.Path("/Applications/Corvane.app")
ELSEWHERE = "currently running from the download location"
LOGIN, NO_LOGIN = ("registered — it's there after every restart",
                   "registers itself automatically once installed")


@unittest.skipUnless(os.environ.get("CORVANE_TESTER"), "needs with_polkit.py and root")
class InstallationTest(IslandTest):
    def downloaded(self):
        """A bundle in the downloads folder."""
        folder = self.desktop.folder / "My Downloads"
        shutil.copytree(BUNDLE, folder / "Corvane.app", symlinks=True)
        return folder / "Corvane.app/bin/corvane"

    def running_from(self, program):
        """The process that runs this program, found by its command line, because it hides its executable."""
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if (process / "cmdline").read_bytes().startswith(str(program).encode() + b"\0"):
                    return int(process.name)
            except OSError:
                continue
        return None

    def test_moves_itself_and_stays(self):
        program = INSTALLED / "bin/corvane"
        entry = (pathlib.Path(self.desktop.environment["XDG_CONFIG_HOME"])
                 / "autostart/org.corvane.Corvane.desktop")
        INSTALLED.mkdir()
        (INSTALLED / "from an older version").touch()
        with StatusNotifierHost(self.desktop.bus_address) as host, \
                self.run_corvane(program=self.downloaded(), demo=False, onboarded=False) as corvane:
            corvane.wait_for("CORVANE")
            corvane.press_button("CONTINUE")
            corvane.wait_for(ELSEWHERE, NO_LOGIN)
            corvane.press_button("MOVE TO APPLICATIONS")
            self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())
            process = wait_until(lambda: self.running_from(program), "the moved program")
            wait_until(corvane.is_resting, "its island")
            self.assertFalse((INSTALLED / "from an older version").exists())
            self.assertIn(f'\nExec="{program}"\n', entry.read_text())

            # The menu opens the tour, and opens it again on the same page at the same position.
            tree = AccessibleTree(self.desktop.bus_address, process)
            self.addCleanup(tree.close)

            def wait_for(*texts):
                wait_until(lambda: set(texts) <= set(tree.texts()),
                           lambda: f"{texts} among {tree.texts()}")
            host.item()
            host.choose("Welcome tour…")
            wait_for("CORVANE", "CONTINUE")
            tree.find("CONTINUE", "push button").press()
            wait_for("installed", LOGIN)
            self.assertIsNone(tree.find("MOVE TO APPLICATIONS"))
            place = tree.find("Welcome to Corvane", "frame").extents(1)
            wait_until(lambda: self.desktop.screen.keyboard_is_with("Welcome to Corvane"), "the keyboard for the tour")
            self.desktop.screen.press("Escape")
            wait_until(lambda: not tree.find("CONTINUE"), "the closed tour")
            host.choose("Welcome tour…")
            wait_for("installed", LOGIN)
            self.assertEqual(tree.find("Welcome to Corvane", "frame").extents(1), place)

            # Changes in the desktop's settings are shown immediately.
            switched_on = entry.read_text()
            entry.write_text(switched_on + "Hidden=true\n")
            wait_for(NO_LOGIN)
            entry.write_text(switched_on)
            wait_for(LOGIN)
            host.choose("Quit Corvane")
            wait_until(lambda: not self.running_from(program), "its end")

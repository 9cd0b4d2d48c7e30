"""Failures of the keyring, polkit, the X server and its other clients."""

import os
import signal
import subprocess
import unittest

from peers import POLKIT, SERVICES
from peers_runner import SECRET, SERVICE, SOL, PeersTest
from support import KEY_ADDRESS, RECIPIENT, WalletTest, wait_until
from Xlib import X

from desktop import processes

# Owns polkit's name on the session bus and never replies.
SILENT_POLKIT = """
import os, signal
from gi.repository import Gio, GLib
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
              GLib.Variant("(su)", ("org.freedesktop.PolicyKit1", 0)), None, 0, -1)
print("ready", flush=True)
os.kill(os.getpid(), signal.SIGSTOP)
"""


class ServicesTest(PeersTest):
    def test_services(self):
        self.run_rows(SERVICES)

    def keychain_hangs(self, row):
        self.prepare()
        with self.run_with_key() as corvane:
            corvane.hover()
            self.fill_form()
            self.desktop.keyring.send_signal(signal.SIGSTOP)
            corvane.press_button("SEND")
            corvane.wait_for(*row.sees)
            self.desktop.keyring.send_signal(signal.SIGCONT)
            self.send_one()

    def another_key(self, row):
        self.prepare()
        with self.run_with_key() as corvane:
            corvane.hover()
            self.fill_form()
            self.in_keyring("overwrite", SERVICE, bytes(32))
            corvane.press_button("SEND")
            corvane.wait_for(*row.sees)
        self.assertEqual(self.localnet.lamports(RECIPIENT), SOL)

    def still_works(self, row):
        self.refresh(row.sees)
        self.opens_and_folds()

    def window_manager(self, row):
        corvane, before = self.start(), self.kept()
        processes.stop(self.desktop.process("openbox"))
        self.still_works(row)
        self.fill_form()
        corvane.press_button("Back to the balance")
        self.desktop.start_window_manager()
        self.still_works(row)
        self.assertEqual(self.kept(), before)

    def grabbed(self, row):
        screen = self.desktop.screen
        self.start()
        grabs = (screen.root.grab_pointer(False, 0, X.GrabModeAsync, X.GrabModeAsync, 0, 0, 0),
                 screen.root.grab_keyboard(False, X.GrabModeAsync, X.GrabModeAsync, 0))
        self.assertEqual(grabs, (X.GrabSuccess, X.GrabSuccess))
        self.still_works(row)
        screen.display.ungrab_pointer(0)
        screen.display.ungrab_keyboard(0)
        self.still_works(row)

    def display_dies(self, _row):
        corvane = self.start()
        before = self.kept()[:3]
        self.desktop.lose_display()
        self.assertEqual(corvane.wait_for_end(), 1, corvane.messages())
        self.assertEqual(self.kept()[:3], before)
        self.stop()


@unittest.skipUnless(WalletTest.tester, "needs with_polkit.py and root")
class PolkitTest(PeersTest):
    def test_polkit(self):
        self.run_rows(POLKIT)

    def quits_while_unlocking(self, row):
        self.prepare("user-presence")
        with self.run_with_key() as corvane, self.agent(corvane, "hang") as reasons:
            corvane.hover()
            corvane.wait_for(*row.sees)
            wait_until(reasons, "the question")
            corvane.send_signal(signal.SIGTERM)
            self.assertEqual(corvane.wait_for_end(), 0)

    def loses_the_agent(self, row):
        self.prepare("user-presence")
        with self.run_with_key() as corvane:
            # No authentication is possible yet, so the island opens without the key.
            corvane.hover()
            self.fill_form()
            before = self.kept()
            with self.agent(corvane, "hang") as reasons:
                corvane.press_button("SEND")
                wait_until(reasons, "the question")
            corvane.wait_for(*row.sees)
            with self.agent(corvane, "authenticate"):
                self.send_one()
            self.assertEqual(self.kept(), before)

    def hangs(self, row):
        self.prepare("user-presence")
        command = ["/usr/bin/python3", "-c", SILENT_POLKIT]
        process = processes.start(command, self.desktop.environment,
                                  self.desktop.folder / "polkit.log", stdout=subprocess.PIPE)
        self.addCleanup(os.kill, process.pid, signal.SIGKILL)
        processes.read_line(process.stdout.fileno(), "the silent polkit")
        with self.run_with_key(environment={"DBUS_SYSTEM_BUS_ADDRESS": self.desktop.bus_address}) as corvane:
            corvane.hover()
            self.shows(row.sees)
            self.fill_form()
            corvane.press_button("SEND")
            corvane.wait_for("SENDING")
            corvane.press_button("Back to the balance")
            corvane.press_button("Settings")
            corvane.press_button("QUIT")
            self.assertEqual(corvane.wait_for_end(), 0)
        self.assertEqual(self.localnet.lamports(RECIPIENT), SOL)
        self.assertEqual(self.keys(), [(KEY_ADDRESS, SECRET)])

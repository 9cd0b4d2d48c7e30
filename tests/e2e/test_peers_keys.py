"""The keyring and polkit misbehave."""

import contextlib
import json
import os
import signal
import subprocess
import unittest

from peers import KEYCHAIN, LAST, LOCKED, POLKIT, SENT
from peers_runner import RECIPIENT, SECRET, SERVICE, SOL, PeersTest
from support import KEY_ADDRESS, WalletTest, wait_until

from desktop import processes

# Has polkit's name on the session bus and answers nothing.
SILENT_POLKIT = """
import os, signal
from gi.repository import Gio, GLib
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
              GLib.Variant("(su)", ("org.freedesktop.PolicyKit1", 0)), None, 0, -1)
print("ready", flush=True)
os.kill(os.getpid(), signal.SIGSTOP)
"""


class KeysTest(PeersTest):
    def test_keychain(self):
        self.run_rows(KEYCHAIN)

    @contextlib.contextmanager
    def keyring(self, state):
        """A keyring that is locked, absent, hung or restarted, or that holds something else."""
        desktop = self.desktop
        if state == "hung":
            desktop.keyring.send_signal(signal.SIGSTOP)
        elif state in ("locked", "absent", "restarted"):
            desktop.stop_keyring()
            if state != "absent":
                desktop.start_keyring(unlocked=state != "locked")
        elif state == "empty":
            self.in_keyring("delete", SERVICE)
        else:
            self.in_keyring("overwrite", SERVICE, {"wrong": b"wrong", "other": bytes(32)}[state])
        yield
        if state == "hung" and desktop.keyring.poll() is None:
            desktop.keyring.send_signal(signal.SIGCONT)
        elif state in ("hung", "locked", "absent", "restarted"):
            desktop.stop_keyring()
            desktop.start_keyring()
        elif state == "empty":
            self.place_key()
        else:
            self.in_keyring("overwrite", SERVICE, SECRET)

    def keychain(self, row, state, when):
        self.prepare()
        with contextlib.ExitStack() as harm:
            if when == "start":
                harm.enter_context(self.keyring(state))
            with self.run_with_key() as corvane:
                corvane.hover()
                self.shows(LAST)
                before = self.kept() if when != "start" else None
                self.fill_form()
                if when != "start":
                    harm.enter_context(self.keyring(state))
                corvane.press_button("SEND")
                if when == "killed":
                    corvane.wait_for("SENDING")
                    self.desktop.stop_keyring()
                corvane.wait_for(*row.sees)
                harm.close()
                if before:
                    self.assertEqual(self.kept(), before)
                if when != "restart" and row.sees != (SENT,):
                    self.send_one()
                corvane.press_button("Back to the balance")
                self.opens_and_folds()
        if when == "restart":
            with self.run_with_key() as corvane:
                corvane.hover()
                self.fill_form()
                self.send_one()
        self.assertEqual(self.keys(), [(KEY_ADDRESS, SECRET)])

    def creating(self, row, state):
        self.stop()
        self.desktop.empty_keyring()
        with self.run_with_key("") as corvane:
            corvane.hover()
            corvane.wait_for("CREATE WALLET")
            with self.keyring(state):
                corvane.press_button("CREATE WALLET")
                corvane.wait_for("CREATE WALLET", *row.sees)
                self.assertEqual(corvane.settings()["corvane.address"], "")
            self.assertEqual(self.keys(), [])
            corvane.press_button("CREATE WALLET")
            corvane.wait_for("BACK UP YOUR KEY")
            self.assertEqual([account for account, _ in self.keys()],
                             [corvane.settings()["corvane.address"]])

    def removing(self, row):
        self.prepare()
        with self.run_with_key() as corvane:
            corvane.hover()
            corvane.press_button("Settings")
            with self.keyring("locked"):
                corvane.press_button("REMOVE")
                corvane.press_button("REALLY REMOVE? (backup first!)")
                corvane.wait_for(*row.sees)
            self.assertEqual(corvane.settings()["corvane.address"], "")
        self.assertEqual(self.keys(), [(KEY_ADDRESS, SECRET)])
        with self.run_with_key("") as corvane:
            corvane.hover()
            corvane.wait_for("SEND")

    def accounts(self, row, text):
        self.prepare()
        before = json.loads(self.accounts_file.read_text())
        self.accounts_file.write_text(text)
        with self.run_with_key() as corvane:
            corvane.hover()
            self.shows(row.sees)
            self.assertEqual(json.loads(self.accounts_file.read_text()), before)
            self.fill_form()
            self.send_one()

    def accounts_while_locked(self, row):
        self.prepare()
        self.accounts_file.write_text("{")
        with contextlib.ExitStack() as harm:
            harm.enter_context(self.keyring("locked"))
            with self.run_with_key() as corvane:
                corvane.hover()
                for text in row.sees:
                    corvane.press_button("CREATE WALLET")
                    corvane.wait_for(text)
                    harm.close()
                self.assertEqual(corvane.settings()["corvane.address"], KEY_ADDRESS)
        self.assertEqual(self.keys(), [(KEY_ADDRESS, SECRET)])
        with self.run_with_key() as corvane:
            corvane.hover()
            self.fill_form()
            self.send_one()

    @unittest.skipUnless(WalletTest.tester, "needs with_polkit.py and root")
    def test_polkit(self):
        self.run_rows(POLKIT)

    def door(self, row, manner):
        self.prepare("user-presence")
        with self.run_with_key() as corvane:
            with self.agent(corvane, manner) as reasons:
                corvane.hover()
                corvane.wait_for(*row.sees)
                wait_until(lambda: reasons() == ["org.corvane.unlock: unlock Corvane"], "the reason")
                if manner != "hang":  # with a question open, it stays open itself
                    self.opens_and_folds()
                self.assertEqual(self.figures(), set())
            before = self.kept()
            with self.agent(corvane, "authenticate"):
                corvane.press_button("UNLOCK")
                self.shows(LAST)
                # The one answer has opened the key as well.
                self.fill_form()
            self.send_one()
            self.assertEqual(self.kept(), before)

    def ends_at_the_door(self, row):
        self.prepare("user-presence")
        with self.run_with_key() as corvane, self.agent(corvane, "hang") as reasons:
            corvane.hover()
            corvane.wait_for(*row.sees)
            wait_until(reasons, "the question")
            corvane.send_signal(signal.SIGTERM)
            self.assertEqual(corvane.wait_for_end(5), 0)
        self.assertEqual(self.keys(), [(KEY_ADDRESS, SECRET)])

    def asked(self, row, manner):
        self.prepare("user-presence")
        with self.run_with_key() as corvane:
            # Nobody can be asked yet, so the island opens without the key.
            corvane.hover()
            self.shows(LAST)
            self.fill_form()
            before = self.kept()
            with self.agent(corvane, manner) if manner else contextlib.nullcontext() as reasons:
                corvane.press_button("SEND")
                if manner:
                    wait_until(reasons, "the question")
                if manner != "hang":
                    corvane.wait_for(*row.sees)
            corvane.wait_for(*row.sees)
            with self.agent(corvane, "authenticate"):
                self.send_one()
            self.assertEqual(self.kept(), before)

    def polkit(self, row, state):
        self.prepare("user-presence")
        bus = "unix:path=/nonexistent" if state == "no bus" else self.desktop.bus_address
        with contextlib.ExitStack() as silent:
            if state == "hung":
                command = ["/usr/bin/python3", "-c", SILENT_POLKIT]
                process = processes.start(command, self.desktop.environment,
                                          self.desktop.folder / "polkit.log", stdout=subprocess.PIPE)
                silent.callback(os.kill, process.pid, signal.SIGKILL)
                processes.read_line(process.stdout.fileno(), "the silent polkit")
            with self.run_with_key(environment={"DBUS_SYSTEM_BUS_ADDRESS": bus}) as corvane:
                corvane.hover()
                self.shows(row.sees)
                self.fill_form()
                corvane.press_button("SEND")
                corvane.wait_for("SENDING" if state == "hung" else LOCKED)
                corvane.press_button("Back to the balance")
                corvane.press_button("Settings")
                corvane.press_button("QUIT")
                self.assertEqual(corvane.wait_for_end(5), 0)
        self.assertEqual(self.localnet.lamports(RECIPIENT), SOL)
        self.assertEqual(self.keys(), [(KEY_ADDRESS, SECRET)])


if __name__ == "__main__":
    unittest.main()

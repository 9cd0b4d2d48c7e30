"""The program as part of a desktop: its status icon and menu, one instance, its start and its end."""

import pathlib
import shutil
import signal
import subprocess
import tempfile
import unittest

from session_manager import SessionManager
from support import ADDRESS, PROGRAM, SCREENSHOTS, IslandTest, wait_until

from desktop import Corvane, StatusNotifierHost, XEmbedTray, processes
from desktop.tray import pixmap_on

MENU = [  # title, can be chosen, key
    ("CORVANE — your quibs, in the notch", False, None),
    None,
    ("Refresh now", True, "R"),
    ("Settings…", True, ","),
    ("Welcome tour…", True, None),
    None,
    ("Quit Corvane", True, "Q"),
]
SIZES = (16, 18, 22, 24, 32, 36, 44, 48, 64)
PANELS = {"dark": (20, 20, 20), "light": (250, 250, 250), "grey": (128, 128, 128)}
PANE_TEXTS = {"settings": "CORVANE SETTINGS", "send": "AMOUNT (SOL)", "receive": "COPY ADDRESS",
              "balance": "TOTAL BALANCE"}
TRAY = (300, 300)


class ShellTest(IslandTest):
    def call(self, corvane, method, *arguments):
        """Calls the running program as any other program may; whether it agreed, and what it said."""
        called = subprocess.run(
            ["gdbus", "call", "--session", "--timeout", "5", "--dest", "org.corvane.Corvane.Demo",
             "--object-path", "/org/corvane/Corvane/Demo", "--method", method, *arguments],
            env=corvane.environment, capture_output=True, text=True, timeout=10, check=False)
        return called.returncode == 0, called.stderr

    def assert_asked_again(self, ask):
        """The chart is fetched at the start and when a refresh is forced, not while polling."""
        def charts():
            return [entry for entry in self.localnet.requests() if entry["name"] == "chart"]
        wait_until(charts, "the first chart")
        before = len(charts())
        ask()
        wait_until(lambda: len(charts()) > before, "another chart")


class StatusNotifierTest(ShellTest):
    def test_icon_and_menu(self):
        with StatusNotifierHost(self.desktop.bus_address) as host, self.run_corvane() as corvane:
            item = host.item()
            self.assertEqual((item["Id"], item["Status"]), ("corvane", "Active"))
            self.assertEqual([size for size, _, _ in item["IconPixmap"]], list(SIZES))
            for name, colour in PANELS.items():
                for pixmap in item["IconPixmap"]:
                    side = pixmap[0]
                    picture = pixmap_on(pixmap, colour)
                    picture.save(SCREENSHOTS / f"status-{side}-on-{name}.png")
                    # Dot and ring are white; the corners are the panel's.
                    self.assertGreater(min(picture.at(side // 2, side // 2)), 240)
                    self.assertGreater(min(picture.at(side // 2, round(side * 2 / 18))), 200)
                    self.assertEqual(picture.at(0, 0), colour)

            found = [None if entry.separator else
                     (entry.title, entry.enabled, entry.shortcut[0][1] if entry.shortcut else None)
                     for entry in host.menu()]
            self.assertEqual(found, MENU)
            self.assert_asked_again(lambda: host.choose("Refresh now"))
            host.choose("Settings…")
            wait_until(corvane.is_open, "the settings")
            host.choose("Quit Corvane")
            self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())

    def test_a_click_opens_the_menu_which_has_keys(self):
        with StatusNotifierHost(self.desktop.bus_address) as host, self.run_corvane() as corvane:
            host.item()
            backdrop = self.desktop.backdrop.colour
            self.desktop.screen.move(500, 500)
            host.activate()
            wait_until(lambda: self.desktop.screen.capture(520, 505, 1, 1).at(520, 505) != backdrop,
                       "the menu")
            self.desktop.screen.capture(480, 480, 400, 160).save(
                SCREENSHOTS / "status-menu.png")
            self.desktop.screen.press("comma", "Control_L")
            wait_until(corvane.is_open, "the settings")

    def test_panels_that_come_late_and_go(self):
        with self.run_corvane() as corvane:
            with StatusNotifierHost(self.desktop.bus_address, has_host=False) as host:
                wait_until(lambda: host.asked, "a question for a panel")
                host.register_host()
                host.item()
            with StatusNotifierHost(self.desktop.bus_address) as host:
                host.item()
                host.choose("Quit Corvane")
                self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())


class XEmbedTest(ShellTest):
    desktop_kind = {"bus": False}

    def test_icon_docks_again_and_its_menu_opens(self):
        side = 24 * self.desktop.scale
        screen = self.desktop.screen
        with self.run_corvane() as corvane:
            for name, colour in PANELS.items():
                with XEmbedTray(screen, *TRAY, side, colour) as tray:
                    wait_until(tray.docked, "the icon in the tray")

                    def is_drawn():
                        # The ring's dark edge and the white dot, of which a panel may have one.
                        picture = screen.capture(*TRAY, side, side)
                        edge = picture.at(TRAY[0] + side // 2, TRAY[1])
                        dot = picture.at(TRAY[0] + side // 2, TRAY[1] + side // 2)
                        return max(edge) < 100 and min(dot) > 240
                    wait_until(is_drawn, "the mark in the tray")
                    picture = screen.capture(*TRAY, side, side)
                    picture.save(
                        SCREENSHOTS / f"tray-on-{name}@{self.desktop.scale}x.png")
                    self.assertEqual(picture.at(*TRAY), colour)
                    self.assertGreater(
                        min(picture.at(TRAY[0] + side // 2, TRAY[1] + side // 8)), 200)
            with XEmbedTray(screen, *TRAY, side) as tray:
                wait_until(tray.docked, "the icon in the tray")
                screen.click(TRAY[0] + side // 2, TRAY[1] + side // 2)
                backdrop = self.desktop.backdrop.colour
                below = TRAY[0] + side // 2 + 20, TRAY[1] + side + 10
                wait_until(lambda: screen.capture(*below, 1, 1).at(*below) != backdrop, "the menu")
                screen.press("q", "Control_L")
                self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())


class XEmbedAtScale2Test(XEmbedTest):
    desktop_kind = {"bus": False, "size": (3840, 2160), "scale": 2}


class InstanceTest(ShellTest):
    def test_second_start_opens_the_first(self):
        with self.run_corvane() as corvane:
            again = corvane.start_again()
            self.assertEqual((again.returncode, again.stderr), (0, ""))
            wait_until(corvane.is_open, "the island")
            # The pointer does not come.
            wait_until(corvane.is_resting, "the resting island")

            for pane, text in PANE_TEXTS.items():
                self.assertEqual(corvane.start_again("--open", pane).returncode, 0)
                wait_until(corvane.is_open, pane)
                corvane.wait_for(text)
            wait_until(corvane.is_resting, "the resting island")

            # As from another terminal, which has no display.
            del corvane.environment["DISPLAY"]
            self.assert_asked_again(
                lambda: self.assertEqual(corvane.start_again("--refresh").returncode, 0))
            self.assertEqual(corvane.start_again().returncode, 0)
            self.assertEqual(corvane.start_again("--quit").returncode, 0)
            self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())
            for option in ("--quit", "--refresh"):
                alone = corvane.start_again(option)
                self.assertEqual(alone.returncode, 1)
                self.assertIn("not running", alone.stderr)

    def test_open_starts_the_program(self):
        with Corvane(self.desktop, self.localnet, settings={"corvane.address": ADDRESS}) as corvane:
            corvane.stop()
            process = processes.start([*corvane._command, "--open", "receive"], corvane.environment,
                                      corvane.log)
            self.addCleanup(processes.stop, process)
            wait_until(corvane.is_open, "the receive pane")

    def test_nonsense_is_refused(self):
        application = "org.freedesktop.Application."
        with self.run_corvane() as corvane:
            for method, *arguments in (
                    ("ActivateAction", "open", "[<'vault'>]", "{}"),
                    ("ActivateAction", "open", "[]", "{}"),
                    ("ActivateAction", "open", "[<7>]", "{}"),
                    ("ActivateAction", "open", "[<'send'>, <'send'>]", "{}"),
                    ("ActivateAction", "", "[]", "{}"),
                    ("ActivateAction", "x" * 100_000, "[]", "{}"),
                    ("ActivateAction", "quit", "[<'now'>]", "{}"),
                    ("Open", "['file:///etc/passwd']", "{}"),
                    ("NoSuchMethod",)):
                with self.subTest(method=method, arguments=str(arguments)[:60]):
                    agreed, said = self.call(corvane, application + method, *arguments)
                    self.assertFalse(agreed)
                    self.assertRegex(said, "InvalidArgs|NotSupported|UnknownMethod")
            self.assertEqual(self.call(corvane, application + "Activate", "{}"), (True, ""))
            wait_until(corvane.is_open, "the island")

    def test_relaunch_takes_over(self):
        with self.run_corvane() as corvane:
            relaunched = processes.start([*corvane._command, "--take-over"], corvane.environment,
                                         corvane.log, stdout=subprocess.PIPE)
            self.addCleanup(processes.stop, relaunched)
            # In the queue, it has not made its key yet; the old one still answers.
            self.assertEqual(corvane.start_again("--refresh").returncode, 0)
            self.assertEqual(corvane.start_again("--quit").returncode, 0)
            self.assertEqual(corvane.wait_for_end(), 0)
            self.assertIn("demo address",
                          processes.read_line(relaunched.stdout.fileno(), "the relaunch"))
            wait_until(corvane.is_resting, "the new island")
            self.assertEqual(corvane.start_again("--quit").returncode, 0)
            self.assertEqual(relaunched.wait(10), 0)


class EndTest(ShellTest):
    def test_signals_end_it_cleanly(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number), self.run_corvane() as corvane:
                corvane.send_signal(number)
                self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())

    def test_logout_ends_it_without_asking(self):
        with SessionManager() as session, \
                self.run_corvane(environment={"SESSION_MANAGER": session.address}) as corvane:
            session.wait_for("saved")
            session.log_out()
            self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())
            self.assertNotIn("interact request", session.events)
            # Never: the login item starts it again.
            self.assertEqual(session.properties["RestartStyleHint"][0], 3)


class LostBusTest(ShellTest):
    def test_goes_on(self):
        with StatusNotifierHost(self.desktop.bus_address) as host, self.run_corvane() as corvane:
            host.item()
            self.desktop.lose_bus()
            self.assertEqual(corvane.start_again("--refresh").returncode, 1)
            self.assert_opens_and_folds(corvane)
            corvane.send_signal(signal.SIGTERM)
            self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())


class LoginTest(ShellTest):
    def installed(self):
        """A bundle in a folder that counts as the applications folder."""
        try:
            folder = tempfile.mkdtemp(prefix="Applications-", dir="/")
        except OSError as error:
            self.skipTest(f"no folder can be made beside /Applications: {error}")
        self.addCleanup(shutil.rmtree, folder)
        program = pathlib.Path(folder) / "My Corvane.app/bin/corvane"
        program.parent.mkdir(parents=True)
        shutil.copy2(PROGRAM, program)
        return program

    def test_only_the_installed_program_registers(self):
        entry = (pathlib.Path(self.desktop.environment["XDG_CONFIG_HOME"])
                 / "autostart/org.corvane.Corvane.desktop")
        with self.run_corvane():
            self.assertFalse(entry.exists())
        program = self.installed()
        with self.run_corvane(program=program):
            self.assertIn(f'\nExec="{program}"\n', entry.read_text())
        validate = shutil.which("desktop-file-validate")
        if validate:
            checked = subprocess.run([validate, entry], capture_output=True, text=True, check=False)
            self.assertEqual((checked.returncode, checked.stdout), (0, ""))
        # Switched off in the desktop's settings, it stays off.
        entry.write_text(entry.read_text() + "Hidden=true\n")
        with self.run_corvane(program=program):
            self.assertIn("Hidden=true", entry.read_text())


class NoBusTest(ShellTest):
    desktop_kind = {"bus": False}

    def test_says_that_nobody_answers(self):
        with self.run_corvane() as corvane:
            self.assertEqual(corvane.start_again("--quit").returncode, 1)
            self.assert_opens_and_folds(corvane)


if __name__ == "__main__":
    unittest.main()

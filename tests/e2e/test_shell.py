"""The program as part of a desktop: status icon and menu, single instance, start and exit."""

import signal

from support import IslandTest, wait_until

from desktop import StatusNotifierHost, XEmbedTray, processes

TRAY, SIDE = (300, 300), 24


class ShellTest(IslandTest):
    def assert_asked_again(self, ask):
        """Checks for a forced refresh: only that and the start fetch the chart, polling does not."""
        def charts():
            return [entry for entry in self.localnet.requests() if entry["name"] == "chart"]
        wait_until(charts, "the first chart")
        before = len(charts())
        ask()
        wait_until(lambda: len(charts()) > before, "another chart")


class StatusNotifierTest(ShellTest):
    def test_menu_and_its_keys(self):
        with StatusNotifierHost(self.desktop.bus_address) as host, self.run_corvane() as corvane:
            self.assertEqual(host.item()["Id"], "corvane")
            self.assert_asked_again(lambda: host.choose("Refresh now"))
            backdrop = self.desktop.backdrop.colour
            self.desktop.screen.move(500, 500)
            host.activate()
            wait_until(lambda: self.desktop.screen.capture(520, 505, 1, 1).at(520, 505) != backdrop,
                       "the menu")
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
    desktops = ("x11",)

    def test_icon_docks_again_and_its_menu_opens(self):
        screen = self.desktop.screen
        with self.run_corvane() as corvane:
            for colour in ((20, 20, 20), (250, 250, 250)):
                with XEmbedTray(screen, *TRAY, SIDE, colour) as tray:
                    wait_until(tray.docked, "the icon in the tray")

                    def is_drawn():
                        # The dark edge of the ring and the white dot; one of them may have the panel's
                        # colour.
                        picture = screen.capture(*TRAY, SIDE, SIDE)
                        edge = picture.at(TRAY[0] + SIDE // 2, TRAY[1])
                        dot = picture.at(TRAY[0] + SIDE // 2, TRAY[1] + SIDE // 2)
                        return max(edge) < 100 and min(dot) > 240 and picture.at(*TRAY) == colour
                    wait_until(is_drawn, "the mark on the tray's own colour")
            with XEmbedTray(screen, *TRAY, SIDE) as tray:
                wait_until(tray.docked, "the icon in the tray")
                screen.click(TRAY[0] + SIDE // 2, TRAY[1] + SIDE // 2)
                backdrop = self.desktop.backdrop.colour
                below = TRAY[0] + SIDE // 2 + 20, TRAY[1] + SIDE + 10
                wait_until(lambda: screen.capture(*below, 1, 1).at(*below) != backdrop, "the menu")
                screen.press("q", "Control_L")
                self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())


class InstanceTest(ShellTest):
    def test_second_start_asks_the_first(self):
        with self.run_corvane() as corvane:
            again = corvane.start_again()
            self.assertEqual((again.returncode, again.stderr), (0, ""))
            wait_until(corvane.is_open, "the island")
            self.desktop.screen.press("Escape")
            wait_until(corvane.is_resting, "the resting island")
            self.assertEqual(corvane.start_again("--open", "receive").returncode, 0)
            corvane.wait_for("COPY ADDRESS")

            # As from a terminal without a display.
            del corvane.environment["DISPLAY"]
            self.assert_asked_again(
                lambda: self.assertEqual(corvane.start_again("--refresh").returncode, 0))
            self.assertEqual(corvane.start_again("--quit").returncode, 0)
            self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())
            alone = corvane.start_again("--refresh")
            self.assertEqual(alone.returncode, 1)
            self.assertIn("not running", alone.stderr)

    def test_open_starts_the_program(self):
        with self.run_corvane() as corvane:
            corvane.stop()
            process = processes.start([*corvane._command, "--open", "receive"], corvane.environment,
                                      corvane.log)
            self.addCleanup(processes.stop, process)
            wait_until(corvane.is_open, "the receive pane")


class LostBusTest(ShellTest):
    def test_goes_on(self):
        with StatusNotifierHost(self.desktop.bus_address) as host, self.run_corvane() as corvane:
            host.item()
            self.desktop.lose_bus()
            self.assertEqual(corvane.start_again("--refresh").returncode, 1)
            self.assert_opens_and_folds(corvane)
            corvane.send_signal(signal.SIGTERM)
            self.assertEqual(corvane.wait_for_end(), 0, corvane.messages())

"""The receive pane: the code that another wallet's camera reads, and the address to copy."""

import subprocess

from support import ADDRESS, SCREENSHOTS, IslandTest


class Receive:
    def test_code_and_copy(self):
        with self.run_corvane({"corvane.address": f" {ADDRESS}\t"}) as corvane:
            corvane.hover()
            corvane.press_button("RECEIVE")
            corvane.wait_for("RECEIVE", "QR code of your address", ADDRESS)
            self.save(corvane.settled(), "receive")
            picture = SCREENSHOTS / f"receive@{self.desktop.scale}x.png"
            read = subprocess.run(["zbarimg", "--quiet", "--raw", str(picture)],
                                  capture_output=True, text=True, timeout=30, check=False)
            self.assertEqual(read.stdout.strip(), ADDRESS)
            self.check_code(corvane)
            corvane.press_button("COPY ADDRESS")
            corvane.wait_for("COPIED")
            self.save(corvane.settled(), "receive-copied")
            self.assertEqual(self.desktop.clipboard(), f" {ADDRESS}\t")
            corvane.wait_for("COPY ADDRESS")
            corvane.press_button("Back to the balance")
            corvane.leave()

    def check_code(self, corvane):
        """The code is crisp: black modules on white, nothing between."""
        place = corvane.tree.find("QR code of your address").extents(self.desktop.scale)
        self.assertEqual(place[2:], (144 * self.desktop.scale,) * 2)
        picture = self.desktop.screen.capture(*place)
        self.assertEqual(picture.colours(*place), {(0, 0, 0), (255, 255, 255)})


class ReceiveAtScale1Test(Receive, IslandTest):
    pass


class ReceiveAtScale2Test(Receive, IslandTest):
    desktop_kind = {"size": (1800, 1000), "scale": 2}

"""The receive pane on a screen of double density: the code that another wallet's camera reads."""

import subprocess

from support import ADDRESS, IslandTest, wait_until


class ReceiveTest(IslandTest):
    desktop_kind = {"size": (1800, 1000), "scale": 2}

    def test_code_and_copy(self):
        with self.run_corvane() as corvane:
            corvane.hover()
            corvane.press_button("RECEIVE")
            corvane.wait_for("RECEIVE", "watching another address — not this wallet's key",
                             "QR code of another address", ADDRESS)
            corvane.press_button("BACK TO YOUR ADDRESS")
            corvane.wait_for("RECEIVE", "QR code of your address", corvane.address)
            picture = self.desktop.folder / "receive.png"
            corvane.settled().save(picture)
            read = subprocess.run(["zbarimg", "--quiet", "--raw", str(picture)],
                                  capture_output=True, text=True, check=False)
            self.assertEqual(read.stdout.strip(), corvane.address)
            corvane.press_button("COPY ADDRESS")
            wait_until(lambda: self.desktop.clipboard() == corvane.address, "the address in the clipboard")
            corvane.press_button("Back to the balance")
            corvane.leave()

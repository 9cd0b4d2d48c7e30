"""The cluster lies, dies or is slow while coins are sent."""

import unittest

from peers import SENDING, SENT
from peers_runner import FEE, RECIPIENT, SOL, PeersTest
from support import KEY_ADDRESS, wait_until


class SendingTest(PeersTest):
    def test_sending(self):
        self.run_rows(SENDING)

    def send(self, row, moved, *faults):
        corvane, lamports = self.start(), self.localnet.lamports
        before, heard = self.kept(), len(corvane.tree.heard())
        self.fill_form()
        for fault in faults:
            self.localnet.control("fault", **fault)
        corvane.press_button("SEND")
        wait_until(lambda: set(row.sees) <= set(corvane.tree.texts()), row.sees, seconds=15)
        wait_until(lambda: lamports(RECIPIENT) == (1 + moved) * SOL, "the transfer")
        self.localnet.control("clear-faults")
        said = list(row.sees)
        if row.sees != (SENT,) and not moved:
            # What was typed is still there.
            corvane.press_button("SEND")
            corvane.wait_for(SENT)
            said.append(SENT)
            moved += 1
        self.assertEqual(corvane.tree.heard()[heard:], said)
        self.assertEqual(lamports(RECIPIENT), (1 + moved) * SOL)
        self.assertEqual(lamports(KEY_ADDRESS), round(8.2 * SOL) - moved * (SOL + FEE))
        corvane.press_button("Back to the balance")
        corvane.press_button("Refresh")
        headline = lamports(KEY_ADDRESS) / SOL * 150.25 + 2
        wait_until(lambda: f"${headline:,.2f}" in self.figures(), f"${headline:,.2f}")
        self.assertEqual(self.kept(), before)


if __name__ == "__main__":
    unittest.main()

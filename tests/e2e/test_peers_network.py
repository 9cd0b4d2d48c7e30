"""Failures of the cluster and the price services."""

import unittest

from peers import DOCUMENT, NETWORK, NEW, SENDING, SENT, WENT_THROUGH, document
from peers_runner import FEE, SOL, PeersTest
from support import KEY_ADDRESS, RECIPIENT, wait_until


class DocumentTest(unittest.TestCase):
    def test_is_what_peers_writes(self):
        self.assertEqual(DOCUMENT.read_text(encoding="utf-8"), document())


class NetworkTest(PeersTest):
    def test_figures(self):
        self.run_rows(NETWORK)

    def test_sending(self):
        self.run_rows(SENDING)

    def refresh_under(self, row, *faults):
        """The true values change, but the peers report them only at the end."""
        self.start()
        before = self.kept()
        # In this order, so that polling does not see the new values.
        for fault in faults:
            self.localnet.control("fault", **fault)
        self.world(NEW)
        after = self.press_refresh()
        self.opens_and_folds()
        self.cycle_ended(after)
        self.shows(row.sees)
        self.localnet.control("clear-faults")
        self.refresh(NEW)
        self.assertEqual(self.kept(), before)

    def no_network(self, row):
        corvane = self.start()
        before = self.kept()
        self.localnet.stop()
        corvane.tree.find("Refresh").press()
        self.opens_and_folds()
        self.shows(row.sees)
        self.localnet.start()
        self.world(NEW)
        # The next polling cycle retries.
        self.shows(NEW)
        self.assertEqual(self.kept(), before)

    def send(self, row, moved, *faults):
        corvane, lamports = self.start(), self.localnet.lamports
        before, heard = self.kept(), len(corvane.tree.heard())
        self.fill_form()
        for fault in faults:
            self.localnet.control("fault", **fault)
        corvane.press_button("SEND")
        corvane.wait_for(*row.sees)
        wait_until(lambda: lamports(RECIPIENT) == (1 + moved) * SOL, "the transfer")
        self.localnet.control("clear-faults")
        said = list(row.sees)
        if moved:
            corvane.wait_for(SENT)
            self.assertIn(WENT_THROUGH, corvane.tree.heard()[heard:])
        else:
            if row.sees != (SENT,):
                # The form still has its content.
                corvane.press_button("SEND")
                corvane.wait_for(SENT)
                said.append(SENT)
                moved += 1
            # What the form said while it was being filled may be heard late, or be gone by then.
            others = [WENT_THROUGH, "checking whether it went through…", "not a solana address", ""]
            self.assertEqual([text for text in corvane.tree.heard()[heard:] if text not in others], said)
        self.assertEqual(lamports(RECIPIENT), (1 + moved) * SOL)
        self.assertEqual(lamports(KEY_ADDRESS), round(8.2 * SOL) - moved * (SOL + FEE))
        corvane.press_button("Back to the balance")
        self.assertEqual(self.kept(), before)

"""The cluster and the price services lie, die or are slow."""

import contextlib
import json
import unittest

from peers import CLUSTER, DOCUMENT, LAST, NEW, PRICES, document
from peers_runner import SOL, PeersTest
from support import KEY_ADDRESS, wait_until

from desktop.corvane import CARD_WIDTH


class DocumentTest(unittest.TestCase):
    def test_is_what_peers_writes(self):
        self.assertEqual(DOCUMENT.read_text(encoding="utf-8"), document())


class NetworkTest(PeersTest):
    def test_figures(self):
        self.run_rows(CLUSTER)

    def test_prices(self):
        self.run_rows(PRICES)

    def refresh_under(self, row, *faults):
        self.start()
        with self.misbehaving(*faults):
            after = self.press_refresh()
            if any(fault["kind"] == "latency" for fault in faults):
                self.opens_and_folds()
            self.cycle_ended(after)
            self.shows(row.sees)
            self.nothing_overlaps()

    def nothing_overlaps(self):
        """No figure is drawn over another, whatever its length."""
        shown = [(thing.name, thing.extents(1)) for thing in self.corvane.tree.things()
                 if thing.role == "label" and thing.name in self.figures()]
        middle, half = self.desktop.screen.width // 2, CARD_WIDTH // 2
        for name, (x, y, width, height) in shown:
            self.assertTrue(middle - half < x and x + width < middle + half, f"{name} leaves the card")
            for other, (left, top, *_) in shown:
                self.assertFalse(x < left < x + width and y <= top < y + height,
                                 f"{name} over {other}")

    @contextlib.contextmanager
    def misbehaving(self, *faults):
        """What is true has changed, but the peers do not say so until the end."""
        before = self.kept()
        # In this order, so that polling sees nothing of it.
        for fault in faults:
            self.localnet.control("fault", **fault)
        self.world(NEW)
        yield
        self.localnet.control("clear-faults")
        self.refresh(NEW)
        self.assertEqual(self.kept(), before)
        self.assertEqual(self.localnet.lamports(KEY_ADDRESS), 4 * SOL)

    def no_network(self, row):
        corvane = self.start()
        before = self.kept()
        self.localnet.stop()
        corvane.tree.find("Refresh").press()
        self.opens_and_folds()
        self.shows(row.sees)
        self.localnet.start()
        self.world(NEW)
        # The next cycle of the polling is the retry.
        wait_until(lambda: self.figures() == set(NEW), "the new figures", seconds=40)
        self.assertEqual(self.kept(), before)

    def late_network(self, row):
        corvane = self.start()
        before = self.kept()
        self.localnet.fund(KEY_ADDRESS, 1, cluster="devnet")
        self.localnet.control("fault", match="getBalance", kind="latency", ms=1500, cluster="mainnet")
        after = self.press_refresh()
        self.choose_network("DEVNET")
        self.shows(row.sees)
        wait_until(lambda: [entry for entry in self.localnet.requests(after)
                            if entry["name"] == "getBalance" and entry["fault"]], "the late reply")
        corvane.settled()
        self.shows(row.sees)
        self.assertEqual(corvane.settings()["corvane.network"], "devnet")
        self.localnet.control("clear-faults")
        self.choose_network("MAINNET")
        self.shows(LAST)
        self.assertEqual(before[:2], self.kept()[:2])

    def choose_network(self, name):
        corvane = self.corvane
        corvane.press_button("Settings")
        corvane.click(corvane.still(name, "radio button"))
        corvane.press_button("DONE")
        corvane.wait_for("TOTAL BALANCE")
    def chart_under(self, row, stays, prices):
        corvane = self.start()
        before = self.chart()
        with self.misbehaving({"match": "chart", "kind": "body",
                               "body": json.dumps({"prices": prices})}):
            self.refresh(row.sees)
            self.assertEqual(self.chart() == before, stays)
            self.assertNotEqual(self.chart(), set(), "a chart")

    def chart(self):
        """The places of the chart's green."""
        picture = self.corvane.settled()
        top, scale = self.corvane.band, self.desktop.scale
        middle = picture.x + picture.width // 2
        return {(x, y) for y in range((top + 95) * scale, (top + 140) * scale)
                for x in range(middle - 282 * scale, middle + 282 * scale)
                if picture.at(x, y)[1] > 150}


if __name__ == "__main__":
    unittest.main()

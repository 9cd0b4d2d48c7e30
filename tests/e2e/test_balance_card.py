"""The balance card: what it shows, what it asks for, and how it takes a failing network."""

import json

from support import ADDRESS, SHORT_ADDRESS, IslandTest, wait_until

MAINNET_USDC = "EPjFWdd5AufqSSqeM2qN1xzybapC8G4wEGGkZwyTDt1v"
CYCLE = ["coingecko", "getBalance", "getTokenAccountsByOwner", "chart"]


class BalanceCardTest(IslandTest):
    def requests_of(self, names, after=0):
        """The first answered requests with these names, when as many as there are names have come."""
        def enough():
            found = [entry for entry in self.localnet.requests(after) if entry["name"] in names]
            return found[:len(names)] if len(found) >= len(names) else None
        return wait_until(enough, f"requests {names}")

    def test_shows_the_figures_and_follows_them(self):
        with self.run_corvane() as corvane:
            self.assertEqual(corvane.tree.texts(), [], "the resting island shows no text")
            corvane.tree.listen()
            corvane.hover()
            wait_until(lambda: corvane.tree.heard() == ["TOTAL BALANCE $1,234.05"],
                       lambda: f"a screen reader that says it, not {corvane.tree.heard()}")
            corvane.wait_for("QUIB", "DEMO", "TOTAL BALANCE", "MAINNET", "+2.35%", "$1,234.05",
                             "≈ 8,200 QUIB  ·  USDC 2.00", "SOL $150.25", SHORT_ADDRESS, "RECEIVE",
                             "SEND")
            self.localnet.fund(ADDRESS, 10, "12.5")
            self.localnet.control("price", price=100, change=-1.5)
            corvane.click(corvane.tree.find("Refresh", "push button"))
            corvane.wait_for("$1,012.50", "≈ 10,000 QUIB  ·  USDC 12.50", "SOL $100.00", "-1.50%")
            corvane.leave()
            wait_until(lambda: not corvane.tree.texts(), "a folded card that shows no text")

    def test_first_cycle_goes_out_as_documented(self):
        self.localnet.control("clear-log")
        with self.run_corvane():
            probe, = self.requests_of(["getHealth"])
            cycle = self.requests_of(CYCLE)
        self.assertEqual([entry["name"] for entry in cycle], CYCLE)
        for earlier, later in zip(cycle, cycle[1:]):
            self.assertGreaterEqual(later["atMs"], earlier["doneMs"], "one after the other")

        self.assertEqual((probe["method"], probe["path"], probe["query"]), ("POST", "/api/rpc", {}))
        self.assertEqual(json.loads(probe["body"]),
                         {"jsonrpc": "2.0", "id": 1, "method": "getHealth"})
        price, balance, tokens, chart = cycle
        self.assertEqual((price["method"], price["query"]), ("GET", {
            "ids": "solana", "vs_currencies": "usd", "include_24hr_change": "true"}))
        self.assertEqual((chart["method"], chart["query"]),
                         ("GET", {"vs_currency": "usd", "days": "1"}))
        for call, params in ((balance, [ADDRESS]),
                             (tokens, [ADDRESS, {"mint": MAINNET_USDC},
                                       {"encoding": "jsonParsed"}])):
            # Through the wallet app's proxy once the probe has found it healthy.
            self.assertIn(call["path"], ("/mainnet", "/api/rpc"))
            self.assertEqual((call["method"], call["contentType"]), ("POST", "application/json"))
            self.assertEqual(json.loads(call["body"]), {
                "jsonrpc": "2.0", "id": 1, "method": call["name"], "params": params})

    def test_headline_switches_and_remembers(self):
        with self.run_corvane() as corvane:
            corvane.hover()
            corvane.wait_for("$1,234.05")
            corvane.click(corvane.tree.find("$1,234.05", "push button"))
            corvane.wait_for("8.2000 SOL")
            self.assertIs(corvane.settings()["corvane.displayUSD"], False)
            corvane.leave()
            corvane.stop()
            corvane.start()
            corvane.hover()
            corvane.wait_for("8.2000 SOL")
            corvane.tree.find("8.2000 SOL", "push button").press()
            corvane.wait_for("$1,234.05")
            self.assertIs(corvane.settings()["corvane.displayUSD"], True)

    def test_chip_copies_the_address(self):
        with self.run_corvane() as corvane:
            corvane.hover()
            corvane.wait_for(SHORT_ADDRESS)
            corvane.click(corvane.tree.find(SHORT_ADDRESS, "push button"))
            corvane.wait_for("COPIED")
            self.assertEqual(self.desktop.clipboard(), ADDRESS)
            corvane.wait_for(SHORT_ADDRESS)

"""Pictures of every state and of the balance card in every dress, for people to look at in
build/screenshots/, with the facts that a script can hold them to."""

from support import ADDRESS, IslandTest

INK, GREEN, RED, CARD = (244, 241, 233), (60, 208, 107), (232, 86, 86), (28, 28, 33)
INVALID = ADDRESS[:-1] + "0"
CARDS = {
    # name: (settings, price, faults, texts that show, texts that do not)
    "all-figures": ({}, {}, (), ("$1,234.05", "+2.35%", "MAINNET", "SEND"), ()),
    "in-sol": ({"corvane.displayUSD": False}, {}, (), ("8.2000 SOL",), ("$1,234.05",)),
    "no-price": ({}, {}, ("coingecko", "binance", "coinbase"),
                 ("—", "SOL —", "≈ 8,200 QUIB  ·  USDC 2.00"), ("+2.35%",)),
    "no-change": ({}, {"change": None}, (), ("$1,234.05",), ("+0.00%", "+2.35%")),
    "negative-change": ({}, {"change": -3.21}, (), ("$1,234.05", "-3.21%"), ()),
    "no-address": ({"corvane.address": INVALID}, {}, (), ("WATCH YOUR QUIBS", "SET ADDRESS", "SEND"),
                   ("RECEIVE", "—")),
    "devnet": ({"corvane.network": "devnet"}, {}, (), ("$1,234.05", "DEVNET"), ("MAINNET",)),
}
heights = {}


def near(colour, other):
    return all(abs(one - two) < 40 for one, two in zip(colour, other))


class Pictures:
    def test_states(self):
        with self.run_corvane() as corvane:
            states = corvane.watch_opening()
            states["expanded"] = corvane.settled()
            corvane.leave()
            for state in ("resting", "hovered", "widened", "expanded"):
                self.save(states[state], state)
            left, right, bottom = corvane.outline(states["hovered"])
            resting = corvane.outline(states["resting"])
            self.assertGreater(right - left, resting[1] - resting[0])
            self.assertGreaterEqual(bottom, resting[2])
            # The mark breathes in the left ear, on black.
            x, y = corvane.pixels(-136 + 17, 13)
            side = 11 * self.desktop.scale
            ear = states["resting"].colours(x, y, side, side)
            self.assertTrue(any(green > red + 20 and green > blue + 20 for red, green, blue in ear))
            self.assertIn((0, 0, 0), ear)

    def test_cards(self):
        for name, (settings, price, faults, shown, hidden) in CARDS.items():
            with self.subTest(name):
                self.setUp()
                self.localnet.control("price", **price)
                for match in faults:
                    self.localnet.control("fault", match=match, kind="status", status=500,
                                          body="down")
                with self.run_corvane(settings) as corvane:
                    corvane.hover()
                    texts = corvane.wait_for("TOTAL BALANCE", *shown)
                    self.assertFalse(set(hidden) & set(texts), texts)
                    picture = corvane.settled()
                    self.save(picture, f"card-{name}")
                    self.check_card(name, picture, corvane, texts)

    def check_card(self, name, picture, corvane, texts):
        left, right, bottom = corvane.outline(picture)
        self.assertAlmostEqual(right - left, 620, delta=2)
        self.assertAlmostEqual(bottom, heights.setdefault(name, bottom), delta=1,
                               msg="as high at scale 1 as at scale 2")
        everywhere = picture.colours(picture.x, 0, picture.width, picture.height)
        self.assertLessEqual({INK, GREEN, CARD, (0, 0, 0)}, everywhere)
        change = next((text for text in texts if text.endswith("%")), None)
        if change:
            drawn = picture.colours(*corvane.tree.find(change).extents(self.desktop.scale))
            rises = change.startswith("+")
            self.assertTrue(any(near(one, GREEN if rises else RED) for one in drawn), change)
            self.assertFalse(any(near(one, RED if rises else GREEN) for one in drawn), change)
        network = "DEVNET" if name == "devnet" else "MAINNET"
        x, y, _, height = corvane.tree.find(network).extents(self.desktop.scale)
        square = picture.at(x - round(7.5 * self.desktop.scale), y + height // 2)
        self.assertEqual(square, RED if name == "devnet" else GREEN)


class PicturesAtScale1Test(Pictures, IslandTest):
    pass


class PicturesAtScale2Test(Pictures, IslandTest):
    desktop_kind = {"size": (1800, 1000), "scale": 2}

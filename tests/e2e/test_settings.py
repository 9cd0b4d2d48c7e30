"""The settings card: every edit takes effect and is saved immediately."""

from support import ADDRESS, KEY_ADDRESS, IslandTest, wait_until

INVALID = "not a valid solana address"
ADDRESS_FIELD = "WALLET ADDRESS (public key, watch-only)"
RPC_FIELD = "CUSTOM RPC URL (optional, wins over public RPC)"


class SettingsTest(IslandTest):
    def test_from_another_address_to_another_network(self):
        self.localnet.fund(ADDRESS, 1, cluster="devnet")
        with self.run_corvane({"corvane.address": KEY_ADDRESS}) as corvane:
            corvane.hover()
            corvane.press_button("Settings")
            corvane.wait_for("CORVANE SETTINGS")
            corvane.tree.listen()
            corvane.fill(ADDRESS_FIELD, ADDRESS[:-1])
            corvane.wait_for(INVALID)
            wait_until(lambda: corvane.tree.heard() == [INVALID], "a screen reader that says it")
            self.assertEqual(corvane.settings()["corvane.address"], ADDRESS[:-1])
            self.desktop.screen.type(ADDRESS[-1])
            wait_until(lambda: INVALID not in corvane.tree.texts(), "no error")

            custom = f"{self.localnet.url}/mainnet?helius"
            corvane.fill(RPC_FIELD, custom)
            corvane.wait_for("RPC: HELIUS · CUSTOM ENDPOINT")
            corvane.press_button("DONE")
            corvane.wait_for("TOTAL BALANCE", "$1,234.05")
            wait_until(lambda: any(request["query"] == {"helius": ""} for request in self.localnet.requests()),
                       "its use")

            corvane.press_button("Settings")
            corvane.fill(RPC_FIELD, "")
            corvane.click(corvane.still("DEVNET", "radio button"))
            wait_until(lambda: corvane.settings().get("corvane.network") == "devnet", "devnet")
            corvane.press_button("DONE")
            corvane.wait_for("DEVNET", "$150.25")
            corvane.press_button("Settings")
            corvane.press_button("QUIT")
            self.assertEqual(corvane.wait_for_end(), 0)
            self.assertEqual(corvane.settings()["corvane.address"], ADDRESS)

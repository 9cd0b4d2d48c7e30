"""The settings card: every edit takes effect and is kept at once."""

from support import ADDRESS, KEY_ADDRESS, IslandTest, wait_until

INVALID = "not a valid solana address"
ADDRESS_FIELD = "WALLET ADDRESS (public key, watch-only)"
RPC_FIELD = "CUSTOM RPC URL (optional, wins over public RPC)"


class SettingsTest(IslandTest):
    def open_settings(self, corvane):
        corvane.hover()
        corvane.press_button("Settings")
        corvane.wait_for("CORVANE SETTINGS", "1 QUIB = .001 SOL")

    def test_address_is_taken_letter_by_letter(self):
        with self.run_corvane({"corvane.address": KEY_ADDRESS}) as corvane:
            self.open_settings(corvane)
            corvane.fill(ADDRESS_FIELD, "")
            wait_until(lambda: corvane.settings()["corvane.address"] == "", "the empty address")
            self.assertNotIn(INVALID, corvane.tree.texts())
            self.localnet.control("clear-log")
            corvane.tree.listen()
            corvane.fill(ADDRESS_FIELD, ADDRESS[:-1])
            corvane.wait_for(INVALID)
            wait_until(lambda: corvane.tree.heard() == [INVALID], "a screen reader that says it")
            self.assertEqual(corvane.settings()["corvane.address"], ADDRESS[:-1])
            self.assertEqual(self.requests("getBalance"), [])
            self.desktop.screen.type(ADDRESS[-1])
            wait_until(lambda: self.requests("getBalance"), "a fetch")
            wait_until(lambda: INVALID not in corvane.tree.texts(), "no error")
            self.assertEqual(corvane.settings()["corvane.address"], ADDRESS)
            corvane.press_button("DONE")
            corvane.wait_for("TOTAL BALANCE", "$1,234.05")

    def test_custom_endpoint(self):
        with self.run_corvane() as corvane:
            self.open_settings(corvane)
            corvane.fill(RPC_FIELD, "ftp://nowhere")
            wait_until(lambda: corvane.tree.find(lambda text: text.startswith("RPC: ")
                                                 and "CUSTOM" not in text), "an unused endpoint")
            self.localnet.control("clear-log")
            custom = f"{self.localnet.url}/mainnet?helius"
            corvane.fill(RPC_FIELD, custom)
            corvane.wait_for("RPC: HELIUS · CUSTOM ENDPOINT")
            self.assertEqual(corvane.settings()["corvane.rpc"], custom)
            corvane.press_button("DONE")
            wait_until(lambda: any(request["query"] == {"helius": ""}
                                   for request in self.requests("getBalance")), "its use")

    def test_network_is_switched_and_the_program_quits(self):
        self.localnet.fund(ADDRESS, 1, cluster="devnet")
        with self.run_corvane() as corvane:
            self.open_settings(corvane)
            before = corvane.field(RPC_FIELD).description
            corvane.click(corvane.still("DEVNET", "radio button"))
            wait_until(lambda: corvane.settings().get("corvane.network") == "devnet", "devnet")
            wait_until(lambda: corvane.field(RPC_FIELD).description != before, "its endpoint")
            corvane.press_button("DONE")
            corvane.wait_for("DEVNET", "$150.25")
            corvane.press_button("Settings")
            corvane.press_button("QUIT")
            self.assertEqual(corvane.wait_for_end(), 0)

    def requests(self, name):
        return [request for request in self.localnet.requests() if request["name"] == name]

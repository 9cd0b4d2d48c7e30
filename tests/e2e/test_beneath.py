"""A window of another program that writes down every key it gets: none that is meant for the island, and all others."""

from support import KEY, KEY_ADDRESS, RECIPIENT, WalletTest, wait_until


class BeneathTest(WalletTest):
    def test_every_key_goes_where_it_belongs(self):
        self.localnet.fund(KEY_ADDRESS, 8.2)
        beneath = self.desktop.open_window()
        self.addCleanup(beneath.close)
        expected = ""

        def assert_reaches(text):
            nonlocal expected
            self.desktop.screen.type(text)
            expected += text
            wait_until(lambda: beneath.typed() == expected, lambda: f"{expected}, but {beneath.typed()}")
        with self.run_wallet() as corvane:
            assert_reaches("the island Rests")
            self.import_key(corvane, KEY)
            self.assertEqual(beneath.typed(), expected, "the secret key")
            corvane.leave()
            wait_until(beneath.has_keyboard, "the keyboard back")
            assert_reaches("it rests Again")
            corvane.hover()
            assert_reaches("it is Open")
            corvane.press_button("SEND")
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "1")
            corvane.wait_enabled("SEND")
            self.assertEqual(beneath.typed(), expected, "the recipient and the amount")
            corvane.press_button("Back to the balance")
            corvane.leave()
            wait_until(beneath.has_keyboard, "the keyboard back")
            assert_reaches("and Rests")

"""The authenticator of a wallet without a user interface (wallet_actor), with a real polkit and a scripted
agent."""

import os
import pathlib
import tempfile
import unittest

from wallet_child import Child, Wallet

from desktop import wait_until

AGENT = pathlib.Path(__file__).resolve().with_name("polkit_agent.py")
ACTION = pathlib.Path("/usr/share/polkit-1/actions/org.corvane.policy")
UNLOCK = "unlock Corvane"
PASSED, REFUSED, NOBODY = "passed", "refused", "nobody"


@unittest.skipUnless("CORVANE_TESTER" in os.environ, "needs with_polkit.py and root")
class PolkitAuthenticatorTest(unittest.TestCase):
    def wallet(self, user_bound_ms=60_000, **environment):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        return Wallet(self, f"{folder.name}/accounts.json", "polkit", user_bound_ms, **environment)

    def agent(self, wallet, manner):
        return Child(self, "/usr/bin/python3", AGENT, wallet.process.pid, manner,
                     os.environ["CORVANE_TESTER"], os.environ["CORVANE_TESTER_PASSWORD"])

    def assert_evaluates(self, wallet, answer, can):
        wait_until(lambda: wallet.ask(f"evaluate {UNLOCK}") == answer, answer)
        self.assertEqual(wallet.ask("can"), can)

    def test_finds_nobody_to_ask_without_polkit_action_or_agent(self):
        self.assert_evaluates(self.wallet(DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nonexistent"), REFUSED, "not installed")
        wallet = self.wallet()
        # Only an evaluation detects an agent, also one that starts or stops later.
        self.assert_evaluates(wallet, NOBODY, "no agent")
        agent = self.agent(wallet, "authenticate")
        self.assert_evaluates(wallet, PASSED, "yes")
        aside = ACTION.rename(ACTION.with_suffix(".aside"))
        self.assert_evaluates(wallet, REFUSED, "not installed")
        aside.rename(ACTION)
        self.assert_evaluates(wallet, PASSED, "yes")
        agent.end()
        self.assert_evaluates(wallet, NOBODY, "no agent")

    def test_shows_the_reason_and_replies_with_the_owners_answer(self):
        wallet = self.wallet()
        for manner, reason, shown, answer in (
                ("authenticate", UNLOCK, "org.corvane.unlock: unlock Corvane", PASSED),
                ("authenticate", "reveal your wallet backup key", "org.corvane.reveal: reveal your wallet backup key",
                 PASSED),
                ("authenticate", "send 1.2500 SOL", "org.corvane.send: send SOL from your Corvane wallet", PASSED),
                ("refuse", UNLOCK, "org.corvane.unlock: unlock Corvane", REFUSED),
                ("dismiss", UNLOCK, "org.corvane.unlock: unlock Corvane", REFUSED)):
            with self.subTest(manner=manner, reason=reason):
                agent = self.agent(wallet, manner)
                # Checks cause no prompt, and an authorization is not kept.
                self.assertEqual(wallet.ask("can"), "yes")
                for _ in range(2):
                    self.assertEqual(wallet.ask(f"evaluate {reason}"), answer)
                    self.assertEqual(agent.line(), shown)
                agent.end()

    def test_gives_up_on_a_person_who_does_not_answer(self):
        wallet = self.wallet(user_bound_ms=3000)
        agent = self.agent(wallet, "hang")
        self.assertEqual(wallet.ask(f"evaluate {UNLOCK}"), REFUSED)
        self.assertEqual(agent.line(), "org.corvane.unlock: unlock Corvane")
        self.assertEqual(agent.line(), "cancelled")

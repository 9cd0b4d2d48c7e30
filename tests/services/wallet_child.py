"""What tests of a wallet without a face (wallet_actor) share."""

import os
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))


class Child:
    """A program that talks in lines, once it is ready; killed with its test at the latest."""

    def __init__(self, test, *command, **environment):
        self.process = subprocess.Popen([*map(str, command)], env=os.environ | environment, text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        test.addCleanup(self.end)
        test.assertEqual(self.line(), "ready")

    def line(self):
        return self.process.stdout.readline().strip()

    def ask(self, question):
        """The line that answers; empty when it has died."""
        print(question, file=self.process.stdin, flush=True)
        return self.line()

    def end(self):
        self.process.kill()
        self.process.communicate()


class Wallet(Child):
    def __init__(self, test, accounts, authenticator, *more, **environment):
        super().__init__(test, os.environ["WALLET_ACTOR"], accounts, authenticator, *more, **environment)

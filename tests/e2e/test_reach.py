"""What the program reaches for outside of itself while somebody sends: nothing but what it says."""

import os
import re
import shutil
import subprocess
import unittest

from support import KEY, KEY_ADDRESS, PROGRAM, RECIPIENT, WalletTest, wait_until


def may_look():
    """Whether strace works here; only root may look into a program that lets nobody look."""
    return shutil.which("strace") and os.geteuid() == 0 and subprocess.run(
        ["strace", "-o", os.devnull, "true"], capture_output=True, check=False).returncode == 0


@unittest.skipUnless(may_look(), "needs strace, root, and a machine that lets it trace")
class ReachTest(WalletTest):
    def test_talks_to_its_endpoints_alone_and_starts_nothing_but_the_browser(self):
        self.localnet.fund(KEY_ADDRESS, 8.2)
        self.localnet.fund(RECIPIENT, 1)
        environment, opened = self.desktop.make_browser()
        # The desktop's own would start others in its turn.
        opener = self.desktop.folder / "xdg-open"
        opener.symlink_to(self.desktop.folder / "browser")
        environment["PATH"] = f"{self.desktop.folder}:{os.environ['PATH']}"
        trace = self.desktop.folder / "trace"
        strace = ["strace", "-D", "-f", "-qq", "--seccomp-bpf", "-e", "trace=connect,bind,listen,execve,execveat",
                  "-o", trace, "--"]
        with self.run_wallet(under=strace, environment=environment) as corvane:
            self.import_key(corvane, KEY)
            corvane.press_button("SEND")
            corvane.fill("TO", RECIPIENT)
            corvane.fill("AMOUNT", "1")
            corvane.press_button("SEND")
            corvane.press_button("VIEW ON SOLSCAN")
            wait_until(opened, "the browser")
            corvane.press_button("Back to the balance")
            corvane.leave()
        calls = trace.read_text().splitlines()
        self.assertEqual([match[1] for call in calls if (match := re.search(r'execve(?:at)?\(.*?"([^"]+)"', call))],
                         [str(PROGRAM), str(opener)])
        reached = [call for call in calls if "connect(" in call and "AF_UNIX" not in call]
        port = self.localnet.url.rpartition(":")[2]
        self.assertGreater(len(reached), 0)
        for call in reached:
            self.assertIn(f'sin_port=htons({port}), sin_addr=inet_addr("127.0.0.1")', call)
        self.assertEqual([call for call in calls if "listen(" in call
                          or "bind(" in call and "AF_NETLINK" not in call], [])

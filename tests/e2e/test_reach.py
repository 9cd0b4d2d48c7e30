"""What the program reaches for outside of itself while somebody sends: nothing but what it says."""

import os
import re
import shutil
import subprocess
import unittest

from support import KEY, KEY_ADDRESS, WalletTest, wait_until

RECIPIENT = "Hx1fZkBAvtdAyy5RwEc3QuLnHYKCCFGSaDEXGqLGxGAT"
TRACED = "socket,connect,bind,listen,execve,execveat,fork,vfork,clone,clone3"
CALL = re.compile(r"^(\d+) +(?:<\.\.\. )?(\w+)(?:\(| resumed>)(.*)= (-?\d+|\?)")


def calls_in(trace):
    """(process, call, arguments, result, stack) of each call that has ended."""
    begun, calls = {}, []
    for line in trace.splitlines():
        if line.startswith(" > "):
            calls[-1][4].append(line)
        elif line.endswith("<unfinished ...>"):
            process, begins = line.removesuffix("<unfinished ...>").split(maxsplit=1)
            begun[process] = begins
        elif match := CALL.match(line):
            process, name, arguments, result = match.groups()
            if "resumed>" in line:
                arguments = begun.pop(process, "").partition("(")[2] + arguments
            calls.append((process, name, arguments, result, []))
    return calls


def reach_of(trace):
    """The connections and sockets of the program itself, and what the processes that it makes turn
    into."""
    calls = calls_in(trace)
    program, others, started, own = {calls[0][0]}, set(), [], []
    for process, name, arguments, result, stack in calls[1:]:
        # One that is cut off by the program's end has no result.
        if name.startswith(("clone", "fork", "vfork")) and result not in ("?", "-1"):
            group = program if process in program else others if process in others else None
            if group is program and "CLONE_THREAD" not in arguments:
                group = others
            if group is not None:
                group.add(result)
        elif name.startswith("execve"):
            if result == "0" and process in program | others:
                # What it has turned into may do as it likes.
                others.discard(process)
                started.append(arguments.split('"')[1])
        elif process in program | others:
            own.append((name, arguments, result, "\n".join(stack)))
    return own, started


def may_look():
    """Whether strace works here; only root may look into a program that lets nobody look."""
    return shutil.which("strace") and os.geteuid() == 0 and subprocess.run(
        ["strace", "-o", os.devnull, "true"], capture_output=True, timeout=10, check=False).returncode == 0


@unittest.skipUnless(may_look(), "needs strace, root, and a machine that lets it trace")
class ReachTest(WalletTest):
    def test_talks_by_curl_alone_and_starts_nothing_but_the_browser(self):
        self.localnet.fund(KEY_ADDRESS, 8.2)
        self.localnet.fund(RECIPIENT, 1)
        environment, opened = self.desktop.make_browser()
        trace = self.desktop.folder / "trace"
        strace = ["strace", "-D", "-f", "-qq", "-k", "--seccomp-bpf", "-e", f"trace={TRACED}",
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
        own, started = reach_of(trace.read_text())
        self.assertEqual(len(started), 1)
        self.assertIn(started[0].rpartition("/")[2], ("xdg-open", "browser"))
        port = self.localnet.url.rpartition(":")[2]
        reached = [(arguments, stack) for name, arguments, _, stack in own
                   if name == "connect" and "AF_UNIX" not in arguments]
        self.assertGreater(len(reached), 0)
        for arguments, stack in reached:
            self.assertIn(f'sin_port=htons({port}), sin_addr=inet_addr("127.0.0.1")', arguments)
            self.assertIn("libcurl", stack)
        self.assertEqual([call for call in own if call[0] == "listen"
                          or call[0] == "bind" and "AF_NETLINK" not in call[1]], [])

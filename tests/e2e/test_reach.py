"""The connections and processes of the program during a transfer, and the copies of the key that it leaves in
memory. Needs root, because the program denies access to other users."""

import base64
import os
import pathlib
import re
import shutil
import signal
import subprocess
import unittest

from support import KEY, KEY_ADDRESS, PROGRAM, RECIPIENT, WalletTest, solana, wait_until

# For a seed: the address, and the seed and the whole key in the formats that other wallets export.
FORMS_OF = """
import { createKeyPairFromPrivateKeyBytes, getAddressFromPublicKey, getBase58Codec } from "@solana/kit";
const seed = Buffer.from(process.argv[1], "hex"), base58 = getBase58Codec();
const address = await getAddressFromPublicKey((await createKeyPairFromPrivateKeyBytes(seed)).publicKey);
console.log(address, base58.decode(seed), base58.decode(Buffer.concat([seed, base58.encode(address)])));
"""


def memory_of(process_id):
    """All readable memory of the process, which is stopped meanwhile, so that no mapping goes away."""
    os.kill(process_id, signal.SIGSTOP)
    try:
        with open(f"/proc/{process_id}/maps", encoding="utf-8") as maps, \
                open(f"/proc/{process_id}/mem", "rb", 0) as memory:
            wait_until(lambda: " (stopped)" in pathlib.Path(f"/proc/{process_id}/status").read_text(), "the stop")
            return b"".join(read_area(memory, *line.split()[:2]) for line in maps if "[v" not in line)
    finally:
        os.kill(process_id, signal.SIGCONT)


def read_area(memory, area, permissions):
    """The bytes of a line of the maps. Pages past the end of a mapped file cannot be read and hold nothing."""
    if permissions[0] != "r":
        return b""
    start, end = (int(place, 16) for place in area.split("-"))
    pieces = []
    for place in range(start, end, os.sysconf("SC_PAGE_SIZE")):
        try:
            pieces.append(os.pread(memory.fileno(), min(os.sysconf("SC_PAGE_SIZE"), end - place), place))
        except OSError:
            continue
    return b"".join(pieces)


def may_look():
    """True if strace works here. Only root may trace the program, which denies it to its user."""
    return shutil.which("strace") and os.geteuid() == 0 and subprocess.run(
        ["strace", "-o", os.devnull, "true"], capture_output=True, check=False).returncode == 0


class ReachTest(WalletTest):
    def setUp(self):
        super().setUp()
        self.localnet.fund(KEY_ADDRESS, 8.2)
        self.localnet.fund(RECIPIENT, 1)

    def send(self, corvane, link=False):
        corvane.press_button("SEND")
        corvane.fill("TO", RECIPIENT)
        corvane.fill("AMOUNT", "1")
        corvane.press_button("SEND")
        corvane.wait_for("SENT ✓")
        if link:
            corvane.press_button("VIEW ON SOLSCAN")
        corvane.press_button("Back to the balance")

    @unittest.skipUnless(may_look(), "needs strace, root, and a machine that lets it trace")
    def test_talks_to_its_endpoints_alone_by_its_network_process_and_starts_nothing_else_but_the_browser(self):
        environment, opened = self.desktop.make_browser()
        # The desktop's own xdg-open would start further programs.
        opener = self.desktop.folder / "xdg-open"
        opener.symlink_to(self.desktop.folder / "browser")
        environment["PATH"] = f"{self.desktop.folder}:{os.environ['PATH']}"
        trace = self.desktop.folder / "trace"
        strace = ["strace", "-D", "-f", "-qq", "--seccomp-bpf", "-e", "trace=socket,connect,bind,listen,execve,execveat",
                  "-o", trace, "--"]
        with self.run_wallet(under=strace, environment=environment) as corvane:
            self.import_key(corvane, KEY)
            self.send(corvane, link=True)
            wait_until(opened, "the browser")
            corvane.leave()
        calls = trace.read_text().splitlines()
        started = [(match[2], match[1]) for call in calls
                   if (match := re.match(r'(\d+) .*execve(?:at)?\(.*?"([^"]+)"', call))]
        network = str(PROGRAM.parent / "corvane-net")
        self.assertEqual([program for program, _ in started], [str(PROGRAM), network, str(opener)])
        # The process with the key has no socket that leads outside.
        outside = [call for call in calls if re.search(r"(socket|connect)\(.*AF_INET", call)]
        self.assertEqual({call.split()[0] for call in outside}, {dict(started)[network]})
        reached = [call for call in calls if "connect(" in call and "AF_UNIX" not in call]
        port = self.localnet.url.rpartition(":")[2]
        self.assertGreater(len(reached), 0)
        for call in reached:
            self.assertIn(f'sin_port=htons({port}), sin_addr=inet_addr("127.0.0.1")', call)
        self.assertEqual([call for call in calls if "listen(" in call
                          or "bind(" in call and "AF_NETLINK" not in call], [])

    @unittest.skipUnless(os.geteuid() == 0, "needs root")
    def test_leaves_the_key_nowhere_but_in_its_guarded_page(self):
        seed = os.urandom(32)
        address, short, key = solana(FORMS_OF, seed.hex()).split()
        texts = [short, key, seed.hex(), base64.b64encode(seed).decode()]
        forms = [seed, *(text.encode(code) for text in texts for code in ("ascii", "utf-16-le"))]
        self.localnet.fund(address, 8.2)
        with self.run_wallet() as corvane:
            # The key is typed, stored and used; then read from the keyring, used and shown.
            self.import_key(corvane, key)
            self.send(corvane)
            for _ in range(2):
                held = memory_of(corvane.process_id)
                self.assertGreater(held.count(address.encode("utf-16-le")), 0, "the search must find the address")
                self.assertEqual([held.count(form) for form in forms], [1] + [0] * (len(forms) - 1))
                corvane.leave()
                corvane.stop()
                corvane.start()
                corvane.hover()
                self.send(corvane)
            for kept in (corvane.log, corvane.settings_file, self.desktop.folder / "xdg_data_home/corvane/accounts.json"):
                self.assertFalse([form for form in forms if form in kept.read_bytes()], kept)

"""Runs the local cluster of tools/localnet."""

import json
import os
import pathlib
import subprocess
import tempfile
import urllib.request

from . import processes
from .waiting import PATIENCE

_NODE = os.environ.get("CORVANE_NODE", "node")
_SERVER = pathlib.Path(__file__).resolve().parents[1] / "localnet" / "server.mjs"
# Ignores proxies set in the environment.
_OPENER = urllib.request.build_opener(urllib.request.ProxyHandler({}))


class Localnet:
    """Runs the server while entered. After a stop and a start it has the same address."""

    def __enter__(self):
        self._files = tempfile.TemporaryDirectory(prefix="corvane-localnet-")
        self.folder = pathlib.Path(self._files.name)
        self.folder.chmod(0o755)  # for programs of other users
        self.endpoints = self.folder / "endpoints.json"
        self._port = 0
        self._process = None
        try:
            self.start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.stop()
        self._files.cleanup()

    def start(self):
        command = [_NODE, str(_SERVER), "--port", str(self._port), "--endpoints",
                   str(self.endpoints), "--parent", str(os.getpid())]
        self._process = processes.start(command, os.environ, self.folder / "messages",
                                        stdout=subprocess.PIPE)
        try:
            line = processes.read_line(self._process.stdout.fileno(), "localnet")
        except RuntimeError as ended:
            messages = (self.folder / "messages").read_text()
            raise RuntimeError(f"{ended}: {messages}") from None
        self.url = json.loads(line)["url"]
        self._port = int(self.url.rsplit(":", 1)[1])

    def stop(self):
        """Stops the server; its state is lost."""
        if self._process:
            processes.stop(self._process)
            self._process = None

    def _fetch(self, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.url + path, data,
                                         {"Content-Type": "application/json"})
        with _OPENER.open(request, timeout=PATIENCE) as answer:
            return json.load(answer)

    def control(self, what, **settings):
        """Changes a balance, a price or a fault; tools/localnet/README.md lists them."""
        return self._fetch(f"/control/{what}", settings)

    def fund(self, address, sol, usdc=None, cluster="mainnet"):
        """Sets the balances of an address."""
        self.control("balance", cluster=cluster, address=address, lamports=round(sol * 1e9))
        self.control("usdc", cluster=cluster, address=address, amount=usdc)

    def airdrop(self, address, sol, cluster="mainnet"):
        """Sends coins from the cluster itself, as a faucet does."""
        self._ask(cluster, "requestAirdrop", address, round(sol * 1e9))

    def lamports(self, address, cluster="mainnet"):
        """The balances of an address according to the cluster."""
        return self._ask(cluster, "getBalance", address)["value"]

    def _ask(self, cluster, method, *params):
        answer = self._fetch(f"/{cluster}", {"jsonrpc": "2.0", "id": 1, "method": method,
                                             "params": params})
        if "result" not in answer:
            raise RuntimeError(f"{method}: {answer}")
        return answer["result"]

    def requests(self, after=0, waiting=False):
        """The finished requests so far (answered or dropped), or the pending ones."""
        entries = self._fetch(f"/control/log?after={after}")["entries"]
        return [entry for entry in entries if (entry["doneMs"] is None) == waiting]

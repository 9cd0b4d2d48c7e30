"""Failures of the program's peers, what the user then sees, and what stays unchanged.

`peers.py --write` writes the rows to docs/misbehaving-peers.md; the modules test_peers_… run them."""

import json
import pathlib
import sys
from dataclasses import dataclass

DOCUMENT = pathlib.Path(__file__).resolve().parents[2] / "docs/misbehaving-peers.md"

# Headline, holdings, price and change before a row, and the true values from then on.
LAST = "$1,234.05", "≈ 8,200 QUIB  ·  USDC 2.00", "SOL $150.25", "+2.35%"
NEW = "$401.00", "≈ 4,000 QUIB  ·  USDC 1.00", "SOL $100.00", "-1.50%"
LAST_BALANCE = "$822.00", LAST[1], *NEW[2:]
LAST_PRICE = "$602.00", NEW[1], *LAST[2:]
FIGURES = {LAST: "the last figures", NEW: "the new figures",
           LAST_BALANCE: "the new price, the last balance",
           LAST_PRICE: "the new balance, the last price"}

WENT_THROUGH = "it went through"
REFUSED = "send failed — check balance covers amount + fee"
NO_BLOCKHASH = "couldn't fetch a recent blockhash"
LOCKED = "touch id cancelled — nothing was sent"
SENT = "SENT ✓"
LONGEST = 50
AS_ALWAYS = "unchanged"
HTML = "<h1>Pay at <a href='http://evil.test'>evil.test</a></h1>\r\n\u001b[31m\u0000\u202e"


@dataclass(frozen=True)
class Row:
    """One kind of failure. `act` is the runner's method that causes it, with arguments."""

    peer: str
    does: str
    sees: tuple  # texts on the island; for the balance card, all its figures
    kept: str
    act: tuple


def fault(match, kind, **settings):
    return {"match": match, "kind": kind, **settings}


def result(method, value):
    return fault(method, "body", body=json.dumps({"jsonrpc": "2.0", "id": 1, "result": value}))


def balances(kind, **settings):
    return fault("getBalance", kind, **settings), fault("getTokenAccountsByOwner", kind, **settings)


def cluster(does, sees, *faults, peer="cluster"):
    return Row(peer, does, sees, AS_ALWAYS, ("refresh_under", *faults))


def sending(does, sees, *faults, moved=0):
    kept = "the transfer was executed once" if moved else "no transfer"
    return Row("cluster, sending", does, (sees,), kept, ("send", moved, *faults))


NETWORK = [
    cluster("replies 503 with a page", LAST_BALANCE, *balances("status", status=503, body=HTML)),
    cluster("closes the connection in the middle of the reply", LAST_BALANCE, *balances("truncated")),
    cluster("does not reply for more than 12 s", ("$821.00", "≈ 8,200 QUIB  ·  USDC 1.00", *NEW[2:]),
            fault("getBalance", "latency", ms=12500)),
    cluster("redirects to a file of this machine", LAST_BALANCE,
            *balances("redirect", location="file:///etc/passwd")),
    cluster("reports 10⁶⁰ USDC", (
        "$1" + ",000" * 20 + ".00", "≈ 4,000 QUIB  ·  USDC 1" + ",000" * 20 + ".00", *NEW[2:]),
            result("getTokenAccountsByOwner", {"value": [
                {"account": {"data": {"parsed": {"info": {"tokenAmount": {"uiAmount": 1e60}}}}}}]})),
    cluster("all three fail", LAST_PRICE,
            *(fault(source, "drop") for source in ("coingecko", "binance", "coinbase")),
            peer="price services"),
    cluster("Binance reports infinity", ("$∞", NEW[1], "SOL $∞", "+nan%"), fault("coingecko", "drop"),
            fault("binance", "body", body='{"lastPrice": "inf", "priceChangePercent": "nan"}'),
            peer="price services"),
    Row("network", "fails for all peers, and later recovers", LAST, AS_ALWAYS, ("no_network",)),
]

SENDING = [
    sending("replies 503 to the request for a blockhash", NO_BLOCKHASH,
            fault("getLatestBlockhash", "status", status=503)),
    sending("returns an invalid blockhash", REFUSED,
            result("getLatestBlockhash", {"value": {"blockhash": "4" * 44}})),
    sending("closes the connection after the transfer", WENT_THROUGH,
            fault("sendTransaction", "drop-after"), moved=1),
    sending("executes the transfer after more than 12 s", WENT_THROUGH,
            fault("sendTransaction", "latency", ms=12500, count=1), moved=1),
    sending("falsely reports success, with markup as the signature", SENT,
            result("sendTransaction", HTML * 20)),
]

SERVICES = [
    Row("keychain", "hangs when a transfer needs the key",
        (LOCKED,), "the key stays; the next attempt sends", ("keychain_hangs",)),
    Row("keychain", "contains another key in place of the wallet's",
        (REFUSED,), "no transfer", ("another_key",)),
    Row("window manager", "crashes and restarts", LAST, "the island gets keyboard focus in between",
        ("window_manager",)),
    Row("another program", "grabs pointer and keyboard", LAST, "the island opens", ("grabbed",)),
    Row("X server", "is killed", (), "the program exits with status 1", ("display_dies",)),
]

POLKIT = [
    Row("polkit, unlocking the island", "receives a wrong password",
        ("CORVANE LOCKED", "UNLOCK"), "the next answer unlocks",
        ("refused_while_unlocking",)),
    Row("polkit, unlocking the island", "gets no answer, and the program is asked to quit",
        ("CORVANE LOCKED",), "the program exits immediately, with status 0", ("quits_while_unlocking",)),
    Row("polkit, sending", "loses its agent during the prompt", (LOCKED,),
        "the key stays; the next answer sends", ("loses_the_agent",)),
    Row("polkit", "hangs", LAST, "the key stays locked, a transfer waits, QUIT works", ("hangs",)),
]

INTRODUCTION = """# Misbehaving peers

The program's peers may send wrong data, hang or crash. `tests/e2e/peers.py` lists the failures whose effect only
the whole program can show, the tests `e2e.peers_…` run each row with the built program, and
`tests/e2e/peers.py --write` writes this page. The effect of malformed replies and files on the class that parses
them is covered by the unit tests of that class.

In every row:

- The program keeps running, unless the row says that it exits, and responds to the pointer and to assistive
  technology.
- No wait takes longer than 12 s (cluster and price services, per call), 3 s (keychain, and polkit without a
  prompt), or five minutes (a prompt to the user; a polkit that hangs is treated the same).
- The card shows exactly the figures of the third column, and none of them overlap.
- The key in the keychain, the remembered accounts and the settings (but for transfers whose fate is not known) stay
  unchanged, unless the last column says otherwise, and the program prints no warning.
- After the peer has recovered, the next refresh shows the correct figures, and the next attempt succeeds.

The last figures are 8.2 SOL and 2 USDC at $150.25, up 2.35 %, from before the failure; the new figures, 4 SOL and
1 USDC at $100, down 1.5 %, are the true values from then on. A wrong figure from a peer is shown as the peer reports it.
"""


def shortened(text):
    return text if len(text) <= LONGEST else text[:LONGEST] + "…"


def document():
    def texts(row):
        if row.sees in FIGURES:
            return FIGURES[row.sees]
        return "<br>".join(f"`{shortened(text)}`" for text in row.sees) or "nothing"
    lines = [f"| {row.peer} | {row.does} | {texts(row)} | {row.kept} |"
             for row in [*NETWORK, *SENDING, *SERVICES, *POLKIT]]
    return "\n".join([INTRODUCTION, "| peer | failure | what the user sees | state and behaviour |",
                      "| --- | --- | --- | --- |", *lines, ""])


if __name__ == "__main__":
    if "--write" not in sys.argv:
        sys.exit(__doc__)
    DOCUMENT.write_text(document(), encoding="utf-8")

"""Failures of the program's peers, what the user then sees, and what stays unchanged.

`peers.py --write` writes the rows to the table of docs/misbehaving-peers.md; the modules test_peers_… run
them."""

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
LOCKED = "touch id cancelled — nothing was sent"
SENT = "SENT ✓"
LONGEST = 50
AS_ALWAYS = "unchanged"
HEAD = "| peer | failure | what the user sees | state and behaviour |"
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
    cluster("does not reply for more than 12 s", ("$821.00", "≈ 8,200 QUIB  ·  USDC 1.00", *NEW[2:]),
            fault("getBalance", "latency", ms=12500)),
    cluster("all three fail", LAST_PRICE,
            *(fault(source, "drop") for source in ("coingecko", "binance", "coinbase")),
            peer="price services"),
    cluster("Binance reports infinity", ("$∞", NEW[1], "SOL $∞", "+nan%"), fault("coingecko", "drop"),
            fault("binance", "body", body='{"lastPrice": "inf", "priceChangePercent": "nan"}'),
            peer="price services"),
    Row("network", "fails for all peers, and later recovers", LAST, AS_ALWAYS, ("no_network",)),
]

SENDING = [
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
    Row("polkit, unlocking the island", "gets no answer, and the program is asked to quit",
        ("CORVANE LOCKED",), "the program exits immediately, with status 0", ("quits_while_unlocking",)),
    Row("polkit, sending", "loses its agent during the prompt", (LOCKED,),
        "the key stays; the next answer sends", ("loses_the_agent",)),
    Row("polkit", "hangs", LAST, "the key stays locked, a transfer waits, QUIT works", ("hangs",)),
]

def shortened(text):
    return text if len(text) <= LONGEST else text[:LONGEST] + "…"


def document():
    def texts(row):
        if row.sees in FIGURES:
            return FIGURES[row.sees]
        return "<br>".join(f"`{shortened(text)}`" for text in row.sees) or "nothing"
    lines = [f"| {row.peer} | {row.does} | {texts(row)} | {row.kept} |"
             for row in [*NETWORK, *SENDING, *SERVICES, *POLKIT]]
    above = DOCUMENT.read_text(encoding="utf-8").partition(HEAD)[0]
    return above + "\n".join([HEAD, "| --- | --- | --- | --- |", *lines, ""])


if __name__ == "__main__":
    if "--write" not in sys.argv:
        sys.exit(__doc__)
    DOCUMENT.write_text(document(), encoding="utf-8")

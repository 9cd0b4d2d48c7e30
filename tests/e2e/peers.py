"""How the peers of the program misbehave, what the user then sees and what is kept.

`peers.py --write` writes the rows as docs/misbehaving-peers.md; the modules test_peers_… run them."""

import json
import pathlib
import sys
from dataclasses import dataclass

DOCUMENT = pathlib.Path(__file__).resolve().parents[2] / "docs/misbehaving-peers.md"

# Headline, holdings, price and change before a row, and what is true during it.
LAST = "$1,234.05", "≈ 8,200 QUIB  ·  USDC 2.00", "SOL $150.25", "+2.35%"
NEW = "$401.00", "≈ 4,000 QUIB  ·  USDC 1.00", "SOL $100.00", "-1.50%"
LAST_BALANCE = "$822.00", LAST[1], *NEW[2:]
LAST_PRICE = "$602.00", NEW[1], *LAST[2:]
FIGURES = {LAST: "the last figures", NEW: "the new figures",
           LAST_BALANCE: "the new price, the last balance",
           LAST_PRICE: "the new balance, the last price"}

REFUSED = "send failed — check balance covers amount + fee"
NO_BLOCKHASH = "couldn't fetch a recent blockhash"
LOCKED = "touch id cancelled — nothing was sent"
SENT = "SENT ✓"
LONGEST = 50
AS_ALWAYS = "as always"
HTML = "<h1>Pay at <a href='http://evil.test'>evil.test</a></h1>\r\n\u001b[31m\u0000\u202e"


@dataclass(frozen=True)
class Row:
    """One way to misbehave. `act` is the runner's method that makes it happen, with arguments."""

    peer: str
    does: str
    sees: tuple  # texts on the island; of the card with the balance all figures
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
    kept = "the transfer has gone through, once" if moved else "nothing has moved"
    return Row("cluster, sending", does, (sees,), kept, ("send", moved, *faults))


NETWORK = [
    cluster("answers 503 with a page", LAST_BALANCE, *balances("status", status=503, body=HTML)),
    cluster("closes in the middle of the reply", LAST_BALANCE, *balances("truncated")),
    cluster("is silent for longer than 12 s", ("$821.00", "≈ 8,200 QUIB  ·  USDC 1.00", *NEW[2:]),
            fault("getBalance", "latency", ms=12500)),
    cluster("redirects to a file of this machine", LAST_BALANCE,
            *balances("redirect", location="file:///etc/passwd")),
    cluster("says 10⁶⁰ USDC", (
        "$1" + ",000" * 20 + ".00", "≈ 4,000 QUIB  ·  USDC 1" + ",000" * 20 + ".00", *NEW[2:]),
            result("getTokenAccountsByOwner", {"value": [
                {"account": {"data": {"parsed": {"info": {"tokenAmount": {"uiAmount": 1e60}}}}}}]})),
    cluster("all three are down", LAST_PRICE, *(fault(source, "drop") for source in ("coingecko", "binance", "coinbase")),
            peer="price services"),
    cluster("Binance says infinity", ("$∞", NEW[1], "SOL $∞", "+nan%"), fault("coingecko", "drop"),
            fault("binance", "body", body='{"lastPrice": "inf", "priceChangePercent": "nan"}'),
            peer="price services"),
    Row("network", "is gone for all peers, and comes back unasked", LAST, AS_ALWAYS, ("no_network",)),
]

SENDING = [
    sending("has no blockhash: 503", NO_BLOCKHASH, fault("getLatestBlockhash", "status", status=503)),
    sending("says a blockhash that never was", REFUSED,
            result("getLatestBlockhash", {"value": {"blockhash": "4" * 44}})),
    sending("closes the connection after the transfer", REFUSED,
            fault("sendTransaction", "drop-after"), moved=1),
    sending("carries the transfer out after 12 s of silence", REFUSED,
            fault("sendTransaction", "latency", ms=12500, count=1), moved=1),
    sending("lies: sent, with markup as the signature", SENT, result("sendTransaction", HTML * 20)),
]

SERVICES = [
    Row("keychain", "hangs when a transfer needs the key", (LOCKED,), "the key; the next try sends", ("keychain_hangs",)),
    Row("keychain", "holds another key in the key's place", (REFUSED,), "nothing has moved", ("another_key",)),
    Row("window manager", "dies, and comes back", LAST, "the island takes the keyboard meanwhile",
        ("window_manager",)),
    Row("another program", "holds pointer and keyboard", LAST, "the island opens", ("grabbed",)),
    Row("X server", "is killed", (), "it ends with status 1", ("display_dies",)),
]

POLKIT = [
    Row("polkit at the door", "hears a wrong password", ("CORVANE LOCKED", "UNLOCK"), "the next answer opens",
        ("refused_at_the_door",)),
    Row("polkit at the door", "is not answered, and the program is told to end",
        ("CORVANE LOCKED",), "it ends at once, with status 0", ("ends_at_the_door",)),
    Row("polkit at a transfer", "loses its agent in the middle of the question", (LOCKED,),
        "the key; the next answer sends", ("loses_the_agent",)),
    Row("polkit", "hangs", LAST, "the key stays closed, a transfer waits, QUIT works", ("hangs",)),
]

INTRODUCTION = """# Misbehaving peers

What the program talks to may lie, hang or die. `tests/e2e/peers.py` lists what only the whole program can show
of that, the tests `e2e.peers_…` run each row against the built program, and `tests/e2e/peers.py --write` writes
this page from that list. What a malformed reply or file means to the one class that reads it is in the unit tests
of that class.

In every row:

- The program goes on, unless the row says that it ends, and answers the pointer and assistive
  technology.
- Nobody is waited for longer than 12 s (the cluster and the price services, for each call), 3 s (the
  keychain, polkit's own answers), or five minutes (whoever is asked; a polkit that hangs looks the
  same).
- The card shows the figures of the third column and no others, none of them over another.
- The key in the keychain, the memory of accounts beside it and the settings stay as they were, unless
  the last column says otherwise, and the program writes no warning.
- Once the peer behaves again, the next refresh shows the right figures, the next try succeeds.

The last figures are those of 8.2 SOL and 2 USDC at $150.25, up 2.35 %, from before the peer
misbehaves; the new figures, 4 SOL and 1 USDC at $100, down 1.5 %, are true from then on. A figure that
a peer invents is shown as the peer says it.
"""


def shortened(text):
    return text if len(text) <= LONGEST else text[:LONGEST] + "…"


def document():
    def texts(row):
        if row.sees in FIGURES:
            return FIGURES[row.sees]
        return "<br>".join(f"`{shortened(text)}`" for text in row.sees) or "nothing any more"
    lines = [f"| {row.peer} | {row.does} | {texts(row)} | {row.kept} |"
             for row in [*NETWORK, *SENDING, *SERVICES, *POLKIT]]
    return "\n".join([INTRODUCTION, "| peer | what it does | what the user sees | what is kept |",
                      "| --- | --- | --- | --- |", *lines, ""])


if __name__ == "__main__":
    if "--write" not in sys.argv:
        sys.exit(__doc__)
    DOCUMENT.write_text(document(), encoding="utf-8")

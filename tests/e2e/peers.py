"""How the peers of the program misbehave, what the user then sees and what is kept.

`peers.py --write` writes the rows as docs/misbehaving-peers.md; the modules test_peers_… run them."""

import json
import os
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
UNEXPECTED = "unexpected RPC reply"
SENT = "SENT ✓"
PRICE_SOURCES = "coingecko", "binance", "coinbase"
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


def says(match, document, **settings):
    """Exactly this, as JSON unless it is text already."""
    text = document if isinstance(document, str) else json.dumps(document)
    return fault(match, "body", body=text, **settings)


def result(method, value):
    return says(method, {"jsonrpc": "2.0", "id": 1, "result": value})


def balances(kind, **settings):
    return (fault("getBalance", kind, **settings), fault("getTokenAccountsByOwner", kind, **settings))


def accounts(*amounts):
    """A reply with a token account for each of these amounts."""
    return result("getTokenAccountsByOwner", {"value": [
        {"account": {"data": {"parsed": {"info": {"tokenAmount": {"uiAmount": amount}}}}}}
        for amount in amounts]})


def cluster(does, sees, *faults, kept=AS_ALWAYS):
    return Row("cluster", does, sees, kept, ("refresh_under", *faults))


CLUSTER = [
    cluster("answers 500 with a page", LAST_BALANCE, *balances("status", status=500, body=HTML)),
    cluster("answers 503 with nothing", LAST_BALANCE, *balances("status", status=503, body="")),
    cluster("answers 429, too many requests", LAST_BALANCE, *balances("status", status=429)),
    cluster("answers 500 with the true reply", NEW, *balances("status", status=500, keepBody=True)),
    cluster("closes the connection", LAST_BALANCE, *balances("drop")),
    cluster("closes in the middle of the reply", LAST_BALANCE, *balances("truncated")),
    cluster("answers after 1.2 s", NEW, fault("getBalance", "latency", ms=1200)),
    cluster("is silent for longer than 12 s", ("$821.00", "≈ 8,200 QUIB  ·  USDC 1.00", *NEW[2:]),
            fault("getBalance", "latency", ms=12500)),
    cluster("answers with 8 MiB", LAST_BALANCE, *balances("oversize")),
    cluster("answers with an HTML page", LAST_BALANCE, *balances("not-json")),
    cluster("answers with nothing and 200", LAST_BALANCE, *balances("body", body="")),
    cluster("answers with bytes that are no text", LAST_BALANCE,
            *balances("body", bodyBase64="//4AAHsicmVzdWx0Ijp7fX0A")),
    cluster("nests 100,000 arrays", LAST_BALANCE, *balances("body", body="[" * 100_000)),
    cluster("answers with unknown members", LAST_BALANCE, *balances("wrong-json")),
    cluster("answers with null", LAST_BALANCE, result("getBalance", None),
            result("getTokenAccountsByOwner", None)),
    cluster("writes its numbers as text", LAST_BALANCE, result("getBalance", {"value": "4000000000"}),
            result("getTokenAccountsByOwner", {"value": "1"})),
    cluster("answers with an error of 60 kB of markup", LAST_BALANCE,
            *balances("rpc-error", code=-32000, message=HTML * 1000)),
    cluster("answers with the id of another call", NEW, says("getBalance", {
        "jsonrpc": "2.0", "id": 999, "result": {"value": 4_000_000_000}})),
    cluster("redirects to itself for ever", LAST_BALANCE, *balances("redirect", location="/mainnet")),
    cluster("redirects to a file of this machine", LAST_BALANCE,
            *balances("redirect", location="file:///etc/passwd")),
    cluster("says −1 SOL", ("$-99.00", "≈ -1,000 QUIB  ·  USDC 1.00", *NEW[2:]),
            result("getBalance", {"value": -1_000_000_000})),
    cluster("says 10³⁰ lamports", (
        "$100" + ",000" * 7 + ".00", "≈ 1" + ",000" * 8 + " QUIB  ·  USDC 1.00", *NEW[2:]),
            result("getBalance", {"value": 1e30})),
    cluster("says half a lamport", ("$1.00", "≈ 0 QUIB  ·  USDC 1.00", *NEW[2:]),
            result("getBalance", {"value": 0.5})),
    cluster("says token amounts that are none", NEW, accounts(None, "9", True, [], 1)),
    cluster("says 10⁶⁰ USDC", (
        "$1" + ",000" * 20 + ".00", "≈ 4,000 QUIB  ·  USDC 1" + ",000" * 20 + ".00", *NEW[2:]),
            accounts(1e60)),
    cluster("says 10³⁰⁸ USDC twice", ("$∞", "≈ 4,000 QUIB  ·  USDC ∞", *NEW[2:]),
            accounts(1e308, 1e308)),
    cluster("has 10,000 token accounts", ("$10,400.00", "≈ 4,000 QUIB  ·  USDC 10,000.00", *NEW[2:]),
            accounts(*[1] * 10_000)),
    Row("the wallet app's proxy", "is healthy, and answers nonsense", LAST_BALANCE, AS_ALWAYS,
        ("refresh_under", fault("proxy", "wrong-json"))),
    Row("network", "is gone for all peers, and comes back unasked", LAST, AS_ALWAYS, ("no_network",)),
    Row("cluster", "answers for the network that was left",
        ("$150.25", "≈ 1,000 QUIB  ·  USDC 0.00", *LAST[2:]), "the other network's figures stay away",
        ("late_network",)),
]


def sending(does, sees, *faults, moved=0):
    kept = "the transfer has gone through, once" if moved else "nothing has moved"
    return Row("cluster, sending", does, (sees,), kept, ("send", moved, *faults))


SENDING = [
    sending("has no blockhash: 503", NO_BLOCKHASH, fault("getLatestBlockhash", "status", status=503)),
    sending("keeps the blockhash back for longer than 12 s", NO_BLOCKHASH,
            fault("getLatestBlockhash", "latency", ms=12500, count=1)),
    sending("says a blockhash of one byte", NO_BLOCKHASH,
            result("getLatestBlockhash", {"value": {"blockhash": "1"}})),
    sending("says a blockhash of 100 kB", NO_BLOCKHASH,
            result("getLatestBlockhash", {"value": {"blockhash": "1" * 100_000}})),
    sending("says a blockhash that is null", NO_BLOCKHASH,
            result("getLatestBlockhash", {"value": {"blockhash": None}})),
    sending("says a blockhash that never was", REFUSED,
            result("getLatestBlockhash", {"value": {"blockhash": "4" * 44}})),
    sending("refuses with 503", REFUSED, fault("sendTransaction", "status", status=503)),
    sending("refuses with 60 kB of markup", REFUSED,
            fault("sendTransaction", "rpc-error", code=-32002, message=HTML * 1000)),
    sending("closes the connection before the transfer", REFUSED, fault("sendTransaction", "drop")),
    sending("closes the connection after the transfer", REFUSED,
            fault("sendTransaction", "drop-after"), moved=1),
    sending("closes in the middle of the reply", REFUSED, fault("sendTransaction", "truncated"),
            moved=1),
    sending("carries the transfer out after 12 s of silence", REFUSED,
            fault("sendTransaction", "latency", ms=12500, count=1), moved=1),
    sending("carries the transfer out and answers 500", SENT,
            fault("sendTransaction", "status", status=500, keepBody=True), moved=1),
    sending("answers with a number", UNEXPECTED, result("sendTransaction", 7)),
    sending("answers with null", UNEXPECTED, result("sendTransaction", None)),
    sending("lies: sent, with markup as the signature", SENT, result("sendTransaction", HTML * 20)),
    sending("lies: sent, with another transfer's signature", SENT, result("sendTransaction", "3" * 88)),
]


def price(does, sees, *faults):
    return Row("price services", does, sees, AS_ALWAYS, ("refresh_under", *faults))


def coingecko(usd, change=-1.5):
    return says("coingecko", {"solana": {"usd": usd, "usd_24h_change": change}})


def priced(total, sol, *change):
    return total, NEW[1], f"SOL {sol}", *change


NO_CHANGE = NEW[:3]
PRICES = [
    price("CoinGecko is down", NEW, fault("coingecko", "drop")),
    price("CoinGecko and Binance are down", NO_CHANGE, fault("coingecko", "status", status=500),
          fault("binance", "not-json")),
    price("all three are down", LAST_PRICE, *(fault(source, "drop") for source in PRICE_SOURCES)),
    price("all three answer nonsense", LAST_PRICE,
          *(fault(source, "wrong-json") for source in PRICE_SOURCES)),
    price("CoinGecko writes NaN, which is no JSON", NEW,
          says("coingecko", '{"solana": {"usd": NaN, "usd_24h_change": NaN}}')),
    price("CoinGecko writes its price as text", NEW, coingecko("7")),
    price("CoinGecko writes null", NEW, coingecko(None)),
    price("CoinGecko redirects for ever", NEW, fault("coingecko", "redirect", location="?again")),
    price("says $0", priced("$1.00", "$0.00", "-1.50%"), coingecko(0)),
    price("says $−5", priced("$-19.00", "$-5.00", "-1.50%"), coingecko(-5)),
    price("says $10³⁰⁸", priced("$∞", "$100" + ",000" * 102 + ".00", "-1.50%"), coingecko(1e308)),
    price("says a change of null", NO_CHANGE, coingecko(100, None)),
    price("says a change of 10¹⁵ percent", (*NO_CHANGE, "+1000000000000000.00%"),
          coingecko(100, 1e15)),
    price("says a change of 10³⁰⁸ percent", (*NO_CHANGE, f"+{1e308:.2f}%"), coingecko(100, 1e308)),
    price("Binance says infinity", priced("$∞", "$∞", "+nan%"), fault("coingecko", "drop"),
          says("binance", {"lastPrice": "inf", "priceChangePercent": "nan"})),
    price("Coinbase says NaN", priced("$NaN", "$NaN"), fault("coingecko", "drop"), fault("binance", "drop"),
          says("coinbase", {"data": {"amount": "nan"}})),
]


def chart(does, prices, kept="the last chart"):
    return Row("chart service", does, NEW, kept, ("chart_under", kept == "the last chart", prices))


HOURS = [[1.7e12 + 3.6e6 * hour, 90 + hour % 7] for hour in range(24)]
PRICES += [
    chart("has no points", []),
    chart("has one point", HOURS[:1]),
    chart("has points without prices", [[0, None], [1, "7"], []]),
    chart("has a point that is none", [*HOURS, 7]),
    chart("has points out of order", HOURS[::-1], "the new chart, in the order it came"),
    chart("has times that are centuries away", [[time * 100, usd] for time, usd in HOURS],
          "the new chart"),
    chart("has 20,000 points", [[index, index % 97] for index in range(20_000)], "the new chart"),
    chart("has prices of ±10³⁰⁸", [[index, (-1) ** index * 1e308] for index in range(24)],
          "the new chart"),
]

LOCKED = "touch id cancelled — nothing was sent"
NO_KEY = "no wallet — create or import one on the balance card"


def keychain(does, state, when, sees=LOCKED, kept="the key; the next try sends"):
    return Row("keychain", does, (sees,), kept, ("keychain", state, when))


def refusal(status):
    return f"keychain refused the key (error {status}) — try again, and tell me this code if it persists"


def creating(does, state, status):
    return Row("keychain", does, (refusal(status),), "the next try makes the one key", ("creating", state))


KEYCHAIN = [
    keychain("is locked from the start, then asked to send", "locked", "start"),
    keychain("is absent from the start, then asked to send", "absent", "start"),
    keychain("hangs from the start, then asked to send", "hung", "start"),
    keychain("is killed while nobody asks", "absent", "idle"),
    keychain("hangs when a transfer needs the key", "hung", "idle"),
    keychain("is killed while the key is read", "hung", "killed"),
    keychain("is killed and comes back before it is asked", "restarted", "idle", SENT, "the key"),
    keychain("has lost the key behind the program's back", "empty", "idle"),
    keychain("holds other bytes in the key's place", "wrong", "restart",
             kept="nothing has moved; the key serves after the next start"),
    keychain("holds another key in the key's place", "other", "restart", REFUSED,
             "nothing has moved; the key serves after the next start"),
    creating("is locked when a key is made", "locked", -25293),
    creating("is absent when a key is made", "absent", -25291),
    creating("hangs when a key is made", "hung", -25291),
    Row("keychain", "is locked when the key is removed", (NO_KEY,), "the key, found at the next start",
        ("removing",)),
    Row("memory of accounts", "is damaged", LAST, "the key; the memory is written anew",
        ("accounts", "{")),
    Row("memory of accounts", "is empty", LAST, "the key; the memory is written anew",
        ("accounts", "")),
    Row("memory of accounts", "is damaged while the keychain is locked, and a new key is asked for",
        (refusal(-25293), refusal(-25299)), "the old key, found at the next start",
        ("accounts_while_locked",)),
]


def door(does, manner):
    return Row("polkit at the door", does, ("CORVANE LOCKED", "UNLOCK"), "the next answer opens",
               ("door", manner))


def asked(does, manner):
    return Row("polkit at a transfer", does, (LOCKED,), "the key; the next answer sends",
               ("asked", manner))


def without(does, state, transfer="is refused"):
    return Row("polkit", does, LAST, f"the key stays closed, a transfer {transfer}, QUIT works",
               ("polkit", state))


POLKIT = [
    door("hears a wrong password", "refuse"),
    door("is dismissed", "dismiss"),
    door("loses its agent in the middle of the question", "hang"),
    Row("polkit at the door", "is not answered, and the program is told to end",
        ("CORVANE LOCKED",), "it ends at once, with status 0", ("ends_at_the_door",)),
    asked("has nobody to ask", None),
    asked("hears a wrong password", "refuse"),
    asked("is dismissed", "dismiss"),
    asked("loses its agent in the middle of the question", "hang"),
    without("is not on the system bus", "absent"),
    without("has no system bus", "no bus"),
    without("hangs", "hung", "waits"),
]

DISPLAY = [
    Row("compositor", "dies, and comes back", LAST, "the desktop shows round the island",
        ("compositor",)),
    Row("window manager", "dies, and comes back", LAST, "the island takes the keyboard meanwhile",
        ("window_manager",)),
    Row("monitors", "another one becomes the primary and is unplugged", LAST,
        "the island is on the primary one", ("monitors",)),
    Row("another program", "puts a window over the resting island", LAST, "the island opens above it",
        ("covered",)),
    Row("another program", "holds pointer and keyboard", LAST, "the island opens", ("grabbed",)),
    Row("X server", "stands still for a while", LAST, AS_ALWAYS, ("display_stands_still",)),
    Row("program", "is stopped and continued with a reply outstanding", NEW, AS_ALWAYS, ("stopped",)),
    Row("another program", "has the X server cut the program off", (), "it ends with status 1",
        ("cut_off",)),
    Row("X server", "is killed", (), "it ends with status 1", ("display_dies",)),
]


def unwritable(does, how, kept="the file as it was; the next change is written"):
    return Row("settings file", does, ("8.2000 SOL", *LAST[1:]), kept, ("unwritable", how))


def unreadable(does, how, kept="the file, under another name"):
    return Row("settings file", does, ("$0.00",), kept, ("unreadable", how))


UNTOUCHED = "what is there, untouched"
DISK = [
    unwritable("is in a folder that may not be written", "read-only"),
    unwritable("is on a full disk", "full"),
    unwritable("has given way to a folder, so that renaming fails", "folder"),
    unwritable("is deleted while the program runs", "deleted", "all settings are written anew"),
    unwritable("is deleted with its folder", "all deleted", "all settings are written anew"),
    unreadable("ends in the middle", '{"corvane.displayUSD": fal'),
    unreadable("is empty", ""),
    unreadable("holds a list", "[1, 2]"),
    unreadable("holds bytes that are no text", "\0\1\2"),
    unreadable("holds 2 MB", '{"a": "' + "x" * 2_000_000 + '"}'),
    unreadable("is a folder", pathlib.Path.mkdir, UNTOUCHED),
    unreadable("is a pipe that nobody writes to", os.mkfifo, UNTOUCHED),
    unreadable("may not be read", lambda path: path.touch(mode=0), UNTOUCHED),
    unreadable("is a link into nowhere", lambda path: path.symlink_to("/nowhere/settings.json"),
               UNTOUCHED),
]

CLOCK = [
    Row("clock", "jumps ten years ahead", NEW, AS_ALWAYS, ("jumps", "+3650d")),
    Row("clock", "jumps ten years back", NEW, AS_ALWAYS, ("jumps", "-3650d")),
]

GROUPS = [CLUSTER, SENDING, PRICES, KEYCHAIN, POLKIT, DISPLAY, DISK, CLOCK]


INTRODUCTION = """# Misbehaving peers

What the program talks to may lie, hang or die. `tests/e2e/peers.py` lists the ways, the tests
`e2e.peers_…` run each of them against the built program, and `tests/e2e/peers.py --write` writes this
page from that list.

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
    lines = [f"| {row.peer} | {row.does} | {texts(row)} | {row.kept} |" for row in sum(GROUPS, [])]
    return "\n".join([INTRODUCTION, "| peer | what it does | what the user sees | what is kept |",
                      "| --- | --- | --- | --- |", *lines, ""])


if __name__ == "__main__":
    if "--write" not in sys.argv:
        sys.exit(__doc__)
    DOCUMENT.write_text(document(), encoding="utf-8")

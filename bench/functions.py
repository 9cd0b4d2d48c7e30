#!/usr/bin/python3
"""Measures functions of the release build and the libraries that web wallets use for the same work, and
prints a table in Markdown. All figures are CPU time per call, except for Node, where they are elapsed
time."""

import json
import os
import pathlib
import shutil
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[1]
BENCHMARKS = ROOT / "build/release/bench/corvane_bench"
KIT = "@solana/kit in Node"
# Description, benchmark, budget, and (library, name in yardsticks.mjs) of the comparison.
ROWS = (
    ("a refresh cycle, without the network", "refreshCycle", "0.2 ms", None),
    ("reading a chart of 288 points", "parseChart/288", "—", None),
    ("reading a chart of 20,000 points", "parseChart/20000", "—", None),
    ("building and signing a transfer", "buildAndSignTransfer", "0.1 ms", (KIT, "buildAndSign")),
    ("Base58 of 32 bytes, encode", "base58Encode/32", "—", (KIT, "base58Encode/32")),
    ("Base58 of 32 bytes, decode", "base58Decode/32", "—", (KIT, "base58Decode/32")),
    ("Base58 of 64 bytes, encode", "base58Encode/64", "—", (KIT, "base58Encode/64")),
    ("Base58 of 64 bytes, decode", "base58Decode/64", "—", (KIT, "base58Decode/64")),
    ("an Ed25519 signature of a transfer's message", "sign", "—", ("OpenSSL", "signOpenSsl")),
    ("a spring's value at one moment", "springStep", "—", None),
    ("blurring a card's snapshot for one frame", "cardBlur/7", "3 ms", None),
    ("painting the island's shape, grain and outline, scale 1", "islandPaint/1", "—", None),
    ("the same at scale 2", "islandPaint/2", "—", None),
)
UNITS = {"ns": 1, "us": 1e3, "ms": 1e6}


def told(nanoseconds):
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.2g} {unit}" if nanoseconds < 10 * size else f"{nanoseconds / size:.0f} {unit}"
    return f"{nanoseconds:.0f} ns"


def main():
    ours = json.loads(subprocess.run([BENCHMARKS, "--benchmark_format=json"], capture_output=True,
                                     check=True, timeout=300).stdout)["benchmarks"]
    nanoseconds = {entry["name"]: entry["cpu_time"] * UNITS[entry["time_unit"]] for entry in ours}
    node = os.environ.get("CORVANE_NODE") or shutil.which("node")
    theirs = json.loads(subprocess.run([node, str(ROOT / "bench/yardsticks.mjs")], cwd=ROOT / "tools/localnet",
                                       capture_output=True, check=True, timeout=300).stdout)
    print("| what | Corvane | budget | beside it |\n| --- | --- | --- | --- |")
    for what, name, budget, yardstick in ROWS:
        beside = f"{told(theirs[yardstick[1]])} ({yardstick[0]})" if yardstick else "—"
        print(f"| {what} | {told(nanoseconds[name])} | {budget} | {beside} |")


if __name__ == "__main__":
    main()

#!/usr/bin/python3
"""Measures functions of the release build and the libraries that web wallets use for the same work, and
prints a table in Markdown. All figures are CPU time per call, except for Node, where they are elapsed
time."""

import json
import os
import pathlib
import shutil
import subprocess
import sys

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
    ("the yardstick for frames, scale 1", "cardRepaint/1", "—", None),
    ("the same at scale 2", "cardRepaint/2", "—", None),
)
PATIENCE = 120  # seconds; each takes a few
UNITS = {"ns": 1, "us": 1e3, "ms": 1e6}


def told(nanoseconds):
    if nanoseconds is None:
        return "missing"
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.2g} {unit}" if nanoseconds < 10 * size else f"{nanoseconds / size:.0f} {unit}"
    return f"{nanoseconds:.0f} ns"


def output_of(command, **more):
    """What a command prints; None, after a word on the standard error, if it fails or hangs."""
    try:
        return subprocess.run(command, capture_output=True, check=True, timeout=PATIENCE, **more).stdout
    except (OSError, subprocess.SubprocessError) as failure:
        print(f"missing in the table: {failure}", file=sys.stderr)
        return None


def benchmark(name):
    """CPU time per call in nanoseconds of a function of the program; None if it cannot be had."""
    printed = output_of([BENCHMARKS, "--benchmark_format=json", f"--benchmark_filter=^{name}$"])
    if printed is None:
        return None
    entry = json.loads(printed)["benchmarks"][0]
    return entry["cpu_time"] * UNITS[entry["time_unit"]]


def yardstick(name):
    """The same for a yardstick, which runs alone, so that one that hangs costs no other its figure."""
    node = os.environ.get("CORVANE_NODE") or shutil.which("node")
    printed = output_of([node, str(ROOT / "bench/yardsticks.mjs"), name], cwd=ROOT / "tools/localnet")
    return None if printed is None else float(printed)


def main():
    print("| what | Corvane | budget | beside it |\n| --- | --- | --- | --- |")
    for what, name, budget, beside in ROWS:
        theirs = f"{told(yardstick(beside[1]))} ({beside[0]})" if beside else "—"
        print(f"| {what} | {told(benchmark(name))} | {budget} | {theirs} |", flush=True)


if __name__ == "__main__":
    main()

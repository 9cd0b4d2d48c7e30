#!/usr/bin/python3
"""Uses the built program constantly on a bad network for half an hour, and prints its memory, handles,
threads and connections over time. Exits with status 1 if one of them grows."""

import argparse
import pathlib
import random
import sys
import time

from measure import MOTIONS, cpu_seconds, find_places, memory_megabytes, wake_ups

from desktop import Corvane, Localnet, VirtualDesktop

FAULTS = ({"match": "*", "kind": "drop"}, {"match": "*", "kind": "status", "status": 503, "body": ""},
          {"match": "*", "kind": "not-json"}, {"match": "getBalance", "kind": "latency", "ms": 3000},
          {"match": "chart", "kind": "truncated"}, {"match": "coingecko", "kind": "wrong-json"})
SETTLE_SECONDS = 20  # rest before a sample: requests finish, freed memory is returned
WARM_UP_MINUTES = 5  # caches fill


def sample(corvane, began):
    process = pathlib.Path(f"/proc/{corvane.process_id}")
    links = []
    for descriptor in (process / "fd").iterdir():
        try:
            links.append(str(descriptor.readlink()))
        except FileNotFoundError:
            continue
    wakes, since = wake_ups([corvane.process_id]), time.monotonic()
    time.sleep(5)
    return {"minute": (since - began) / 60, "own MB": memory_megabytes(corvane.process_id)[0],
            "handles": len(links), "sockets": sum(link.startswith("socket:") for link in links),
            "threads": len(list((process / "task").iterdir())),
            # Leaked timers would show here.
            "wake-ups/s": (wake_ups([corvane.process_id]) - wakes).total() / (time.monotonic() - since),
            "CPU s": cpu_seconds(corvane.process_id)}


def trouble(corvane, localnet, places, chance):
    """One minute of use, on a network that fails half of the time."""
    end = time.monotonic() + 60 - SETTLE_SECONDS
    while time.monotonic() < end:
        if chance.random() < 0.5:
            localnet.control("fault", **chance.choice(FAULTS))
        chance.choice(list(MOTIONS.values()))(corvane, places)
        localnet.control("clear-faults")
    time.sleep(SETTLE_SECONDS)


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--minutes", type=float, default=30)
    options.add_argument("--seed", type=int, default=1, help="seed of the random actions and faults")
    given = options.parse_args()
    chance = random.Random(given.seed)
    samples = []
    with Localnet() as localnet, VirtualDesktop() as desktop:
        places = find_places(desktop, localnet)
        corvane = Corvane(desktop, localnet)
        # Without the accessibility bus, which only a screen reader would use.
        corvane.environment.pop("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")
        with corvane:
            localnet.fund(corvane.address, 1000)
            began = time.monotonic()
            while time.monotonic() < began + 60 * given.minutes:
                trouble(corvane, localnet, places, chance)
                samples.append(sample(corvane, began))
                if len(samples) == 1:
                    print("| " + " | ".join(samples[0]) + " |\n|" + " --- |" * len(samples[0]))
                print("| " + " | ".join(f"{value:.1f}" for value in samples[-1].values()) + " |",
                      flush=True)
    settled = [entry for entry in samples if entry["minute"] >= min(WARM_UP_MINUTES,
                                                                  given.minutes / 2)]
    half = len(settled) // 2
    grown = []
    for name, tolerance in (("own MB", 1.5), ("handles", 2), ("sockets", 2), ("threads", 1),
                            ("wake-ups/s", 3)):
        early, late = (min(entry[name] for entry in part)
                       for part in (settled[:half or 1], settled[half:]))
        if late > early + tolerance:
            grown.append(f"{name} grew from {early:.1f} to {late:.1f}")
    print("\n".join(grown) or "nothing grew")
    sys.exit(bool(grown))


if __name__ == "__main__":
    main()

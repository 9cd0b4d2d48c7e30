#!/usr/bin/python3
"""Starts the built Corvane. With --demo it runs against the local cluster, with throw-away settings
and a throw-away key that holds a few coins. Without a display it runs on a virtual one: the pointer
moves onto the notch and away again, and pictures of the island are saved in build/demo/."""

import argparse
import contextlib
import os
import pathlib
import subprocess
import sys
import tempfile

from Xlib import display, error

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
from desktop import Corvane, Localnet, VirtualDesktop, processes, wait_until  # noqa: E402
from desktop.corvane import PROGRAM  # noqa: E402

PICTURES = pathlib.Path(__file__).resolve().parents[2] / "build/demo"
SOL, USDC = 8.2, "2"
FIGURES = ("TOTAL BALANCE", "$1,234.05", "≈ 8,200 QUIB  ·  USDC 2.00", "SOL $150.25", "DEMO")


def say(text):
    print(f"==> {text}", flush=True)


def has_display():
    if not os.environ.get("DISPLAY"):
        return False
    try:
        display.Display().close()
    except (error.DisplayError, error.XauthError, OSError):
        return False
    return True


def fund(localnet, address):
    localnet.airdrop(address, SOL)
    localnet.control("usdc", cluster="mainnet", address=address, amount=USDC)


def run_demo_here(localnet):
    """Runs on the user's own display, until the program exits."""
    with tempfile.TemporaryDirectory(prefix="corvane-demo-") as folder:
        environment = os.environ | {"XDG_CONFIG_HOME": folder}
        command = [str(PROGRAM), "--endpoints", str(localnet.endpoints), "--demo-keychain"]
        program = subprocess.Popen(command, env=environment, stdout=subprocess.PIPE,
                                   preexec_fn=processes.end_with_parent)
        try:
            try:
                line = processes.read_line(program.stdout.fileno(), "Corvane")
            except RuntimeError:
                with contextlib.suppress(subprocess.TimeoutExpired):
                    if program.wait(1) == 0:
                        say("a demo runs already, and has opened its island")
                        return 0
                raise
            fund(localnet, line.removeprefix("demo address: "))
            say("rest the pointer at the top centre of the screen; Ctrl-C here ends the demo")
            return program.wait()
        finally:
            processes.stop(program)


def show_off(demo):
    """Runs on a virtual desktop: opens the card, checks its content and saves pictures."""
    with contextlib.ExitStack() as stack:
        localnet = stack.enter_context(Localnet()) if demo else None
        desktop = stack.enter_context(VirtualDesktop())
        corvane = stack.enter_context(Corvane(desktop, localnet, demo=demo))
        say(f"no display: Corvane runs on a virtual one of {desktop.screen.width} by "
            f"{desktop.screen.height} pixels")
        if demo:
            fund(localnet, corvane.address)
        states = corvane.watch_opening()
        if demo:
            refresh = wait_until(lambda: corvane.tree.find("Refresh"), "the refresh button")
            refresh.press()
            corvane.wait_for(*FIGURES)
        corvane.wait_for("QUIB")
        states["expanded"] = corvane.settled()
        texts = corvane.tree.texts()
        corvane.leave()
        for state in ("resting", "hovered", "widened", "expanded"):
            states[state].save(PICTURES / f"{state}.png")
            print(f"    {PICTURES / state}.png")
        say("the open card shows")
        for text in texts:
            print(f"    {text}")
        say("the card opened, showed the figures and folded again" if demo
            else "the island opened and folded again")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--demo", action="store_true",
                        help="local cluster, throw-away settings and key")
    parser.add_argument("--has-display", action="store_true",
                        help="only tell by the exit status whether there is a display")
    options = parser.parse_args()
    if options.has_display:
        sys.exit(not has_display())
    demo = options.demo
    processes.interrupt_on_terminate()
    if not PROGRAM.exists():
        sys.exit(f"{PROGRAM} is missing: ./run builds it")
    if not has_display():
        show_off(demo)
    elif demo:
        with Localnet() as localnet:
            sys.exit(run_demo_here(localnet))
    else:
        os.execv(PROGRAM, [str(PROGRAM)])


if __name__ == "__main__":
    try:
        main()
    except KeyboardInterrupt:
        sys.exit(130)
    except (RuntimeError, TimeoutError) as failure:
        sys.exit(f"start.py: {failure}")

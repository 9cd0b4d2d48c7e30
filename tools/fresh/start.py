#!/usr/bin/python3
"""Starts an installed Corvane on a virtual desktop, in the caller's home, and checks that the
island is on the screen, that the login item exists, that a second start activates the first, and
that --quit works."""

import argparse
import os
import pathlib
import subprocess
import sys

parser = argparse.ArgumentParser(description=__doc__)
parser.add_argument("program")
parser.add_argument("--home", type=pathlib.Path, default=pathlib.Path.home(),
                    help="the home folder that the program writes to")
parser.add_argument("--meanwhile", metavar="COMMAND", help="run this while the program runs")
options = parser.parse_args()

os.environ["CORVANE_BINARY"] = options.program
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1]))
from desktop import Corvane, VirtualDesktop, wait_until  # noqa: E402

LOGIN_ITEM = options.home / ".config/autostart/org.corvane.Corvane.desktop"
OWN_HOME = {"HOME": str(pathlib.Path.home()), "XDG_CONFIG_HOME": "", "XDG_DATA_HOME": "",
            "XDG_CACHE_HOME": ""}


def call(*arguments, environment):
    """Starts the program once more, waits for it to exit, and returns its status."""
    return subprocess.run([options.program, *arguments], env=environment, timeout=20,
                          check=False).returncode


def expect(condition, what):
    if not condition:
        raise RuntimeError(f"not true: {what}")
    print(f"ok: {what}", flush=True)


with VirtualDesktop() as desktop, Corvane(desktop, demo=False, environment=OWN_HOME) as corvane:
    print("ok: the island is on the screen", flush=True)
    if options.meanwhile:
        subprocess.run(options.meanwhile, shell=True, check=True)
    wait_until(LOGIN_ITEM.exists, "the login item")
    expect("Exec=/Applications/Corvane.app/bin/corvane" in LOGIN_ITEM.read_text().replace('"', ""),
           "the login item starts the installed program")
    expect(call(environment=corvane.environment) == 0, "a second start exits with 0")
    wait_until(corvane.is_open, "the island to be opened by the second start")
    expect(call("--quit", environment=corvane.environment) == 0, "--quit exits with 0")
    expect(corvane.wait_for_end() == 0, "the program exited with 0")

#!/usr/bin/python3
"""Compares the built program with others that run on a desktop all day, and prints a table in Markdown.

Each runs alone on a separate virtual desktop. Measures the time from exec to a window on the screen and, at
rest, the cost of the program and its children. Lists programs that are not installed as such. """

import argparse
import pathlib
import shutil
import statistics
import time

from measure import cpu_seconds, memory_megabytes, wake_ups
from Xlib import X, error

from desktop import Corvane, Localnet, VirtualDesktop, processes
from desktop.waiting import wait_until

SETTLE_SECONDS = 20
PAGE = "data:text/html,<title>Balance</title><h1>8.2 SOL</h1>"


def commands(folder):
    """The other programs, with the settings for their lowest memory use."""
    conky, polybar = folder / "conky", folder / "polybar"
    conky.write_text("conky.config = { out_to_x = true, own_window = true, update_interval = 1 }\n"
                     "conky.text = [[CPU ${cpu} % MEM ${mem} ${time %H:%M:%S}]]\n")
    polybar.write_text("[bar/top]\nmodules-right = date\nfont-0 = DejaVu Sans:size=10\n[module/date]\n"
                       "type = internal/date\ninterval = 1\ndate = %H:%M:%S\nlabel = %date%\n")
    return {
        "conky, one line a second": ["conky", "-c", conky],
        "polybar, a clock with seconds": ["polybar", "-c", polybar, "top"],
        "KeePassXC, no database": ["keepassxc", "--config", folder / "keepassxc.ini"],
        "Electrum, first window": ["electrum", "--offline", "--dir", folder / "electrum"],
        "Chromium --app, a static page": [
            "chromium", "--no-sandbox", "--no-first-run", "--disable-gpu", f"--user-data-dir={folder}/chromium",
            f"--app={PAGE}"],
    }


def family(pid):
    """The process ids of a process and all its descendants."""
    children = {}
    for status in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            parent = int(status.read_text().rsplit(")", 1)[1].split()[1])
        except OSError:
            continue
        children.setdefault(parent, []).append(int(status.parent.name))
    found = [pid]
    for process in found:
        found += children.get(process, [])
    return found


def total(measure, pid):
    """The sum of a figure over a process and its descendants; processes that have just exited are ignored."""
    figures = []
    for process in family(pid):
        try:
            figures.append(measure(process))
        except (OSError, TypeError):
            continue
    return sum(figures)


def windows(screen):
    """The number of visible windows of any size, except those of the window manager."""
    def shows(window):
        try:
            geometry = window.get_geometry()
            return (window.get_attributes().map_state == X.IsViewable and geometry.width > 8
                    and geometry.height > 8)
        except (error.BadWindow, error.BadDrawable):  # it was closed in the meantime
            return False
    return sum(shows(window) for window in screen.root.query_tree().children)


def start(desktop, command, environment):
    """The started process, and the milliseconds until one of its windows was visible."""
    before = windows(desktop.screen)
    began = time.monotonic()
    process = processes.start([str(word) for word in command], environment, desktop.folder / "program.log")
    wait_until(lambda: windows(desktop.screen) > before, f"a window of {command[0]}", pause=0.002)
    return process, (time.monotonic() - began) * 1000


def at_rest(pid, seconds):
    """Own memory and PSS in MB, CPU in percent of a core, and wake-ups per second, of a process and its
    descendants."""
    time.sleep(SETTLE_SECONDS)
    cpu, wakes, since = total(cpu_seconds, pid), wake_ups(family(pid)), time.monotonic()
    time.sleep(seconds)
    elapsed = time.monotonic() - since
    return (total(lambda process: memory_megabytes(process)[0], pid),
            total(lambda process: memory_megabytes(process)[1], pid), 100 * (total(cpu_seconds, pid) - cpu) / elapsed,
            (wake_ups(family(pid)) - wakes).total() / elapsed)


def measure(desktop, command, given):
    """A row of the table, without the name."""
    if not shutil.which(command[0]):
        return "not installed | | | |"
    times = []
    for left in reversed(range(given.starts)):
        try:
            process, milliseconds = start(desktop, command, desktop.environment)
        except TimeoutError:
            return "no window | | | |"
        times.append(milliseconds)
        if left:
            time.sleep(2)
            processes.stop(process)
            time.sleep(1)
    own, pss, cpu, wakes = at_rest(process.pid, given.rest_seconds)
    ended = process.poll() is not None
    processes.stop(process)
    if ended:
        return "exited by itself | | | |"
    return f"{statistics.median(times):.0f} ms | {own:.0f} MB | {pss:.0f} MB | {cpu:.2f} % | {wakes:.1f} |"


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--rest-seconds", type=float, default=60,
                         help="duration of each measurement at rest (default: 60)")
    options.add_argument("--starts", type=int, default=5, help="number of starts of each")
    options.add_argument("--only", default="", help="measure only programs whose command contains this")
    given = options.parse_args()
    print("| program | exec to a window | memory of its own at rest | PSS at rest | CPU at rest | wake-ups a second |")
    print("| --- | --- | --- | --- | --- | --- |", flush=True)
    with Localnet() as localnet, VirtualDesktop(backdrop=False) as desktop:
        corvane = Corvane(desktop, localnet)
        corvane.environment.pop("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")
        desktop.environment |= corvane.environment
        print("| Corvane |", measure(desktop, corvane._command, given), flush=True)
    with VirtualDesktop(backdrop=False) as desktop:
        for name, command in commands(desktop.folder).items():
            if given.only in command[0]:
                print(f"| {name} |", measure(desktop, command, given), flush=True)


if __name__ == "__main__":
    main()

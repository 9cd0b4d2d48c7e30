#!/usr/bin/python3
"""Measures the built program as a whole and prints a table in Markdown.

Starts it on a virtual desktop of 1920 x 1080 points against the local cluster: the time to the first
frame, its cost at rest, and the cost of its frames during animations. """

import argparse
import os
import pathlib
import re
import statistics
import subprocess
import sys
import time
from collections import Counter

import frame_picture
from functions import benchmark

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools"))

from desktop import Corvane, Localnet, VirtualDesktop  # noqa: E402
from desktop.corvane import ASIDE, ON_NOTCH, PROGRAM  # noqa: E402
from desktop.waiting import wait_until  # noqa: E402

FRAME = re.compile(r"frame at ([\d.]+) ms, ([\d.]+) ms of CPU")
LOG_FRAMES = {"QT_LOGGING_RULES": "corvane.frames.debug=true"}
TICKS_A_SECOND = os.sysconf("SC_CLK_TCK")


def first_frame(corvane):
    """Milliseconds from exec to the first frame."""
    started = time.monotonic()
    with subprocess.Popen([*corvane._command], env=corvane.environment | LOG_FRAMES,
                          stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True) as process:
        try:
            for line in process.stderr:
                if match := FRAME.search(line):
                    return float(match[1]) - started * 1000
        finally:
            process.terminate()
    raise RuntimeError("no frame was logged")


def wake_ups(pids):
    """The number of wake-ups of each thread of these processes so far. Subtracting an earlier count
    from a later one ignores threads that have exited in between."""
    counts = Counter()
    for pid in pids:
        for status in pathlib.Path(f"/proc/{pid}/task").glob("*/status"):
            try:
                switches = re.search(r"^voluntary_ctxt_switches:\s+(\d+)", status.read_text(), re.M)
            except OSError:  # the thread has just exited
                continue
            counts[status.parent.name] = int(switches[1])
    return counts


def cpu_seconds(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / TICKS_A_SECOND


def memory_megabytes(pid):
    """The process's own memory and its PSS. Its own memory are the pages that only swapping could
    free: private and dirty, most of them anonymous. The rest of the PSS are clean pages of programs
    and libraries, which the kernel drops when it needs memory."""
    rollup = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return tuple(int(re.search(rf"^{name}:\s+(\d+)", rollup, re.M)[1]) / 1024
                 for name in ("Private_Dirty", "Pss"))


def told_memory(pid):
    own, pss = memory_megabytes(pid)
    return f"{own:.1f} MB, {pss:.0f} MB PSS"


def network_process(pid):
    """The process that sends the program's HTTP requests. It is started after the first frame."""
    children = pathlib.Path(f"/proc/{pid}/task/{pid}/children")
    return int(wait_until(lambda: children.read_text().split(), "the network process")[0])


def at_rest(pids, seconds):
    """CPU in percent of a core, and wake-ups per second, of these processes together."""
    time.sleep(5)  # the first refresh cycle belongs to the start
    wakes, cpu, since = wake_ups(pids), sum(map(cpu_seconds, pids)), time.monotonic()
    time.sleep(seconds)
    elapsed = time.monotonic() - since
    return 100 * (sum(map(cpu_seconds, pids)) - cpu) / elapsed, (wake_ups(pids) - wakes).total() / elapsed


def rest_rows(desktop, localnet, seconds):
    """The rows for a program that was never opened, and for one that was opened once."""
    budget = f"{OWN_BUDGETS[desktop.scale]} MB, 40 MB PSS"
    idle = Corvane(desktop, localnet)
    # Without the accessibility bus, which only a screen reader would use.
    idle.environment.pop("QT_LINUX_ACCESSIBILITY_ALWAYS_ON")
    with idle:
        network = network_process(idle.process_id)
        cpu, wakes = at_rest([idle.process_id, network], seconds)
        rows = [(f"memory of its own at rest, scale {desktop.scale}",
                 told_memory(idle.process_id), budget)]
        if desktop.scale == 1:
            rows += [("its network process", told_memory(network), "—"),
                     ("CPU at rest", f"{cpu:.2f} %", "0.25 %"),
                     ("wake-ups at rest", f"{wakes:.1f} a second", "10 a second")]
        idle.desktop.screen.jump(*idle.pixels(*ON_NOTCH))
        time.sleep(2 * _MOTION_SECONDS)
        idle.desktop.screen.jump(*idle.pixels(*ASIDE))
        time.sleep(_REST_SECONDS)
        rows.append((f"the same after one opening, scale {desktop.scale}",
                     told_memory(idle.process_id), budget))
    return rows


def hover_delay(corvane):
    """Milliseconds from the pointer's arrival to the first frame after it. The spring starts with
    that frame; the first visible change follows two frames later."""
    corvane.leave()
    time.sleep(1)
    frames = FRAME.findall(corvane.messages())
    corvane.desktop.screen.jump(*corvane.pixels(0, 12))
    arrived = time.monotonic()
    later = wait_until(lambda: FRAME.findall(corvane.messages())[len(frames):], "a frame", pause=0)
    return float(later[0][0]) - arrived * 1000


RECIPIENT = "4uQeVj5tqViQh7yWWGStvkEG1Zmhx6uasJtWCJziofM"
BACK = "Back to the balance"
PANES = {"RECEIVE": BACK, "SEND": BACK, "Settings": "DONE"}
_MOTION_SECONDS = 1.5  # longer than any animation, including the sparkline's
_REST_SECONDS = 15  # the program is at rest after this time at the latest
OWN_BUDGETS = {1: 10, 2: 14}  # MB, by scale
FRAME_BUDGETS = {1: 4, 2: 8}  # ms, by scale


def find_places(desktop, localnet):
    """The positions of buttons and fields in pixels. Found in a separate run, because reading them
    over the accessibility bus costs the program time."""
    places = {}

    def note(corvane, name, *roles):
        x, y, width, height = corvane.still(name, *roles).extents(desktop.scale)
        places[name] = x + width / 2, y + height / 2
    with Corvane(desktop, localnet) as corvane:
        corvane.hover()
        for pane, leave in PANES.items():
            note(corvane, pane, "push button")
            corvane.press_button(pane)
            note(corvane, leave, "push button")
            if pane == "SEND":
                note(corvane, "TO", "text")
                note(corvane, "AMOUNT (SOL)", "text")
                # The balance card's button has the same name.
                x, y, width, height = corvane.still("SEND", "push button").extents(desktop.scale)
                places["send it"] = x + width / 2, y + height / 2
            corvane.press_button(leave)
    return places


def open_and_fold(corvane, _places):
    corvane.hover()
    time.sleep(_MOTION_SECONDS)
    corvane.leave()


def change_cards(corvane, places):
    corvane.hover()
    for pane, leave in PANES.items():
        for name in (pane, leave):
            corvane.desktop.screen.click(*places[name])
            time.sleep(_MOTION_SECONDS)
    corvane.leave()


def send(corvane, places):
    """Sends a transfer: the wave during sending, and the burst."""
    screen = corvane.desktop.screen
    corvane.hover()
    time.sleep(_MOTION_SECONDS)
    screen.click(*places["SEND"])
    time.sleep(_MOTION_SECONDS)
    for field, text in (("TO", RECIPIENT), ("AMOUNT (SOL)", "0.01")):
        screen.click(*places[field])
        time.sleep(0.2)
        screen.type(text)
    screen.click(*places["send it"])
    time.sleep(2 * _MOTION_SECONDS)
    screen.click(*places[BACK])
    corvane.leave()


MOTIONS = {"opening and folding": open_and_fold, "changing cards": change_cards, "sending": send}


def frames_while(corvane, motion, places, rounds):
    """CPU milliseconds of each frame while `motion` is repeated `rounds` times."""
    before = len(FRAME.findall(corvane.messages()))
    for _ in range(rounds):
        motion(corvane, places)
        time.sleep(0.5)
    return [float(cpu) for _, cpu in FRAME.findall(corvane.messages())[before:]]


def percentile(values, share):
    return sorted(values)[min(len(values) - 1, int(len(values) * share))]


def start_rows(desktop, localnet, starts):
    times = [first_frame(Corvane(desktop, localnet)) for _ in range(starts)]
    return [("exec to the first island frame",
             f"{statistics.median(times):.0f} ms (worst of {starts}: {max(times):.0f} ms)", "55 ms")]


def hover_rows(corvane, openings):
    delays = [hover_delay(corvane) for _ in range(openings)]
    corvane.leave()
    return [("pointer on the notch to the first frame",
             f"{statistics.median(delays):.0f} ms (worst of {openings}: {max(delays):.0f} ms)",
             "one frame, 17 ms")]


def frame_row(corvane, places, rounds, name):
    """The frames of a motion, beside a complete repaint in the same run: machines differ by a factor
    of two, and with them both figures."""
    scale = corvane.desktop.scale
    repaint = benchmark(f"cardRepaint/{scale}")
    frames = frames_while(corvane, MOTIONS[name], places, rounds)
    slow = percentile(frames, 0.95)
    told = (f"median {statistics.median(frames):.1f} ms, 95 % under {slow:.1f} ms, worst {max(frames):.1f} ms")
    if repaint:
        told += f"; a repaint {repaint / 1e6:.1f} ms, ratio {slow * 1e6 / repaint:.1f}"
    yield (f"CPU of a frame, {name}, scale {scale}", told,
           f"95 % under {FRAME_BUDGETS[scale]} ms, none over 16 ms")


def opening(corvane):
    """(milliseconds since the pointer's arrival, milliseconds of CPU) of each frame of one opening."""
    corvane.leave()
    time.sleep(1)
    before = len(FRAME.findall(corvane.messages()))
    corvane.desktop.screen.jump(*corvane.pixels(*ON_NOTCH))
    arrived = time.monotonic() * 1000
    time.sleep(_MOTION_SECONDS)
    frames = FRAME.findall(corvane.messages())[before:]
    corvane.leave()
    return [(float(at) - arrived, float(cpu)) for at, cpu in frames]


def or_missing(what, rows):
    """The rows; where they cannot be had, one that says so, so that the others are printed."""
    try:
        yield from rows
    except (OSError, RuntimeError, TimeoutError) as failure:
        yield what, "missing: " + str(failure).partition("\n")[0], "—"


def measure_scale(given, wants, localnet, scale):
    size = (1920 * scale, 1080 * scale)
    if wants("start") and scale == 1 or wants("rest"):
        with VirtualDesktop(size=size, scale=scale, backdrop=False) as desktop:
            if wants("start") and scale == 1:
                yield from or_missing("exec to the first island frame", start_rows(desktop, localnet, given.starts))
            if wants("rest"):
                seconds = given.rest_seconds if scale == 1 else given.rest_seconds / 10
                yield from or_missing(f"at rest, scale {scale}", rest_rows(desktop, localnet, seconds))
    if not wants("frames") and not (wants("hover") and scale == 1):
        return
    with VirtualDesktop(size=size, scale=scale) as desktop:
        places = find_places(desktop, localnet)
        with Corvane(desktop, localnet, environment=LOG_FRAMES) as corvane:
            localnet.fund(corvane.address, 10)
            wait_until(lambda: FRAME.search(corvane.messages()), "a logged frame")
            if wants("hover") and scale == 1:
                yield from or_missing("pointer on the notch to the first frame", hover_rows(corvane, given.starts))
            if wants("frames"):
                for name in given.motions:
                    yield from or_missing(f"CPU of a frame, {name}, scale {scale}",
                                          frame_row(corvane, places, given.rounds, name))
                if given.picture:
                    given.openings[scale] = opening(corvane), FRAME_BUDGETS[scale]


def measure(given):
    """Yields the rows of the table."""
    def wants(part):
        return given.only in (None, part)
    if wants("binary"):
        yield "binary with its resources", f"{PROGRAM.stat().st_size / 2**20:.1f} MB", "3 MB"
    os.sync()  # the pages of a program that was just built may still be dirty
    with Localnet() as localnet:
        for scale in given.scales:
            yield from or_missing(f"everything at scale {scale}", measure_scale(given, wants, localnet, scale))


def table(rows):
    """The rows in Markdown, those of both scales side by side."""
    by_name = {}
    for what, measured, budget in rows:
        name, _, scale = what.partition(", scale ")
        by_name.setdefault(name, {})[scale or "1"] = measured, budget
    lines = ["| what | scale 1 | budget | scale 2 | budget |", "| --- | --- | --- | --- | --- |"]
    for name, figures in by_name.items():
        cells = [name, *figures.get("1", ("—", "—")), *figures.get("2", ("—", "—"))]
        lines.append("| " + " | ".join(cells) + " |")
    return "\n".join(lines)


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--only", choices=("binary", "start", "rest", "hover", "frames"),
                         help="measure one part; frames take a minute at each scale")
    options.add_argument("--scales", type=int, nargs="+", choices=(1, 2), default=(1, 2))
    options.add_argument("--motions", nargs="+", choices=MOTIONS, default=list(MOTIONS))
    options.add_argument("--rest-seconds", type=float, default=60,
                         help="duration of the measurement at rest (default: 60; the budget is for 600)")
    options.add_argument("--starts", type=int, default=10, help="number of starts")
    options.add_argument("--rounds", type=int, default=3, help="number of times to open and collapse it")
    options.add_argument("--picture", type=pathlib.Path, help="draw the frames of one opening at each scale "
                         "into this SVG file")
    given = options.parse_args()
    given.openings = {}
    rows = []
    for row in measure(given):
        print(*row, sep="; ", file=sys.stderr, flush=True)
        rows.append(row)
    print(table(rows))
    if given.openings:
        given.picture.write_text(frame_picture.draw(given.openings), encoding="utf-8")


if __name__ == "__main__":
    main()

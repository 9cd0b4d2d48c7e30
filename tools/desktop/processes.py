"""Child processes that never outlive the script that started them."""

import ctypes
import os
import select
import signal
import subprocess

from .waiting import PATIENCE

_LIBC = ctypes.CDLL(None)
_PR_SET_PDEATHSIG = 1


def end_with_parent():
    """Runs between fork and exec: makes the kernel kill the child when its parent dies."""
    _LIBC.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


def start(command, environment, log, **more):
    """Starts `command` with its output in the file `log`."""
    with open(log, "ab") as messages:
        # In a separate session, so that Ctrl-C reaches only the script, which then stops
        # everything in order.
        more = {"stdin": subprocess.DEVNULL, "stdout": messages} | more
        return subprocess.Popen(command, env=environment, stderr=messages, start_new_session=True,
                                preexec_fn=end_with_parent, **more)


def stop(process):
    """Terminates a process, and kills it if it does not exit."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
    status = process.wait()
    if process.stdout:
        process.stdout.close()
    return status


def read_line(descriptor, what):
    """The first line read from the pipe `descriptor`."""
    line = b""
    while not line.endswith(b"\n"):
        ready, _, _ = select.select([descriptor], [], [], PATIENCE)
        piece = os.read(descriptor, 1) if ready else b""
        if not piece:
            raise RuntimeError(f"{what} {'ended' if ready else 'is silent'}")
        line += piece
    return line.decode().strip()


def interrupt_on_terminate():
    """Makes SIGTERM unwind the script, so that everything it started is stopped."""
    def leave(number, _frame):
        raise SystemExit(128 + number)
    signal.signal(signal.SIGTERM, leave)

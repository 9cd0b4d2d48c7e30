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
    """For the moment between fork and exec: the kernel ends the child when its parent is gone."""
    _LIBC.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


def start(command, environment, log, **more):
    """Starts `command` with its messages in the file `log`."""
    with open(log, "ab") as messages:
        # In a session of its own a Ctrl-C reaches the script alone, which then ends all in order.
        more = {"stdin": subprocess.DEVNULL, "stdout": messages} | more
        return subprocess.Popen(command, env=environment, stderr=messages, start_new_session=True,
                                preexec_fn=end_with_parent, **more)


def stop(process):
    """Ends a process politely, then not."""
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
    """The first line that comes through the pipe `descriptor`."""
    line = b""
    while not line.endswith(b"\n"):
        ready, _, _ = select.select([descriptor], [], [], PATIENCE)
        piece = os.read(descriptor, 1) if ready else b""
        if not piece:
            raise RuntimeError(f"{what} {'ended' if ready else 'is silent'}")
        line += piece
    return line.decode().strip()


def interrupt_on_terminate():
    """Lets SIGTERM unwind the script, so that everything it started is ended."""
    def leave(number, _frame):
        raise SystemExit(128 + number)
    signal.signal(signal.SIGTERM, leave)

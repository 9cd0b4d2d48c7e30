"""Waits for a condition, never for a time."""

import time

# Seconds that anything may take that has to happen. Bounded by what tells a program that hangs from a machine
# that is busy with other things, so that only a failure ever waits this long.
PATIENCE = 60.0


def wait_until(condition, what, seconds=PATIENCE, pause=0.02):
    """The first truthy value of `condition`. TimeoutError, naming `what`, after `seconds`; a `what`
    that can be called is asked then, so that it can tell how things stand."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise TimeoutError(f"in {seconds:g} s not seen: {what() if callable(what) else what}")
        time.sleep(pause)

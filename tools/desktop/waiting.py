"""Waits for a condition, never for a time."""

import time

# Time limit in seconds for everything that must happen: long enough to distinguish a program that hangs from
# a busy machine. Only a failing test waits this long.
PATIENCE = 60.0


def wait_until(condition, what, seconds=PATIENCE, pause=0.02):
    """Returns the first truthy value of `condition`. Raises TimeoutError with the text `what` after
    `seconds`; a callable `what` is called then, so that it can describe the current state."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise TimeoutError(f"not seen within {seconds:g} s: {what() if callable(what) else what}")
        time.sleep(pause)

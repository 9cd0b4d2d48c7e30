"""Waits for a condition, never for a time."""

import time


def wait_until(condition, what, seconds=10.0, pause=0.02):
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

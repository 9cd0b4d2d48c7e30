"""Answers the keyring's prompts as a user does, through the mock prompter of GNOME's crypto library. Reads commands
from standard input and answers each with one line."""

import contextlib
import ctypes
import sys


def library():
    for name in ("libgcr-base-3.so.1", "libgcr-4.so.4"):
        with contextlib.suppress(OSError):
            return ctypes.CDLL(name)
    raise SystemExit("no library with a mock prompter")


def main():
    gcr = library()
    gcr.gcr_mock_prompter_start.restype = ctypes.c_char_p
    name = gcr.gcr_mock_prompter_start().decode()
    end = ctypes.c_void_p(None)
    commands = {
        "name": lambda: name,
        "refuse": lambda: gcr.gcr_mock_prompter_expect_password_cancel() or "well",
        "agree": lambda: gcr.gcr_mock_prompter_expect_password_ok(b"a password", end) or "well",
        "waits": lambda: "yes" if gcr.gcr_mock_prompter_is_expecting() else "no",
    }
    for function in ("cancel", "ok"):
        getattr(gcr, f"gcr_mock_prompter_expect_password_{function}").restype = None
    print("ready", flush=True)
    for line in sys.stdin:
        print(commands[line.strip()](), flush=True)


if __name__ == "__main__":
    main()

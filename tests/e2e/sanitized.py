#!/usr/bin/python3
"""Runs end-to-end tests with a program that is built with sanitizers, and fails on any report.

    tests/e2e/sanitized.py asan              all of them: memory, undefined behaviour, leaks
    tests/e2e/sanitized.py tsan keys send    races, in the tests that read keys in the background

The program is built first. Not part of ./test, because it takes a quarter of an hour.
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
SYMBOLIZER = "external_symbolizer_path=/usr/bin/addr2line:allow_addr2line=1"
OPTIONS = {
    "asan": {"ASAN_OPTIONS": f"detect_leaks=1:{SYMBOLIZER}",
             "UBSAN_OPTIONS": f"print_stacktrace=1:{SYMBOLIZER}"},
    # Qt and GLib synchronise where the sanitizer does not look, and then touch only what is theirs.
    "tsan": {"TSAN_OPTIONS": f"ignore_noninstrumented_modules=1:{SYMBOLIZER}"},
}


def suites():
    """Each test module and whether it runs behind polkit, as CMake has them."""
    text = (HERE / "CMakeLists.txt").read_text(encoding="utf-8")
    guarded = re.search(r"set\(with_polkit (.*?)\)", text)[1].split()
    return {path.stem.removeprefix("test_"): path.stem.removeprefix("test_") in guarded
            for path in sorted(HERE.glob("test_*.py"))}


def main():
    options = argparse.ArgumentParser(description=__doc__,
                                      formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("preset", choices=OPTIONS)
    options.add_argument("suite", nargs="*", help="test modules without test_ (default: all)")
    given = options.parse_args()
    known = suites()
    if unknown := [name for name in given.suite if name not in known]:
        options.error(f"there is no {', '.join(unknown)}")
    for command in (["cmake", "--preset", given.preset],
                    ["cmake", "--build", "--preset", given.preset, "--target", "bundle"]):
        # The bundle's icons are drawn by a sanitized program, too.
        subprocess.run(command, cwd=ROOT, env=os.environ | OPTIONS[given.preset], check=True)
    failed, reports = [], pathlib.Path(tempfile.mkdtemp(prefix="corvane-sanitized-"))
    reports.chmod(0o777)  # behind polkit the program runs as somebody else
    environment = os.environ | {
        name: f"{value}:log_path={reports}/report" for name, value in OPTIONS[given.preset].items()} | {
        "CORVANE_BINARY": str(ROOT / "build" / given.preset / "app/corvane"),
        "CORVANE_BUNDLE": str(ROOT / "build" / given.preset / "Corvane.app"),
        "CORVANE_NODE": os.environ.get("CORVANE_NODE") or shutil.which("node") or "node",
        "PYTHONDONTWRITEBYTECODE": "1"}
    for name in given.suite or known:
        behind_polkit = [str(HERE / "with_polkit.py"), sys.executable] if known[name] else []
        done = subprocess.run([sys.executable, *behind_polkit, "-m", "unittest", f"test_{name}"], cwd=HERE,
                              env=environment, timeout=900, check=False)
        if done.returncode != 0:
            failed.append(f"test_{name}")
    found = sorted(reports.iterdir())
    for report in found:
        print(report.read_text(errors="replace"))
    print(f"{len(found)} reports; failed tests: {', '.join(failed) or 'none'}")
    shutil.rmtree(reports)
    sys.exit(1 if found or failed else 0)


if __name__ == "__main__":
    main()

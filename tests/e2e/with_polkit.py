#!/usr/bin/python3
"""with_polkit.py COMMAND...: runs a command in a mount namespace as an ordinary user, with a system bus
with a real polkit that knows Corvane's actions, and with an empty, writable applications folder. Creates
the user, whose name and password are in CORVANE_TESTER and CORVANE_TESTER_PASSWORD.

Without root, or without the right to mount, runs the command directly, without these variables."""

import contextlib
import ctypes
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from desktop import processes, wait_until  # noqa: E402

USER, ID, PASSWORD = "corvane-tester", 61234, "open-sesame"
PASSWORD_HASH = ("$6$corvane$YvmO9UBODFCu2X/ySzser2Hy.yhm2vYyg7ag6hu/X3GPgFe2MjEAJoulpo6dXb32vfAubQy"
                 "bJCoOGTZxr9yCZ.")
POLKIT = "/usr/lib/polkit-1/polkitd"
BUS = pathlib.Path("/run/dbus")
APPLICATIONS = pathlib.Path("/Applications")
ACTIONS = pathlib.Path("/usr/share/polkit-1/actions")
BUS_CONFIGURATION = """<busconfig><type>system</type>
<listen>unix:path=/run/dbus/system_bus_socket</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><allow own="*"/>
<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/></policy></busconfig>"""
_CLONE_NEWNS = 0x20000


def mount(*arguments):
    subprocess.run(["mount", *map(str, arguments)], check=True)


def enter_namespace():
    if os.geteuid() != 0 or not os.path.exists(POLKIT):
        return False
    if ctypes.CDLL(None).unshare(_CLONE_NEWNS) != 0:
        return False
    return subprocess.run(["mount", "--make-rprivate", "/"], check=False).returncode == 0


def extend(folder, file, line):
    """Mounts a copy of `file` with an additional line over it."""
    copy = folder / pathlib.Path(file).name
    copy.write_text(pathlib.Path(file).read_text() + line + "\n")
    mount("--bind", copy, file)


def make_user(folder):
    extend(folder, "/etc/passwd", f"{USER}:x:{ID}:{ID}::/tmp:/bin/sh")
    extend(folder, "/etc/group", f"{USER}:x:{ID}:")
    extend(folder, "/etc/shadow", f"{USER}:{PASSWORD_HASH}:19000:0:99999:7:::")


def start_polkit(folder):
    for place in (BUS, ACTIONS):
        place.mkdir(parents=True, exist_ok=True)
        mount("-t", "tmpfs", "-o", "mode=0755", "tmpfs", place)
    action = ACTIONS / "org.corvane.policy"
    shutil.copyfile(ROOT / "assets/org.corvane.policy", action)
    action.chmod(0o644)
    os.chown(ACTIONS, ID, ID)  # tests remove the action
    configuration = folder / "bus.conf"
    configuration.write_text(BUS_CONFIGURATION)
    log = folder / "messages"
    bus = processes.start(["dbus-daemon", f"--config-file={configuration}", "--nofork",
                           "--nopidfile"], os.environ, log)
    wait_until((BUS / "system_bus_socket").exists, "the system bus")
    polkit = processes.start([POLKIT, "--no-debug"], os.environ, log)
    ask = ["dbus-send", "--system", "--print-reply", "--dest=org.freedesktop.PolicyKit1",
           "/org/freedesktop/PolicyKit1/Authority",
           "org.freedesktop.PolicyKit1.Authority.EnumerateActions", "string:C"]
    wait_until(lambda: subprocess.run(ask, capture_output=True, check=False).returncode == 0,
               lambda: f"polkit\n{log.read_text()}")
    return polkit, bus


@contextlib.contextmanager
def empty_applications():
    """Mounts an empty, world-writable folder over the machine's applications folder."""
    missing = not APPLICATIONS.exists()
    APPLICATIONS.mkdir(exist_ok=True)
    mount("-t", "tmpfs", "-o", "mode=1777", "tmpfs", APPLICATIONS)
    try:
        yield
    finally:
        subprocess.run(["umount", "--lazy", str(APPLICATIONS)], check=False)
        if missing:
            APPLICATIONS.rmdir()


def run(command, folder):
    # Bind-mounted elsewhere, because the checkout may be in a folder that the user cannot enter.
    checkout = folder / "checkout"
    checkout.mkdir()
    mount("--bind", ROOT, checkout)

    def moved(text):
        return text.replace(str(ROOT), str(checkout))
    environment = {name: moved(value) for name, value in os.environ.items()}
    environment |= {"CORVANE_TESTER": USER, "CORVANE_TESTER_PASSWORD": PASSWORD, "HOME": "/tmp"}
    pathlib.Path("/tmp/.X11-unix").mkdir(mode=0o1777, exist_ok=True)
    as_user = ["setpriv", f"--reuid={ID}", f"--regid={ID}", "--clear-groups"]
    return subprocess.run([*as_user, *map(moved, command)], env=environment,
                          cwd=moved(os.getcwd()), check=False).returncode


def main():
    command = sys.argv[1:]
    if not enter_namespace():
        print("polkit is NOT used in this run: it needs root, polkit and the right to mount")
        os.execvp(command[0], command)
    processes.interrupt_on_terminate()
    with tempfile.TemporaryDirectory(prefix="corvane-polkit-") as name:
        folder = pathlib.Path(name)
        folder.chmod(0o755)
        started = ()
        try:
            make_user(folder)
            started = start_polkit(folder)
            with empty_applications():
                return run(command, folder)
        finally:
            for process in started:
                processes.stop(process)
            subprocess.run(["umount", "--lazy", str(folder / "checkout")], check=False)


if __name__ == "__main__":
    sys.exit(main())

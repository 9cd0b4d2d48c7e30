"""A separate display, session bus and home folder, all removed at the end."""

import contextlib
import os
import pathlib
import shutil
import subprocess
import tempfile

from . import processes
from .waiting import PATIENCE, wait_until
from .x11 import Backdrop, Screen, Window

_ADDRESS = "DBUS_SESSION_BUS_ADDRESS"
# The usual one; also for root, who may run the script but not the programs.
_BUS_CONFIGURATION = """<busconfig><include>/usr/share/dbus-1/session.conf</include>
<policy context="mandatory"><allow user="root"/></policy></busconfig>
"""
# The user without rights of its own that every Debian has.
_NOBODY = 65534


class Desktop:
    """Folders, buses and services, started when entered and always stopped when left. What shows windows is up to
    the classes derived from it.

    `size` is in pixels; `scale` is the number of pixels per point. Without a bus, programs get no bus
    address. `backdrop` is True, or the colour of what fills the screen below the windows. The keyring is a real
    one, empty and unlocked. """

    _refuses_root = False

    def __init__(self, size=(1920, 1080), scale=1, bus=True, backdrop=True, keyring=False):
        self._size, self.scale = size, scale
        self._wanted = {"bus": bus, "backdrop": backdrop, "keyring": keyring}
        self._processes = []
        self.screen = self.backdrop = self.bus_address = self.keyring = None
        # Arguments of subprocess.Popen that make a program run as an ordinary user.
        self.identity = {}
        if self._refuses_root and os.geteuid() == 0:
            self.identity = {"user": _NOBODY, "group": _NOBODY, "extra_groups": ()}

    def __enter__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="corvane-desktop-"))
        try:
            self.environment = self._make_environment()
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_):
        self.close()

    def _start_services(self):
        if self._wanted["bus"]:
            self.bus_address = self.environment[_ADDRESS] = self._start_bus()
        if self._wanted["keyring"]:
            self.start_keyring()

    def hand_over(self):
        """Gives everything in the folder to the user that programs run as."""
        for folder, _, files in os.walk(self.folder) if self.identity else ():
            for name in (".", *files):
                with contextlib.suppress(FileNotFoundError):  # it has just been removed
                    os.chown(os.path.join(folder, name), _NOBODY, _NOBODY, follow_symlinks=False)

    def runnable(self, program):
        """The program where its user can reach it: a checkout may be in a folder that only root may enter."""
        if not self.identity:
            return program
        copy = self.folder / pathlib.Path(program).name
        if not copy.exists():
            shutil.copyfile(program, copy)
            copy.chmod(0o755)
        return copy

    def _make_environment(self):
        """The caller's environment without the variables of the caller's desktop."""
        foreign = ("DBUS_", "XDG_", "QT_", "QML", "WAYLAND_", "AT_SPI_", "CORVANE_", "LC_", "LANG",
                   "XAUTHORITY", "DISPLAY", "SWAYSOCK", "http_proxy", "https_proxy", "all_proxy")
        environment = {key: value for key, value in os.environ.items()
                       if not key.startswith(foreign)}
        for variable in ("HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME",
                         "XDG_RUNTIME_DIR"):
            place = self.folder / variable.lower()
            place.mkdir(mode=0o700)
            environment[variable] = str(place)
        return environment | {"LANG": "C.UTF-8", _ADDRESS: "disabled:", "NO_AT_BRIDGE": "1"}

    def _run(self, *command, environment=None, **more):
        log = self.folder / f"{pathlib.Path(command[0]).name}.log"
        self.hand_over()
        try:
            process = processes.start(command, self.environment | (environment or {}), log, **self.identity, **more)
        except FileNotFoundError:
            raise RuntimeError(f"{command[0]} is not installed") from None
        self._processes.append(process)
        return process

    def process(self, name):
        """The last process started under this name."""
        return next(process for process in reversed(self._processes) if process.args[0] == name)

    def _start_bus(self):
        # Keep the bus from starting a keyring or a password prompt by itself.
        services = pathlib.Path(self.environment["XDG_RUNTIME_DIR"]) / "dbus-1/services"
        services.mkdir(parents=True)
        for name in ("org.freedesktop.secrets", "org.gnome.keyring.SystemPrompter"):
            (services / f"{name}.service").write_text(
                f"[D-BUS Service]\nName={name}\nExec=/bin/false\n")
        configuration = self.folder / "bus.conf"
        configuration.write_text(_BUS_CONFIGURATION)
        bus = self._run("dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile",
                        "--print-address=1", stdout=subprocess.PIPE)
        self._bus = bus
        return processes.read_line(bus.stdout.fileno(), "dbus-daemon")

    def start_keyring(self, unlocked=True, program="gnome-keyring-daemon", environment=None):
        """Starts a keyring with the content of the last one."""
        self.keyring = self._run(str(program), "--foreground", "--components=secrets",
                                 *(["--unlock"] if unlocked else []), environment=environment, stdin=subprocess.PIPE)
        if unlocked:
            self.keyring.stdin.write(b"a password of its own")
        self.keyring.stdin.close()
        ask = ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/",
               "org.freedesktop.DBus.NameHasOwner", "string:org.freedesktop.secrets"]
        wait_until(lambda: b"true" in subprocess.run(ask, env=self.environment, check=False,
                                                     capture_output=True).stdout, "the keyring")

    def stop_keyring(self):
        """Kills it while programs use it, even if it is stopped (SIGSTOP)."""
        self.keyring.kill()
        self.keyring.wait()
        if self.keyring in self._processes:
            self._processes.remove(self.keyring)

    def empty_keyring(self):
        """Deletes every key and the accounts remembered for them."""
        self.stop_keyring()
        shutil.rmtree(self.environment["XDG_DATA_HOME"])
        os.mkdir(self.environment["XDG_DATA_HOME"], mode=0o700)
        self.start_keyring()

    def lock_keyring(self):
        subprocess.run(["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.secrets",
                        "/org/freedesktop/secrets", "org.freedesktop.Secret.Service.Lock",
                        "array:objpath:/org/freedesktop/secrets/collection/login"],
                       env=self.environment, stdout=subprocess.DEVNULL, timeout=PATIENCE, check=True)

    def make_browser(self):
        """Registers a handler for links that records the last link. Returns the environment variables
        it needs and a function that returns that link."""
        browser = self.folder / "browser"
        browser.write_text(f'#!/bin/sh\necho "$1" > {browser}.opened\n')
        browser.chmod(0o755)
        # Used by xdg-open if it is installed; otherwise the variable is used.
        applications = pathlib.Path(self.environment["XDG_DATA_HOME"]) / "applications"
        applications.mkdir(exist_ok=True)
        (applications / "noting-browser.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Browser\nExec={browser} %u\n"
            "MimeType=x-scheme-handler/http;\n")
        (pathlib.Path(self.environment["XDG_CONFIG_HOME"]) / "mimeapps.list").write_text(
            "[Default Applications]\nx-scheme-handler/http=noting-browser.desktop\n")
        opened = browser.with_suffix(".opened")
        return {"BROWSER": str(browser)}, lambda: opened.read_text().strip() if opened.exists() else ""

    def lose_bus(self):
        """Kills the session bus while programs use it."""
        self._bus.kill()
        self._bus.wait()

    def close(self):
        if self.backdrop:
            self.backdrop.close()
        if self.screen:
            self.screen.close()
        for process in reversed(self._processes):
            processes.stop(process)
        self._processes.clear()
        shutil.rmtree(self.folder, ignore_errors=True)


class VirtualDesktop(Desktop):
    """An X server, with or without window manager and compositor."""

    def __init__(self, window_manager=True, compositor=True, **more):
        super().__init__(**more)
        self._wanted |= {"window_manager": window_manager, "compositor": compositor}

    def _start(self):
        self.environment["QT_SCALE_FACTOR"] = str(self.scale)
        self.environment["DISPLAY"] = self._start_display()
        self.screen = Screen(self.environment["DISPLAY"])
        self._start_services()
        if self._wanted["window_manager"]:
            self.start_window_manager()
        if self._wanted["compositor"]:
            self.start_compositor()
        self.screen.jump(self.screen.width / 4, self.screen.height * 3 / 4)
        if self._wanted["backdrop"]:
            colour = self._wanted["backdrop"]
            self.backdrop = Backdrop(self.screen, *([] if colour is True else [colour]))
            middle = (self.screen.width // 2, self.screen.height // 2, 1, 1)
            wait_until(lambda: self.screen.capture(*middle).at(*middle[:2]) == self.backdrop.colour,
                       "the backdrop")

    def _start_display(self):
        reading, writing = os.pipe()
        try:
            # Xvfb chooses a free display number itself, so that two instances never collide.
            width, height = self._size
            self._run("Xvfb", "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24",
                      "-nolisten", "tcp", "-noreset", pass_fds=[writing])
            os.close(writing)
            writing = None
            return ":" + processes.read_line(reading, "Xvfb")
        finally:
            os.close(reading)
            if writing is not None:
                os.close(writing)

    def start_window_manager(self):
        self._run("openbox", "--sm-disable")
        wait_until(self.screen.has_window_manager, "the window manager")

    def start_compositor(self):
        self._run("picom", "--backend", "xrender", "--config", "/dev/null")
        wait_until(self.screen.has_compositor, "the compositor")

    def open_window(self, x=100, y=600):
        """An ordinary window of another program, which has the keyboard."""
        window = Window(self.screen, x, y, 300, 200)
        window.take_keyboard()
        wait_until(window.has_keyboard, "its keyboard")
        return window

    def set_clipboard(self, text):
        """Copies a text to the clipboard, as another program does."""
        # It keeps running to serve the text until another program takes the clipboard.
        subprocess.run(["xclip", "-selection", "clipboard", "-in"], env=self.environment,
                       input=text.encode(), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                       timeout=PATIENCE, check=True)

    def clipboard(self):
        """The text on the clipboard."""
        read = subprocess.run(["xclip", "-selection", "clipboard", "-out"], env=self.environment,
                              capture_output=True, text=True, timeout=PATIENCE, check=False)
        return read.stdout if read.returncode == 0 else None

    def lose_display(self):
        """Kills the X server while programs use it."""
        if self.backdrop:
            self.backdrop.close()
        self.screen.close()
        self.backdrop = self.screen = None
        self._processes[0].kill()
        self._processes[0].wait()

"""A Wayland desktop in the window of an X server: KWin, with the server's pointer, keyboard and pictures."""

import pathlib
import shutil

from .desktop import VirtualDesktop
from .sway import WaylandClipboard, WaylandWindow
from .waiting import wait_until
from .x11 import Screen

_SOCKET = "wayland-kwin"


class KWinDesktop(WaylandClipboard, VirtualDesktop):
    """KWin in a window as large as the display. What a program does follows the pointer and the keyboard only after KWin
    has dealt with them, so what has happened must be waited for."""

    def __init__(self, **more):
        super().__init__(window_manager=False, compositor=False, **more)

    def _start(self):
        outer = self._start_display()
        self.screen = Screen(outer)
        self.environment |= {"XDG_SESSION_TYPE": "wayland", "XDG_CURRENT_DESKTOP": "KDE"}
        self._start_services()
        # A copy without the file's capability, which not every container may grant.
        program = self.folder / "kwin_wayland"
        shutil.copyfile(shutil.which("kwin_wayland"), program)
        program.chmod(0o755)
        width, height = self._size
        self._run(str(program), "--x11-display", outer, "--width", str(width), "--height", str(height), "--scale",
                  str(self.scale), "--socket", _SOCKET, "--no-lockscreen",
                  environment={"KWIN_COMPOSE": "Q", "DISPLAY": outer})
        self._socket = socket = pathlib.Path(self.environment["XDG_RUNTIME_DIR"]) / _SOCKET
        wait_until(socket.exists, lambda: f"KWin\n{(self.folder / 'kwin_wayland.log').read_text()}")
        self.environment["WAYLAND_DISPLAY"] = _SOCKET
        self.screen.jump(self.screen.width / 4, self.screen.height * 3 / 4)
        if self._wanted["backdrop"]:
            colour = self._wanted["backdrop"]
            self.backdrop = WaylandWindow(socket, "the backdrop", self._size, *([] if colour is True else [colour]))

    def open_window(self):
        """An ordinary window of another program, which has the keyboard."""
        window = WaylandWindow(self._socket, "an ordinary window", (300, 200))
        wait_until(window.has_keyboard, "its keyboard")
        return window

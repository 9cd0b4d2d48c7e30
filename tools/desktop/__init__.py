"""A virtual desktop for demos and tests: display, window manager, compositor, session bus,
pointer, accessibility client. See README.md."""

from .accessible import AccessibleTree
from .corvane import Corvane
from .desktop import VirtualDesktop
from .film import Film
from .keyring import Keyring
from .kwin import KWinDesktop
from .localnet import Localnet
from .picture import Picture
from .sway import SwayDesktop
from .tray import StatusNotifierHost, XEmbedTray
from .waiting import wait_until
from .x11 import Backdrop, ClipboardManager, Screen

__all__ = ["AccessibleTree", "Backdrop", "ClipboardManager", "Corvane", "Film", "Keyring", "KWinDesktop",
           "Localnet", "Picture", "Screen", "StatusNotifierHost", "SwayDesktop", "VirtualDesktop", "XEmbedTray",
           "wait_until"]

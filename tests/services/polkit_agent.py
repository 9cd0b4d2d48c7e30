"""A polkit authentication agent that is controlled by a script instead of a user.

polkit_agent.py <subject's process id> authenticate|refuse|dismiss|hang <user> <password>

Prints "ready", and a line for each authentication that is requested or cancelled."""

import pathlib
import subprocess
import sys

from gi.repository import Gio, GLib

PATH = "/org/corvane/tests/agent"
HELPER = "/usr/lib/polkit-1/polkit-agent-helper-1"
INTERFACE = """<node><interface name='org.freedesktop.PolicyKit1.AuthenticationAgent'>
<method name='BeginAuthentication'><arg type='s' direction='in'/><arg type='s' direction='in'/>
<arg type='s' direction='in'/><arg type='a{ss}' direction='in'/><arg type='s' direction='in'/>
<arg type='a(sa{sv})' direction='in'/></method>
<method name='CancelAuthentication'><arg type='s' direction='in'/></method></interface></node>"""

pid, manner, user, password = sys.argv[1:]
waiting = []


def dismiss(invocation):
    invocation.return_dbus_error("org.freedesktop.PolicyKit1.Error.Cancelled", "dismissed")


def obey(_bus, _sender, _path, _interface, method, parameters, invocation):
    if method == "CancelAuthentication":
        print("cancelled", flush=True)
        invocation.return_value(None)
        while waiting:
            dismiss(waiting.pop())
        return
    action, message, _icon, _details, cookie, _identities = parameters.unpack()
    print(f"{action}: {message}", flush=True)
    if manner == "hang":
        waiting.append(invocation)
    elif manner == "dismiss":
        dismiss(invocation)
    else:
        # Polkit's helper program checks the password of the account.
        secret = password if manner == "authenticate" else "wrong"
        subprocess.run([HELPER, user], input=f"{cookie}\n{secret}\n", text=True,
                       stdout=subprocess.DEVNULL, check=False)
        invocation.return_value(None)


bus = Gio.bus_get_sync(Gio.BusType.SYSTEM)
bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], obey, None, None)
start_time = int(pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[19])
subject = ("unix-process", {"pid": GLib.Variant("u", int(pid)),
                            "start-time": GLib.Variant("t", start_time)})
bus.call_sync("org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
              "org.freedesktop.PolicyKit1.Authority", "RegisterAuthenticationAgent",
              GLib.Variant("((sa{sv})ss)", (subject, "C", PATH)), None, Gio.DBusCallFlags.NONE, -1)
print("ready", flush=True)
GLib.MainLoop().run()

// A polkit authentication agent that obeys a script instead of a person.
//
// polkit_agent <subject's process id> authenticate|refuse|dismiss|hang <user> <password>
//
// Prints "ready", and a line for each authentication that it is asked for and that is cancelled.

#include <gio/gio.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace {

constexpr char agentPath[] = "/org/corvane/tests/agent";
constexpr char helper[] = "/usr/lib/polkit-1/polkit-agent-helper-1";
constexpr char interfaceXml[] =
    "<node><interface name='org.freedesktop.PolicyKit1.AuthenticationAgent'>"
    "<method name='BeginAuthentication'><arg type='s' direction='in'/>"
    "<arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='a{ss}' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='a(sa{sv})' direction='in'/></method>"
    "<method name='CancelAuthentication'><arg type='s' direction='in'/></method>"
    "</interface></node>";

struct Script
{
    std::string manner;
    std::string user;
    std::string password;
    GDBusMethodInvocation *waiting = nullptr;
};

void dismiss(GDBusMethodInvocation *invocation)
{
    g_dbus_method_invocation_return_dbus_error(
        invocation, "org.freedesktop.PolicyKit1.Error.Cancelled", "dismissed");
}

/// Has polkit's own helper check the password against the account.
void authenticate(const Script &script, const char *cookie)
{
    GSubprocess *process =
        g_subprocess_new(static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE |
                                                       G_SUBPROCESS_FLAGS_STDOUT_PIPE),
                         nullptr, helper, script.user.c_str(), nullptr);
    const bool right = script.manner == "authenticate";
    const std::string input =
        std::string(cookie) + '\n' + (right ? script.password : "wrong") + '\n';
    g_subprocess_communicate_utf8(process, input.c_str(), nullptr, nullptr, nullptr, nullptr);
    g_object_unref(process);
}

void obey(GDBusConnection *, const char *, const char *, const char *, const char *method,
          GVariant *parameters, GDBusMethodInvocation *invocation, gpointer data)
{
    auto *script = static_cast<Script *>(data);
    if (std::string(method) == "CancelAuthentication") {
        std::cout << "cancelled" << std::endl;
        g_dbus_method_invocation_return_value(invocation, nullptr);
        if (script->waiting != nullptr) {
            dismiss(script->waiting);
            script->waiting = nullptr;
        }
        return;
    }
    const char *action = nullptr;
    const char *message = nullptr;
    const char *cookie = nullptr;
    g_variant_get_child(parameters, 0, "&s", &action);
    g_variant_get_child(parameters, 1, "&s", &message);
    g_variant_get_child(parameters, 4, "&s", &cookie);
    std::cout << action << ": " << message << std::endl;
    if (script->manner == "hang") {
        script->waiting = invocation;
    } else if (script->manner == "dismiss") {
        dismiss(invocation);
    } else {
        authenticate(*script, cookie);
        g_dbus_method_invocation_return_value(invocation, nullptr);
    }
}

guint64 startTimeOf(const std::string &pid)
{
    std::ifstream file("/proc/" + pid + "/stat");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    std::size_t position = text.rfind(')') + 1;
    for (int field = 3; field < 22; ++field) {
        position = text.find(' ', position + 1);
    }
    return std::stoull(text.substr(position));
}

} // namespace

int main(int count, char **arguments)
{
    if (count != 5) {
        return 2;
    }
    const std::string pid = arguments[1];
    Script script{arguments[2], arguments[3], arguments[4]};
    GDBusConnection *bus = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    GDBusNodeInfo *node = g_dbus_node_info_new_for_xml(interfaceXml, nullptr);
    const GDBusInterfaceVTable table{obey, nullptr, nullptr, {}};
    if (bus == nullptr ||
        g_dbus_connection_register_object(bus, agentPath, node->interfaces[0], &table, &script,
                                          nullptr, nullptr) == 0) {
        return 1;
    }
    GVariantBuilder subject;
    g_variant_builder_init(&subject, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&subject, "{sv}", "pid",
                          g_variant_new_uint32(static_cast<guint32>(std::stoul(pid))));
    g_variant_builder_add(&subject, "{sv}", "start-time", g_variant_new_uint64(startTimeOf(pid)));
    GError *error = nullptr;
    GVariant *reply = g_dbus_connection_call_sync(
        bus, "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
        "org.freedesktop.PolicyKit1.Authority", "RegisterAuthenticationAgent",
        g_variant_new("((sa{sv})ss)", "unix-process", &subject, "C", agentPath), nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error);
    if (reply == nullptr) {
        std::cerr << error->message << std::endl;
        return 1;
    }
    std::cout << "ready" << std::endl;
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
    return 0;
}

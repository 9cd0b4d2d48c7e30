#include "platform/linux/bus/instance_messages.h"

namespace corvane::platform {

std::optional<InstanceRequest> actionIn(GVariant *arguments)
{
    const char *action = nullptr;
    GVariant *list = nullptr;
    g_variant_get(arguments, "(&s@ava{sv})", &action, &list, nullptr);
    const GioPtr<GVariant> parameters(list);
    InstanceRequest request{QString::fromUtf8(action), std::nullopt};
    const gsize count = g_variant_n_children(list);
    if (request.action.isEmpty() || count > 1) {
        return std::nullopt;
    }
    if (count == 1) {
        const GioPtr<GVariant> boxed(g_variant_get_child_value(list, 0));
        const GioPtr<GVariant> value(g_variant_get_variant(boxed.get()));
        if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING)) {
            return std::nullopt;
        }
        request.parameter = QString::fromUtf8(g_variant_get_string(value.get(), nullptr));
    }
    return request;
}

GVariant *argumentsOf(const InstanceRequest &request)
{
    GVariant *platformData = g_variant_new_array(G_VARIANT_TYPE("{sv}"), nullptr, 0);
    if (request.action.isEmpty()) {
        return g_variant_new("(@a{sv})", platformData);
    }
    GVariantBuilder parameters;
    g_variant_builder_init(&parameters, G_VARIANT_TYPE("av"));
    if (request.parameter) {
        g_variant_builder_add(&parameters, "v",
                              g_variant_new_string(request.parameter->toUtf8().constData()));
    }
    return g_variant_new("(sav@a{sv})", request.action.toUtf8().constData(), &parameters,
                         platformData);
}

} // namespace corvane::platform

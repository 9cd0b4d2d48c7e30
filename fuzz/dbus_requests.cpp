// The arguments of an ActivateAction call, which any program of the session may send. If the first
// line is "names", the next lines are the action and its parameter; otherwise the input is the raw
// message.

#include "platform/linux/bus/instance_messages.h"

#include "app/requests.h"
#include "fuzz/property.h"
#include "fuzz/variant.h"

using namespace corvane;
using namespace corvane::platform;
using fuzz::require;

namespace {

GioPtr<GVariant> message(const InstanceRequest &request)
{
    return GioPtr<GVariant>(g_variant_ref_sink(argumentsOf(request)));
}

/// The arguments of a call with these parameters, for any action name.
GioPtr<GVariant> messageWith(const QString &action, std::initializer_list<GVariant *> parameters)
{
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("av"));
    for (GVariant *parameter : parameters) {
        g_variant_builder_add(&list, "v", parameter);
    }
    return GioPtr<GVariant>(
        g_variant_ref_sink(g_variant_new("(sav@a{sv})", action.toUtf8().constData(), &list,
                                         g_variant_new_array(G_VARIANT_TYPE("{sv}"), nullptr, 0))));
}

/// Conversion to QString drops a leading byte order mark, so that such a text does not round-trip.
bool hasByteOrderMark(const InstanceRequest &request)
{
    return request.action.startsWith(QChar::ByteOrderMark) ||
           request.parameter.value_or(QString()).startsWith(QChar::ByteOrderMark);
}

void checkRoundTrip(const InstanceRequest &request)
{
    if (request.action.isEmpty() || hasByteOrderMark(request)) {
        return;
    }
    const auto back = actionIn(message(request).get());
    require(back == request);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::Input input(data, size);
    const QByteArray first = input.takeLine();
    if (first == "names") {
        InstanceRequest request{input.takeText().remove(QChar::Null), std::nullopt};
        if (!input.isAtEnd()) {
            request.parameter = input.takeText().remove(QChar::Null);
        }
        checkRoundTrip(request);
        require(!actionIn(messageWith(request.action, {g_variant_new_int32(7)}).get()));
        require(!actionIn(
            messageWith(request.action, {g_variant_new_string("send"), g_variant_new_string("")})
                .get()));
        require(!app::paneNamed(request.action.toUpper()) &&
                !app::paneNamed(request.action + u' '));
        return 0;
    }
    const GioPtr<GVariant> arguments =
        fuzz::variantOf(G_VARIANT_TYPE("(sava{sv})"), fuzz::Input(data, size).rest());
    if (const auto request = actionIn(arguments.get())) {
        require(!request->action.isEmpty());
        checkRoundTrip(*request);
    }
    return 0;
}

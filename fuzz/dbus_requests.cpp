// The arguments of an ActivateAction that anybody in the session may send. A first line "names" has
// the action and its parameter in the lines after it; otherwise the input is the raw message.

#include "platform/linux/instance_messages.h"

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

/// A mark in front is no part of a text, so that it does not come back.
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
        if (const auto pane = app::paneNamed(request.action)) {
            require(request.action == request.action.toLower() && request.action.size() <= 8);
        }
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

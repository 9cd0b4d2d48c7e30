// Before Qt, whose keywords the GIO headers use as identifiers.
#include "platform/linux/bus/filtered_bus.h"

#include "platform/linux/bus/large_message_filter.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace corvane::platform {

namespace {

/// The client's part of the authentication as the user of this process, from the D-Bus
/// specification. GIO offers it only to sockets, not to filtered streams.
constexpr char authentication[] = "\0AUTH EXTERNAL\r\nDATA\r\nBEGIN\r\n";
constexpr std::string_view accepted = "DATA\r\nOK ";
constexpr std::size_t longestReply = 256;

/// Copies everything. GIO writes to the output of a socket only if it reads from that socket, too.
struct Everything
{
    static LargeMessageFilter::Progress copy(std::span<const std::byte> input,
                                             std::span<std::byte> output)
    {
        const std::size_t size = std::min(input.size(), output.size());
        std::ranges::copy(input.first(size), output.begin());
        return {size, size};
    }
};

/// A filter as GIO's streams use it.
template <typename Filter>
struct FilterObject
{
    GObject parent;
    Filter filter;

    static gpointer parentClass;

    static GConverterResult convert(GConverter *converter, const void *input, gsize inputSize,
                                    void *output, gsize outputSize, GConverterFlags flags,
                                    gsize *taken, gsize *written, GError **error)
    {
        auto &filter = reinterpret_cast<FilterObject *>(converter)->filter;
        const auto progress = filter.copy({static_cast<const std::byte *>(input), inputSize},
                                          {static_cast<std::byte *>(output), outputSize});
        *taken = progress.taken;
        *written = progress.written;
        if ((flags & G_CONVERTER_INPUT_AT_END) != 0 && progress.taken == inputSize) {
            return G_CONVERTER_FINISHED;
        }
        if (progress.taken > 0) {
            return (flags & G_CONVERTER_FLUSH) != 0 && progress.taken == inputSize
                       ? G_CONVERTER_FLUSHED
                       : G_CONVERTER_CONVERTED;
        }
        if (inputSize > 0) {
            g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_NO_SPACE, "more room is needed");
        } else {
            g_set_error_literal(error, G_IO_ERROR, G_IO_ERROR_PARTIAL_INPUT, "more is needed");
        }
        return G_CONVERTER_ERROR;
    }

    static void initialiseClass(gpointer objectClass, gpointer)
    {
        parentClass = g_type_class_peek_parent(objectClass);
        G_OBJECT_CLASS(objectClass)->finalize = [](GObject *object) {
            std::destroy_at(&reinterpret_cast<FilterObject *>(object)->filter);
            G_OBJECT_CLASS(parentClass)->finalize(object);
        };
    }

    static GType type(const char *name)
    {
        GTypeInfo info{};
        info.class_size = sizeof(GObjectClass);
        info.class_init = initialiseClass;
        info.instance_size = sizeof(FilterObject);
        info.instance_init = [](GTypeInstance *instance, gpointer) {
            std::construct_at(&reinterpret_cast<FilterObject *>(instance)->filter);
        };
        const GInterfaceInfo converter{[](gpointer interface, gpointer) {
                                           static_cast<GConverterIface *>(interface)->convert =
                                               convert;
                                       },
                                       nullptr, nullptr};
        const GType made = g_type_register_static(G_TYPE_OBJECT, name, &info, GTypeFlags{});
        g_type_add_interface_static(made, G_TYPE_CONVERTER, &converter);
        return made;
    }
};

template <typename Filter>
gpointer FilterObject<Filter>::parentClass = nullptr;

GioPtr<GConverter> makeConverter(GType type)
{
    return GioPtr<GConverter>(G_CONVERTER(g_object_new(type, nullptr)));
}

GioPtr<GIOStream> filtered(GioPtr<GIOStream> stream)
{
    static const GType reading = FilterObject<LargeMessageFilter>::type("CorvaneMessageFilter");
    static const GType writing = FilterObject<Everything>::type("CorvaneNoFilter");
    const GioPtr<GInputStream> input(g_converter_input_stream_new(
        g_io_stream_get_input_stream(stream.get()), makeConverter(reading).get()));
    const GioPtr<GOutputStream> output(g_converter_output_stream_new(
        g_io_stream_get_output_stream(stream.get()), makeConverter(writing).get()));
    GioPtr<GIOStream> made(g_simple_io_stream_new(input.get(), output.get()));
    // The socket closes with the object that opened it.
    g_object_set_data_full(G_OBJECT(made.get()), "corvane-socket", stream.release(),
                           g_object_unref);
    return made;
}

/// False with an error, or without one if the bus refuses or does not answer in time.
bool authenticate(BoundedCalls &calls, GIOStream *stream, GError **failure)
{
    // Without the terminating zero.
    const auto sent = calls.await([&](auto *cancellable, auto done, gpointer data) {
        g_output_stream_write_all_async(g_io_stream_get_output_stream(stream), authentication,
                                        sizeof(authentication) - 1, G_PRIORITY_DEFAULT, cancellable,
                                        done, data);
    });
    if (sent == nullptr ||
        g_output_stream_write_all_finish(g_io_stream_get_output_stream(stream), sent.get(), nullptr,
                                         failure) == FALSE) {
        return false;
    }
    // The bus sends nothing after its last line until it is asked something.
    GInputStream *input = g_io_stream_get_input_stream(stream);
    std::string reply;
    while (!reply.ends_with("\r\n") || reply.size() <= accepted.size()) {
        const auto read = calls.await([&](auto *cancellable, auto done, gpointer data) {
            g_input_stream_read_bytes_async(input, longestReply, G_PRIORITY_DEFAULT, cancellable,
                                            done, data);
        });
        GBytes *bytes = read != nullptr
                            ? g_input_stream_read_bytes_finish(input, read.get(), failure)
                            : nullptr;
        if (bytes == nullptr) {
            return false;
        }
        gsize size = 0;
        const auto *text = static_cast<const char *>(g_bytes_get_data(bytes, &size));
        reply.append(text, size);
        g_bytes_unref(bytes);
        if (size == 0 || reply.size() > longestReply) {
            return false;
        }
    }
    return reply.starts_with(accepted);
}

} // namespace

GioPtr<GDBusConnection> filteredSessionBus(BoundedCalls &calls, GioPtr<GError> &error)
{
    GError *failure = nullptr;
    const auto failed = [&] {
        error.reset(failure != nullptr
                        ? failure
                        : g_error_new_literal(G_IO_ERROR, G_IO_ERROR_FAILED, "no bus in time"));
        return nullptr;
    };
    char *address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, &failure);
    if (address == nullptr) {
        return failed();
    }
    const auto opened = calls.await([&](auto *cancellable, auto done, gpointer data) {
        g_dbus_address_get_stream(address, cancellable, done, data);
    });
    g_free(address);
    GioPtr<GIOStream> stream(opened != nullptr
                                 ? g_dbus_address_get_stream_finish(opened.get(), nullptr, &failure)
                                 : nullptr);
    if (stream == nullptr || !authenticate(calls, stream.get(), &failure)) {
        return failed();
    }
    const GioPtr<GIOStream> messages = filtered(std::move(stream));
    const auto connected = calls.await([&](auto *cancellable, auto done, gpointer data) {
        g_dbus_connection_new(messages.get(), nullptr,
                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION, nullptr, cancellable,
                              done, data);
    });
    GioPtr<GDBusConnection> connection(
        connected != nullptr ? g_dbus_connection_new_finish(connected.get(), &failure) : nullptr);
    if (connection == nullptr) {
        return failed();
    }
    return connection;
}

} // namespace corvane::platform

#include "platform/linux/network/network_messages.h"

#include "fuzz/property.h"

#include <cstddef>
#include <cstdint>

namespace platform = corvane::platform;
namespace fuzz = corvane::fuzz;

/// What one end of the network process's connection makes of any message of the other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray message(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (const auto request = platform::decodedRequest(message)) {
        const auto again = platform::decodedRequest(platform::encoded(*request));
        fuzz::require(again && again->id == request->id &&
                      again->request.body == request->request.body);
    }
    if (const auto answer = platform::decodedAnswer(message)) {
        fuzz::require(platform::decodedAnswer(platform::encoded(*answer)).has_value());
    }
    return 0;
}

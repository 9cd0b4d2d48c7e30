#pragma once

#include "platform/linux/bus/gio_calls.h"

#include <QByteArray>

namespace corvane::fuzz {

/// A message of these bytes as the bus library hands it over: checked, with defaults in place of
/// what is none.
inline platform::GioPtr<GVariant> variantOf(const GVariantType *type, const QByteArray &bytes)
{
    const std::unique_ptr<GBytes, decltype(&g_bytes_unref)> copy(
        g_bytes_new(bytes.constData(), static_cast<gsize>(bytes.size())), g_bytes_unref);
    const platform::GioPtr<GVariant> raw(
        g_variant_ref_sink(g_variant_new_from_bytes(type, copy.get(), FALSE)));
    return platform::GioPtr<GVariant>(g_variant_get_normal_form(raw.get()));
}

} // namespace corvane::fuzz

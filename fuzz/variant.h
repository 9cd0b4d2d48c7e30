#pragma once

#include "platform/linux/bus/gio_calls.h"

#include <QByteArray>

namespace corvane::fuzz {

/// A variant from these bytes as the bus library would deliver it: validated, with default values
/// in place of invalid parts.
inline platform::GioPtr<GVariant> variantOf(const GVariantType *type, const QByteArray &bytes)
{
    const std::unique_ptr<GBytes, decltype(&g_bytes_unref)> copy(
        g_bytes_new(bytes.constData(), static_cast<gsize>(bytes.size())), g_bytes_unref);
    const platform::GioPtr<GVariant> raw(
        g_variant_ref_sink(g_variant_new_from_bytes(type, copy.get(), FALSE)));
    return platform::GioPtr<GVariant>(g_variant_get_normal_form(raw.get()));
}

} // namespace corvane::fuzz

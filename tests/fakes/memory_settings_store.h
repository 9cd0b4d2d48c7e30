#pragma once

#include "platform/settings_store.h"

#include <map>
#include <utility>
#include <variant>
#include <vector>

namespace corvane::tests {

/// A settings store in memory that records every write.
class MemorySettingsStore final : public platform::SettingsStore
{
public:
    using Value = std::variant<QString, bool>;

    [[nodiscard]] std::optional<QString> string(const QString &key) const override
    {
        return get<QString>(key);
    }
    [[nodiscard]] std::optional<bool> boolean(const QString &key) const override
    {
        return get<bool>(key);
    }
    void setString(const QString &key, const QString &value) override { set(key, value); }
    void setBoolean(const QString &key, bool value) override { set(key, value); }

    std::map<QString, Value> values;
    /// Every write, in order.
    std::vector<std::pair<QString, Value>> writes;

private:
    template <typename T>
    std::optional<T> get(const QString &key) const
    {
        const auto found = values.find(key);
        const T *value = found != values.end() ? std::get_if<T>(&found->second) : nullptr;
        return value != nullptr ? std::optional(*value) : std::nullopt;
    }

    void set(const QString &key, Value value)
    {
        writes.emplace_back(key, value);
        values.insert_or_assign(key, std::move(value));
    }
};

} // namespace corvane::tests

#pragma once

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>

namespace corvane::platform {

/// A result that arrives once and that one coroutine awaits, on the main thread.
///
/// Copies share the result: the producer keeps one and resolves it, the consumer awaits another.
/// The producer must resolve it in the end (also when it is torn down), because a coroutine that
/// is never resumed never gives its frame back.
template <typename T>
class Completion
{
public:
    Completion()
        : m_state(std::make_shared<State>())
    {}

    /// Delivers the result and resumes the waiter. Only the first call counts.
    void resolve(T value) const
    {
        // The waiter may drop the last copy while it runs.
        const std::shared_ptr<State> state = m_state;
        if (state->settled) {
            return;
        }
        state->settled = true;
        state->value.emplace(std::move(value));
        if (const auto waiter = std::exchange(state->waiter, nullptr)) {
            waiter.resume();
        }
    }

    [[nodiscard]] bool await_ready() const noexcept { return m_state->settled; }
    void await_suspend(std::coroutine_handle<> waiter) const noexcept { m_state->waiter = waiter; }
    [[nodiscard]] T await_resume() const { return std::move(*m_state->value); }

private:
    struct State
    {
        bool settled = false;
        std::optional<T> value;
        std::coroutine_handle<> waiter;
    };

    std::shared_ptr<State> m_state;
};

} // namespace corvane::platform

#pragma once

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>

namespace corvane::platform {

/// A result that is delivered once, to one coroutine that awaits it. Main thread.
///
/// Copies share the result: the producer keeps one and resolves it, the consumer awaits another.
/// The producer must always resolve it, at the latest in its destructor: a coroutine that is never
/// resumed leaks its frame.
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
        // The resumed coroutine may destroy the last copy.
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

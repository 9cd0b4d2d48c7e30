#pragma once

#include "onboarding/onboarding.h"

#include <memory>

class QQmlEngine;
class QQuickItem;

namespace corvane::app {

/// The content of the onboarding's window; its end must come before those of `engine` and
/// `onboarding`. Needs a Theme. A view that does not load is a programming error and stops the
/// process.
[[nodiscard]] std::unique_ptr<QQuickItem> makeOnboardingView(QQmlEngine &engine,
                                                             onboarding::Onboarding &onboarding);

} // namespace corvane::app

#pragma once

#include "onboarding/onboarding.h"

#include <memory>

class QQmlEngine;
class QQuickItem;

namespace corvane::app {

/// Creates the content of the onboarding window, which must be destroyed before `engine` and
/// `onboarding`. Requires a Theme. A view that cannot be loaded is a programming error and aborts
/// the process.
[[nodiscard]] std::unique_ptr<QQuickItem> makeOnboardingView(QQmlEngine &engine,
                                                             onboarding::Onboarding &onboarding);

} // namespace corvane::app

#pragma once

#include "onboarding/onboarding.h"
#include "tests/fakes/fake_shell.h"
#include "tests/panes/card_fixture.h"

#include <QQuickItem>

namespace corvane::tests {

/// An island, and a tour that ends with it.
class OnboardingTest : public CardTest
{
protected:
    OnboardingTest() { launchIsland(); }
    ~OnboardingTest() override { m_onboarding.reset(); }

    FakeBundle m_bundle;
    FakeLoginItem m_loginItem;
    FakeFloatingWindows m_windows;
    std::optional<onboarding::Onboarding> m_onboarding{
        std::in_place,
        onboarding::OnboardingServices{
            queue, settings, m_bundle, m_loginItem, m_application, m_windows,
            [](onboarding::Onboarding &) { return std::make_unique<QQuickItem>(); }}};
};

} // namespace corvane::tests

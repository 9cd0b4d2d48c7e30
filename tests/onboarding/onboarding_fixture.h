#pragma once

#include "onboarding/onboarding.h"
#include "tests/fakes/fake_shell.h"
#include "tests/island/island_fixture.h"

#include <QQuickItem>

namespace corvane::tests {

/// An island, and the tour that ends by opening it.
class OnboardingTest : public IslandTest
{
protected:
    OnboardingTest()
    {
        m_screens.screens = {plainScreen({0, 0, 1512, 982})};
        launchIsland();
    }
    ~OnboardingTest() override { m_onboarding.reset(); }

    FakeApplication m_application;
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

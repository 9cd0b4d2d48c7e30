#include "onboarding/onboarding_pager.h"

namespace corvane::onboarding {

OnboardingPager::OnboardingPager(QObject *parent)
    : QObject(parent)
{
    connect(this, &OnboardingPager::pageChanged, this, &OnboardingPager::changed);
}

void OnboardingPager::back()
{
    if (canGoBack()) {
        turnTo(m_page - 1);
    }
}

void OnboardingPager::forward()
{
    if (isLast()) {
        Q_EMIT finished();
    } else {
        turnTo(m_page + 1);
    }
}

void OnboardingPager::next()
{
    if (!isLast()) {
        turnTo(m_page + 1);
    }
}

void OnboardingPager::turnTo(int page)
{
    m_transaction.run(look::Animation::spring(0.38, 0.86), [&] {
        m_page = page;
        Q_EMIT pageChanged();
    });
}

QString OnboardingPager::forwardLabel() const
{
    return isLast() ? QStringLiteral("OPEN THE ISLAND") : QStringLiteral("CONTINUE");
}

look::Pictogram::Symbol OnboardingPager::forwardIcon() const
{
    return isLast() ? look::Pictogram::Symbol::Sparkles : look::Pictogram::Symbol::ArrowRight;
}

QString OnboardingPager::position() const
{
    return QStringLiteral("Page %1 of %2").arg(m_page + 1).arg(m_lastPage + 1);
}

} // namespace corvane::onboarding

#pragma once

#include "look/motion/transaction.h"
#include "look/paint/pictogram.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::onboarding {

/// The current page of the tour and the labels of its buttons. Main thread.
class OnboardingPager : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    /// Index of the current page.
    Q_PROPERTY(int page READ page NOTIFY pageChanged FINAL)
    Q_PROPERTY(int lastPage MEMBER m_lastPage NOTIFY changed REQUIRED FINAL)
    Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY changed FINAL)
    Q_PROPERTY(QString forwardLabel READ forwardLabel NOTIFY changed FINAL)
    Q_PROPERTY(corvane::look::Pictogram::Symbol forwardIcon READ forwardIcon NOTIFY changed FINAL)
    /// The position in the tour as a text for assistive technology.
    Q_PROPERTY(QString position READ position NOTIFY changed FINAL)
    Q_PROPERTY(corvane::look::Transaction *transaction READ transaction CONSTANT FINAL)

public:
    explicit OnboardingPager(QObject *parent = nullptr);

    /// Shows the previous page, if there is one.
    Q_INVOKABLE void back();
    /// Shows the next page; on the last page, emits `finished`.
    Q_INVOKABLE void forward();
    /// Shows the next page, if there is one.
    Q_INVOKABLE void next();

    [[nodiscard]] int page() const { return m_page; }
    [[nodiscard]] bool canGoBack() const { return m_page > 0; }
    [[nodiscard]] QString forwardLabel() const;
    [[nodiscard]] look::Pictogram::Symbol forwardIcon() const;
    [[nodiscard]] QString position() const;
    [[nodiscard]] look::Transaction *transaction() { return &m_transaction; }

Q_SIGNALS:
    void pageChanged();
    /// A property that depends on the page has changed.
    void changed();
    /// `forward` was called on the last page.
    void finished();

private:
    void turnTo(int page);
    [[nodiscard]] bool isLast() const { return m_page == m_lastPage; }

    int m_page = 0;
    int m_lastPage = 0;
    look::Transaction m_transaction;
};

} // namespace corvane::onboarding

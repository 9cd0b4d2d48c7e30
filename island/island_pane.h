#pragma once

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::island {

Q_NAMESPACE
QML_NAMED_ELEMENT(IslandPane)

/// The card that the expanded island shows.
enum class IslandPane { Balance, Settings, Receive, Send };
Q_ENUM_NS(IslandPane)

} // namespace corvane::island

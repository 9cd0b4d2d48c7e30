#include "app/qt_environment.h"

#include <QtGlobal>

namespace corvane::app {

void QtEnvironment::prepare(const std::vector<Variable> &variables)
{
    for (const auto &[name, value] : variables) {
        m_before.emplace_back(name, qEnvironmentVariableIsSet(name.constData())
                                        ? std::optional(qgetenv(name.constData()))
                                        : std::nullopt);
        qputenv(name.constData(), value);
    }
}

void QtEnvironment::restore()
{
    for (const auto &[name, value] : std::exchange(m_before, {})) {
        if (value) {
            qputenv(name.constData(), *value);
        } else {
            qunsetenv(name.constData());
        }
    }
}

} // namespace corvane::app

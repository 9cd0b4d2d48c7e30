#include "app/while_covered.h"

namespace corvane::app {

namespace {

/// Adds a line to `complaints` if `text` is invalid.
std::optional<platform::WhileCovered> parsed(const QString &name, const QString &text,
                                             QString &complaints)
{
    if (text == QLatin1StringView("hide")) {
        return platform::WhileCovered::Hide;
    }
    if (text == QLatin1StringView("show")) {
        return platform::WhileCovered::Show;
    }
    complaints += QStringLiteral("%1 must be hide or show, not \"%2\"\n").arg(name, text);
    return std::nullopt;
}

} // namespace

WhileCoveredChoice chosenWhileCovered(const QString &environment,
                                      const std::optional<QString> &setting)
{
    WhileCoveredChoice choice;
    std::optional<platform::WhileCovered> value;
    if (!environment.isEmpty()) {
        value = parsed(QString::fromLatin1(fullscreenVariable), environment, choice.complaints);
    }
    if (!value && setting) {
        value = parsed(fullscreenSetting, *setting, choice.complaints);
    }
    choice.value = value.value_or(choice.value);
    return choice;
}

} // namespace corvane::app

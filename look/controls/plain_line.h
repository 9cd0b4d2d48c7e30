#pragma once

#include <QStringView>
#include <QValidator>
#include <QtQmlIntegration/qqmlintegration.h>

namespace corvane::look {

/// `text` as a field of one line can show it truthfully: line breaks, tabs and other characters
/// that a line shows as a gap become spaces, and characters that nobody sees (controls,
/// bidirectional and zero-width ones, lone surrogates) are left out.
[[nodiscard]] QString plainLine(QStringView text);

/// `text` without the line breaks at its very beginning and end, which come along when a line is
/// copied, from a terminal for example.
[[nodiscard]] QStringView withoutOuterBreaks(QStringView text);

/// Turns every text that gets into a line of input, from wherever, into a plain line. The outer
/// line breaks of what is pasted are left out.
class PlainLine : public QValidator
{
    Q_OBJECT
    QML_ELEMENT

public:
    using QValidator::QValidator;
    State validate(QString &input, int &position) const override;
};

} // namespace corvane::look

#pragma once

#include "platform/secret_bytes.h"

#include <QObject>
#include <QStringView>
#include <QtQmlIntegration/qqmlintegration.h>

#include <cstdint>
#include <span>

namespace corvane::look {

/// A secret text in guarded memory, owned by a card and shown by an item. It has no property and no
/// getter that would copy it into a QString. Main thread.
class SecretText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("owned by the card whose secret it holds")

public:
    /// Maximum size in UTF-16 units. Every key is shorter; the limit keeps large pasted texts out
    /// of guarded memory.
    static constexpr qsizetype capacity = 4096;

    using QObject::QObject;

    [[nodiscard]] qsizetype size() const { return m_size; }
    [[nodiscard]] bool isEmpty() const { return m_size == 0; }
    /// The text; valid until the next change.
    [[nodiscard]] QStringView view() const;

    /// Replaces the text with ASCII characters.
    void assign(std::span<const std::uint8_t> ascii);
    /// Inserts as much of `text` as fits and returns the number of inserted units.
    qsizetype insert(qsizetype position, QStringView text);
    /// Removes `count` characters at `position` and wipes their memory.
    void remove(qsizetype position, qsizetype count);
    /// Removes the text, wipes and frees its memory.
    void clear();
    /// Replaces every character by the same one: the text is wiped, but an item that masks it looks
    /// the same, for a card that has done with it and fades out.
    void forget();

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] char16_t *units();
    void reserve(qsizetype size);

    platform::SecretBytes m_memory;
    qsizetype m_size = 0;
};

} // namespace corvane::look

#pragma once

#include "platform/secret_bytes.h"

#include <QObject>
#include <QStringView>
#include <QtQmlIntegration/qqmlintegration.h>

#include <cstdint>
#include <span>

namespace corvane::look {

/// A text that must not leak, in guarded memory, between the card that owns it and the item that
/// shows it. It has no property and no getter that would make a QString of it. Main thread.
class SecretText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("owned by the card whose secret it holds")

public:
    /// UTF-16 units that it holds at most. No key is that long; the bound keeps a pasted book out
    /// of guarded memory.
    static constexpr qsizetype capacity = 4096;

    using QObject::QObject;

    [[nodiscard]] qsizetype size() const { return m_size; }
    [[nodiscard]] bool isEmpty() const { return m_size == 0; }
    /// Valid until the next change.
    [[nodiscard]] QStringView view() const;

    /// Replaces everything by ASCII characters.
    void assign(std::span<const std::uint8_t> ascii);
    /// Inserts as much of `text` as there is room for and gives its size.
    qsizetype insert(qsizetype position, QStringView text);
    /// Removes `count` characters from `position` on and wipes where they stood.
    void remove(qsizetype position, qsizetype count);
    /// Forgets everything, memory included.
    void clear();

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] char16_t *units();
    void reserve(qsizetype size);

    platform::SecretBytes m_memory;
    qsizetype m_size = 0;
};

} // namespace corvane::look

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <source_location>

/// Called by libFuzzer with each input. Returns 0, or -1 for an input that must not be added to the
/// corpus.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace corvane::fuzz {

/// Aborts if a property does not hold; libFuzzer then stores the input.
inline void require(bool holds, std::source_location where = std::source_location::current())
{
    if (!holds) {
        std::fprintf(stderr, "broken property: %s:%u\n", where.file_name(), where.line());
        std::abort();
    }
}

/// True if a text in `json` may begin with a byte order mark, which Qt does not preserve when it
/// reads and writes JSON.
inline bool hasByteOrderMark(const QByteArray &json)
{
    return json.indexOf("\xEF\xBB\xBF", 1) > 0 || json.toLower().contains("\\ufeff");
}

/// An input that a target splits into parts from the front. Parts are separated by line breaks, so
/// that corpus files can be written with a text editor.
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size)
        : m_rest(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size))
    {}

    /// Returns the bytes up to the next line break, which is skipped, or up to the end.
    QByteArray takeLine()
    {
        const qsizetype end = m_rest.indexOf('\n');
        const QByteArrayView line = end < 0 ? m_rest : m_rest.first(end);
        m_rest = end < 0 ? QByteArrayView() : m_rest.sliced(end + 1);
        return line.toByteArray();
    }
    /// Returns a line as text, without leading byte order marks, which Qt does not always preserve.
    QString takeText()
    {
        QString text = QString::fromUtf8(takeLine());
        while (text.startsWith(QChar::ByteOrderMark)) {
            text.remove(0, 1);
        }
        return text;
    }

    [[nodiscard]] bool isAtEnd() const { return m_rest.isEmpty(); }
    [[nodiscard]] QByteArray rest() const { return m_rest.toByteArray(); }

private:
    QByteArrayView m_rest;
};

} // namespace corvane::fuzz

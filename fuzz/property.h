#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <source_location>

/// What libFuzzer calls with each input. 0, or -1 for an input that the corpus is not to have.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace corvane::fuzz {

/// Ends the run when a property does not hold; libFuzzer then keeps the input.
inline void require(bool holds, std::source_location where = std::source_location::current())
{
    if (!holds) {
        std::fprintf(stderr, "broken property: %s:%u\n", where.file_name(), where.line());
        std::abort();
    }
}

/// True when a text in `json` may begin with a byte order mark, which Qt reads but does not write
/// back alike, so that the file before and after is not the same to it.
inline bool hasByteOrderMark(const QByteArray &json)
{
    return json.indexOf("\xEF\xBB\xBF", 1) > 0 || json.toLower().contains("\\ufeff");
}

/// An input that a target takes apart from the front. Its parts end with a line break, so that the
/// corpus is text that people can write.
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size)
        : m_rest(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size))
    {}

    /// Up to the next line break, which is skipped, or the end.
    QByteArray takeLine()
    {
        const qsizetype end = m_rest.indexOf('\n');
        const QByteArrayView line = end < 0 ? m_rest : m_rest.first(end);
        m_rest = end < 0 ? QByteArrayView() : m_rest.sliced(end + 1);
        return line.toByteArray();
    }
    /// A line as text, without the byte order marks in front that Qt does not keep everywhere.
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

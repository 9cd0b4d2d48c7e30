#include "look/controls/plain_line.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QList>

#include <algorithm>
#include <array>

namespace corvane::look {

namespace {

struct Range
{
    char32_t first;
    char32_t last;
};

/// The characters of Unicode's Default_Ignorable_Code_Point, which fonts draw as nothing, apart
/// from those of the category "format".
constexpr std::array unseen{Range{0x034F, 0x034F},  Range{0x115F, 0x1160}, Range{0x17B4, 0x17B5},
                            Range{0x180B, 0x180F},  Range{0x2065, 0x2065}, Range{0x3164, 0x3164},
                            Range{0xFE00, 0xFE0F},  Range{0xFFA0, 0xFFA0}, Range{0xFFF0, 0xFFF8},
                            Range{0xE0000, 0xE0FFF}};

bool isGap(char32_t character)
{
    return (character >= u'\t' && character <= u'\r') || character == 0x85 ||
           character == QChar::LineSeparator || character == QChar::ParagraphSeparator ||
           character == QChar::ObjectReplacementCharacter;
}

bool isLineBreak(QChar character)
{
    return (character >= u'\n' && character <= u'\r') || character == QChar(0x85) ||
           character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
}

/// What was pasted into `text`, as it ends at `position`; empty if nothing with outer line breaks
/// was. A line of input does not tell that, but only what is pasted brings line breaks, and the
/// clipboard still has it.
QString pastedBefore(qsizetype position, QStringView text)
{
    if (std::ranges::none_of(text, isLineBreak)) {
        return {};
    }
    for (const auto mode : {QClipboard::Clipboard, QClipboard::Selection}) {
        const QString pasted = QGuiApplication::clipboard()->text(mode);
        if (withoutOuterBreaks(pasted) != pasted && text.first(position).endsWith(pasted)) {
            return pasted;
        }
    }
    return {};
}

bool isUnseen(char32_t character)
{
    const QChar::Category category = QChar::category(character);
    return category == QChar::Other_Control || category == QChar::Other_Format ||
           std::ranges::any_of(unseen, [character](const Range &range) {
               return range.first <= character && character <= range.last;
           });
}

} // namespace

QString plainLine(QStringView text)
{
    QString line;
    line.reserve(text.size());
    for (const char32_t character : text.toUcs4()) {
        if (isGap(character)) {
            line += u' ';
        } else if (!isUnseen(character)) {
            line += QChar::fromUcs4(character);
        }
    }
    return line;
}

QStringView withoutOuterBreaks(QStringView text)
{
    while (!text.isEmpty() && isLineBreak(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isLineBreak(text.back())) {
        text.chop(1);
    }
    return text;
}

QValidator::State PlainLine::validate(QString &input, int &position) const
{
    const QString pasted = pastedBefore(position, input);
    const QStringView line(input);
    const QString before =
        plainLine(line.first(position - pasted.size())) + plainLine(withoutOuterBreaks(pasted));
    input = before + plainLine(line.sliced(position));
    position = static_cast<int>(before.size());
    return Acceptable;
}

} // namespace corvane::look

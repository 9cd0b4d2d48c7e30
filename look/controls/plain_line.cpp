#include "look/controls/plain_line.h"

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

QValidator::State PlainLine::validate(QString &input, int &position) const
{
    position = static_cast<int>(plainLine(QStringView(input).first(position)).size());
    input = plainLine(input);
    return Acceptable;
}

} // namespace corvane::look

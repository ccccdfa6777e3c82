// platform/dao/FieldTypes.cpp
// From field types to declared types and back.

#include "platform/dao/FieldTypes.h"

#include <array>

namespace dao::mdlFieldTypes
{

using namespace Qt::StringLiterals;

namespace
{

struct Word
{
    FieldType Type;
    QLatin1StringView Text;
};

/// The first word of a type is the one we write; the others are what other programs write.
constexpr std::array Words = {
    Word{FieldType::Boolean, "BOOLEAN"_L1},
    Word{FieldType::Boolean, "BIT"_L1},
    Word{FieldType::Byte, "BYTE"_L1},
    Word{FieldType::Byte, "TINYINT"_L1},
    Word{FieldType::Integer, "SHORT"_L1},
    Word{FieldType::Integer, "SMALLINT"_L1},
    Word{FieldType::Long, "LONG"_L1},
    Word{FieldType::Long, "INTEGER"_L1},
    Word{FieldType::Long, "INT"_L1},
    Word{FieldType::Currency, "CURRENCY REAL"_L1},
    Word{FieldType::Single, "SINGLE REAL"_L1},
    Word{FieldType::Double, "DOUBLE"_L1},
    Word{FieldType::Double, "REAL"_L1},
    Word{FieldType::Double, "FLOAT"_L1},
    Word{FieldType::Double, "NUMERIC"_L1},
    Word{FieldType::Date, "DATETIME REAL"_L1},
    Word{FieldType::Date, "DATE"_L1},
    Word{FieldType::Date, "TIMESTAMP"_L1},
    Word{FieldType::Binary, "BINARY BLOB"_L1},
    Word{FieldType::Text, "TEXT"_L1},
    Word{FieldType::Text, "VARCHAR"_L1},
    Word{FieldType::Text, "CHAR"_L1},
    Word{FieldType::LongBinary, "LONGBINARY BLOB"_L1},
    Word{FieldType::LongBinary, "BLOB"_L1},
    Word{FieldType::Memo, "MEMO TEXT"_L1},
    Word{FieldType::Memo, "LONGTEXT"_L1},
    Word{FieldType::Guid, "GUID TEXT"_L1},
};

QLatin1StringView WordOf(FieldType Type)
{
    for (const Word& word : Words) {
        if (word.Type == Type)
            return word.Text;
    }
    return {};
}

bool HasSize(FieldType Type) { return Type == FieldType::Text || Type == FieldType::Binary; }

QString FirstWord(QStringView Text)
{
    qsizetype end = 0;
    while (end < Text.size() && (Text[end].isLetterOrNumber() || Text[end] == u'_'))
        ++end;
    return Text.left(end).toString();
}

} // namespace

QString Declared(const FieldDef& Field)
{
    const QString word = QString(WordOf(Field.Type));
    if (!HasSize(Field.Type) || word.isEmpty())
        return word;
    return u"%1(%2)"_s.arg(word).arg(Field.Size > 0 ? Field.Size : MaxTextSize);
}

void Read(const QString& DeclaredType, FieldDef& Field)
{
    const QString wanted = FirstWord(DeclaredType.trimmed());
    Field.Type = FieldType::Memo;
    for (const Word& word : Words) {
        if (FirstWord(QString(word.Text)).compare(wanted, Qt::CaseInsensitive) == 0) {
            Field.Type = word.Type;
            break;
        }
    }
    const QString size = DeclaredType.section(u'(', 1).section(u')', 0, 0);
    Field.Size = HasSize(Field.Type) ? size.toInt() : 0;
    // Other programs declare text without a size or with more characters than a Text field can have.
    if (Field.Type == FieldType::Text && (Field.Size < 1 || Field.Size > MaxTextSize)) {
        Field.Type = FieldType::Memo;
        Field.Size = 0;
    }
}

} // namespace dao::mdlFieldTypes

// platform/jetsql/Value.h
// One value of the engine and the types that fields, columns and parameters can have.

#ifndef JETSQL_VALUE_H
#define JETSQL_VALUE_H

#include <QByteArray>
#include <QString>

#include <variant>

namespace jetsql {

/// Types of fields and values; the numbers are the engine's own.
enum class FieldType {
    Null = 0,
    Boolean = 1,
    Byte = 2,
    Integer = 3,     ///< 16 bits
    Long = 4,        ///< 32 bits
    Currency = 5,
    Single = 6,
    Double = 7,
    Date = 8,        ///< days since 1899-12-30, the fraction is the time of day
    Binary = 9,
    Text = 10,
    LongBinary = 11,
    Memo = 12,
    Guid = 15
};

/// Text or Memo.
constexpr bool IsText(FieldType Type) { return Type == FieldType::Text || Type == FieldType::Memo; }

/// Any type that calculates, Boolean included; Date is not one.
constexpr bool IsNumber(FieldType Type) { return Type >= FieldType::Boolean && Type <= FieldType::Double; }

/// Boolean or a whole number: what the file stores as INTEGER.
constexpr bool IsWhole(FieldType Type) { return Type >= FieldType::Boolean && Type <= FieldType::Long; }

/// Bytes as they are.
constexpr bool IsBytes(FieldType Type) { return Type == FieldType::Binary || Type == FieldType::LongBinary; }

/// One value with its type. Regular: copied, compared, assigned; text is shared.
class Value
{
public:
    /// Null.
    Value() = default;

    static Value FromBoolean(bool Data);
    static Value FromByte(int Data);        ///< 0..255, else Error 6
    static Value FromInteger(int Data);     ///< -32768..32767, else Error 6
    static Value FromLong(qint32 Data);
    static Value FromCurrency(double Data); ///< rounded to four places
    static Value FromSingle(float Data);
    static Value FromDouble(double Data);
    static Value FromDate(double Data);     ///< days since 1899-12-30
    static Value FromText(QString Data);
    static Value FromMemo(QString Data);
    static Value FromBytes(QByteArray Data, FieldType Type = FieldType::Binary);

    FieldType Type() const { return m_type; }
    bool IsNull() const { return m_type == FieldType::Null; }

    /// True for any number but 0 and for a text that says so; Null is False. Error 13 for other text.
    bool ToBoolean() const;
    /// Rounded half to even; Null is 0. Error 6 out of range, 13 for text that is no number.
    qint32 ToLong() const;
    /// Null is 0, a date its serial number. Error 13 for text that is no number.
    double ToDouble() const;
    /// A text that reads as a date is one, a number is days. Error 13 for other text, 6 outside the years 100 to 9999.
    double ToDate() const;
    /// Null is empty, a Boolean "True" / "False", a date as "2002/01/15 9:05:00", numbers plain, bytes as "0x00FF".
    QString ToText() const;

    /// The value as a field of type Wanted takes it; Null stays Null, and Wanted Null leaves the value as it is.
    /// Whole numbers are rounded half to even. Text becomes the bytes that "0x00FF" writes, or else its own in code page
    /// 932; a Guid is the text "{…}" in capital letters. Error 3421 where text does not convert, 6 where a number does
    /// not fit.
    Value ToType(FieldType Wanted) const;

    /// Text without making a copy where the value is text; empty for everything else.
    const QString& TextRef() const;
    /// The bytes of such a value; empty for everything else.
    const QByteArray& BytesRef() const;
    /// What the file stores for Boolean (-1 or 0), Byte, Integer and Long; 0 for everything else.
    qint32 WholePart() const;
    /// What the file stores for Currency, Single, Double and Date; the whole number for whole types, 0 for the rest.
    double RealPart() const;

    /// Same type and same value; text by code units.
    bool operator==(const Value& Other) const = default;

private:
    using Data = std::variant<std::monostate, qint32, double, QString, QByteArray>;
    Value(FieldType Type, Data Content) : m_type(Type), m_data(std::move(Content)) {}

    Value Converted(FieldType Wanted) const;
    QByteArray ToBytes() const;

    FieldType m_type = FieldType::Null;
    Data m_data;
};

}

#endif

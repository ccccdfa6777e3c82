// platform/jetsql/Value.cpp
// One value of the engine and the types that fields, columns and parameters can have.

#include "platform/jetsql/Value.h"

#include "platform/jetsql/Error.h"
#include "platform/text/Codepage932.h"
#include "platform/text/DateTime.h"
#include "platform/text/Format.h"
#include "platform/text/Number.h"

#include <QUuid>

#include <cmath>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr double MaxCurrency = 922337203685477.5807;   // 64 bits in ten-thousandths

qint32 RoundToWhole(double Number, double Lowest, double Highest)
{
    const double rounded = std::nearbyint(Number);   // the rounding mode of a program at rest: half to even
    if (!(rounded >= Lowest && rounded <= Highest))
        throw MakeError(6);
    return static_cast<qint32>(rounded);
}

// Error 6 for what is beyond Highest at either side of 0.
double Checked(double Number, double Highest)
{
    if (!(std::fabs(Number) <= Highest))
        throw MakeError(6);
    return Number;
}

// Four places, of which a Double holds all up to twelve digits before the point; the zeros at the end are left out.
QString CurrencyToText(double Amount)
{
    constexpr double exact = 9e11;
    if (std::fabs(Amount) >= exact)
        return text::NumberToText(Amount);
    QString digits = QString::number(Amount, 'f', 4);
    while (digits.endsWith(u'0'))
        digits.chop(1);
    if (digits.endsWith(u'.'))
        digits.chop(1);
    return digits == u"-0" ? u"0"_s : digits;
}

// The fraction counts forward also before day 0: the first day reaches down to the number below its own.
double CheckedDate(double Serial)
{
    if (!(Serial > double(text::MinDay - 1) && Serial < double(text::MaxDay + 1)))
        throw MakeError(6);
    return Serial;
}

/// The bytes of "0x00FF"; nothing for another text.
std::optional<QByteArray> WrittenBytes(const QString& Text)
{
    if (!Text.startsWith(u"0x"_s, Qt::CaseInsensitive))
        return std::nullopt;
    const QByteArray digits = Text.mid(2).toLatin1().toUpper();
    const QByteArray bytes = QByteArray::fromHex(digits);
    if (bytes.toHex().toUpper() != digits)
        return std::nullopt;
    return bytes;
}

QString GuidText(const QString& Text)
{
    const QUuid guid = QUuid::fromString(Text.trimmed());
    if (guid.isNull() && QUuid().toString() != Text.trimmed())
        throw MakeError(3421);
    return guid.toString().toUpper();
}

}

Value Value::FromBoolean(bool Data) { return {FieldType::Boolean, Data ? -1 : 0}; }
Value Value::FromByte(int Data) { return {FieldType::Byte, RoundToWhole(Data, 0, 255)}; }
Value Value::FromInteger(int Data) { return {FieldType::Integer, RoundToWhole(Data, -32768, 32767)}; }
Value Value::FromLong(qint32 Data) { return {FieldType::Long, Data}; }
Value Value::FromCurrency(double Data) { return {FieldType::Currency, std::nearbyint(Data * 10000.0) / 10000.0}; }
Value Value::FromSingle(float Data) { return {FieldType::Single, double(Data)}; }
Value Value::FromDouble(double Data) { return {FieldType::Double, Data}; }
Value Value::FromDate(double Data) { return {FieldType::Date, Data}; }
Value Value::FromText(QString Data) { return {FieldType::Text, std::move(Data)}; }
Value Value::FromMemo(QString Data) { return {FieldType::Memo, std::move(Data)}; }
Value Value::FromBytes(QByteArray Data, FieldType Type) { return {Type, std::move(Data)}; }

bool Value::ToBoolean() const
{
    if (!IsText(m_type))
        return ToDouble() != 0.0;
    if (const auto read = text::TextToBoolean(TextRef()))
        return *read;
    throw MakeError(13);
}

qint32 Value::ToLong() const
{
    if (std::holds_alternative<qint32>(m_data))
        return std::get<qint32>(m_data);
    return RoundToWhole(ToDouble(), std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
}

double Value::ToDouble() const
{
    if (IsBytes(m_type))
        throw MakeError(13);
    if (!IsText(m_type))
        return RealPart();
    if (const auto read = text::TextToDouble(TextRef()))
        return *read;
    throw MakeError(text::HasNumberForm(TextRef()) ? 6 : 13);
}

double Value::ToDate() const
{
    if (!IsText(m_type))
        return CheckedDate(ToDouble());
    if (const auto read = text::TextToDate(TextRef()))
        return *read;
    throw MakeError(13);
}

QString Value::ToText() const
{
    switch (m_type) {
    case FieldType::Boolean: return WholePart() ? u"True"_s : u"False"_s;
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long: return QString::number(WholePart());
    case FieldType::Single: return text::SingleToText(static_cast<float>(RealPart()));
    case FieldType::Currency: return CurrencyToText(RealPart());
    case FieldType::Double: return text::NumberToText(RealPart());
    case FieldType::Date: return text::GeneralDate(RealPart());
    case FieldType::Binary:
    case FieldType::LongBinary: return u"0x"_s + QString::fromLatin1(BytesRef().toHex().toUpper());
    default: return TextRef();
    }
}

Value Value::ToType(FieldType Wanted) const
{
    if (IsNull() || Wanted == m_type || Wanted == FieldType::Null)
        return *this;
    try {
        return Converted(Wanted);
    } catch (const Error& refused) {
        throw refused.Number == 13 ? MakeError(3421) : refused;
    }
}

Value Value::Converted(FieldType Wanted) const
{
    switch (Wanted) {
    case FieldType::Boolean: return FromBoolean(ToBoolean());
    case FieldType::Byte: return FromByte(ToLong());
    case FieldType::Integer: return FromInteger(ToLong());
    case FieldType::Long: return FromLong(ToLong());
    case FieldType::Currency: return FromCurrency(Checked(ToDouble(), MaxCurrency));
    case FieldType::Single: return FromSingle(static_cast<float>(Checked(ToDouble(), double(std::numeric_limits<float>::max()))));
    case FieldType::Double: return FromDouble(ToDouble());
    case FieldType::Date: return FromDate(ToDate());
    // A Boolean is a number where SQL turns it into text; its words are for the reader's eye only.
    case FieldType::Text: return FromText(m_type == FieldType::Boolean ? QString::number(WholePart()) : ToText());
    case FieldType::Memo: return FromMemo(m_type == FieldType::Boolean ? QString::number(WholePart()) : ToText());
    case FieldType::Binary:
    case FieldType::LongBinary: return FromBytes(ToBytes(), Wanted);
    case FieldType::Guid: return FromText(GuidText(TextRef()));
    default: throw MakeError(3421);
    }
}

QByteArray Value::ToBytes() const
{
    if (IsBytes(m_type))
        return BytesRef();
    if (!IsText(m_type))
        throw MakeError(3421);
    const QString& text = TextRef();
    if (const auto written = WrittenBytes(text))
        return *written;
    const QByteArray bytes = text::To932(text);
    if (text::From932(bytes) != text)
        throw MakeError(3421);
    return bytes;
}

const QByteArray& Value::BytesRef() const
{
    static const QByteArray none;
    const QByteArray* bytes = std::get_if<QByteArray>(&m_data);
    return bytes ? *bytes : none;
}

const QString& Value::TextRef() const
{
    static const QString none;
    const QString* text = std::get_if<QString>(&m_data);
    return text ? *text : none;
}

qint32 Value::WholePart() const
{
    const qint32* whole = std::get_if<qint32>(&m_data);
    return whole ? *whole : 0;
}

double Value::RealPart() const
{
    const double* real = std::get_if<double>(&m_data);
    return real ? *real : WholePart();
}

}

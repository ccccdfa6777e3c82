// platform/text/Number.cpp
// One reader for all numbers in text; the types differ in their range and rounding only.

#include "platform/text/Number.h"

#include "platform/text/Fold.h"

#include <QByteArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace text
{

namespace
{

enum class Fault { None, NotANumber, TooLarge };

struct Reading
{
    Fault What = Fault::NotANumber;
    double Value = 0;
};

constexpr bool IsDigit(QChar Unit) { return Unit >= u'0' && Unit <= u'9'; }

bool IsBlank(QChar Unit)
{
    return Unit == u' ' || (Unit >= u'\t' && Unit <= u'\r') || Unit == QChar(0xA0) || Unit == QChar(0x3000);
}

QStringView Trimmed(QStringView Text)
{
    while (!Text.isEmpty() && IsBlank(Text.front()))
        Text = Text.sliced(1);
    while (!Text.isEmpty() && IsBlank(Text.back()))
        Text.chop(1);
    return Text;
}

/// Places before the decimal point that Digits would have written out in full; 0 or less for 0.… numbers.
qint64 Magnitude(const QByteArray& Digits)
{
    constexpr qint64 far = 1'000'000'000; // no text is that long
    const qsizetype e = Digits.indexOf('e');
    const QByteArray mantissa = e < 0 ? Digits : Digits.left(e);
    bool isNumber = true;
    qint64 exponent = e < 0 ? 0 : Digits.mid(e + 1).toLongLong(&isNumber);
    if (!isNumber)
        exponent = Digits[e + 1] == '-' ? -far : far;
    const qsizetype point = mantissa.contains('.') ? mantissa.indexOf('.') : mantissa.size();
    const auto first = std::find_if(mantissa.begin(), mantissa.end(), [](char Unit) { return Unit > '0'; });
    const qsizetype place = first - mantissa.begin();
    return std::clamp(exponent, -far, far) + point - place + (place > point ? 1 : 0);
}

/// Digits has the form [digits][.digits][e[-]digits].
Reading FromDigits(const QByteArray& Digits)
{
    double value = 0;
    const auto [end, error] = std::from_chars(Digits.begin(), Digits.end(), value);
    if (error == std::errc())
        return {Fault::None, value};
    // Out of range is either beyond the largest or closer to 0 than the smallest; only the former is an error.
    return {Magnitude(Digits) > 0 ? Fault::TooLarge : Fault::None, 0};
}

/// &H and &O numbers are 32 bits wide, the highest being the sign.
Reading FromRadix(QStringView Digits, int Radix)
{
    quint64 value = 0;
    if (Digits.isEmpty())
        return {};
    for (const QChar digit : Digits) {
        const int place = static_cast<int>(QStringView(u"0123456789abcdef").indexOf(digit));
        if (place < 0 || place >= Radix)
            return {};
        value = std::min<quint64>(value * static_cast<unsigned>(Radix) + static_cast<unsigned>(place), 1ull << 40);
    }
    if (value > std::numeric_limits<quint32>::max())
        return {Fault::TooLarge, 0};
    return {Fault::None, static_cast<double>(static_cast<qint32>(value))};
}

/// Reads one folded number from left to right.
class CNumberReader
{
public:
    explicit CNumberReader(QStringView Folded)
        : m_rest(Folded)
    {}

    Reading Read();

private:
    bool Take(QChar Unit);
    bool ReadFront();
    bool ReadDigits();
    bool ReadExponent();
    bool ReadBack();

    QStringView m_rest;
    QByteArray m_digits;
    bool m_hasSign = false;
    bool m_isNegative = false;
    bool m_isInParentheses = false;
};

bool CNumberReader::Take(QChar Unit)
{
    if (!m_rest.startsWith(Unit))
        return false;
    m_rest = m_rest.sliced(1);
    return true;
}

bool CNumberReader::ReadFront()
{
    for (bool hasYen = false;;) {
        const bool isMinus = m_rest.startsWith(u'-');
        if (Take(u'-') || Take(u'+')) {
            if (m_hasSign)
                return false;
            m_hasSign = true;
            m_isNegative = isMinus;
        } else if (Take(u'(')) {
            if (m_hasSign)
                return false;
            m_hasSign = m_isNegative = m_isInParentheses = true;
        } else if (Take(u'\\') || Take(QChar(0xA5))) {
            if (hasYen)
                return false;
            hasYen = true;
        } else if (!m_rest.isEmpty() && IsBlank(m_rest.front())) {
            m_rest = m_rest.sliced(1);
        } else {
            return true;
        }
    }
}

bool CNumberReader::ReadDigits()
{
    bool hasDigit = false;
    bool hasPoint = false;
    for (; !m_rest.isEmpty(); m_rest = m_rest.sliced(1)) {
        const QChar unit = m_rest.front();
        if (IsDigit(unit)) {
            m_digits.append(unit.toLatin1());
            hasDigit = true;
        } else if (unit == u'.' && !hasPoint) {
            m_digits.append('.');
            hasPoint = true;
        } else if (unit != u',' || !hasDigit || hasPoint) {
            break;
        }
    }
    return hasDigit;
}

bool CNumberReader::ReadExponent()
{
    if (!Take(u'e') && !Take(u'd'))
        return true;
    m_digits.append('e');
    if (Take(u'-'))
        m_digits.append('-');
    else
        Take(u'+');
    const qsizetype size = m_digits.size();
    for (; !m_rest.isEmpty() && IsDigit(m_rest.front()); m_rest = m_rest.sliced(1))
        m_digits.append(m_rest.front().toLatin1());
    return m_digits.size() > size;
}

bool CNumberReader::ReadBack()
{
    m_rest = Trimmed(m_rest);
    if (m_isInParentheses && !Take(u')'))
        return false;
    if (!m_hasSign && Take(u'-'))
        m_isNegative = true;
    else if (!m_hasSign)
        Take(u'+');
    return m_rest.isEmpty();
}

Reading CNumberReader::Read()
{
    if (m_rest.startsWith(u"&h"))
        return FromRadix(m_rest.sliced(2), 16);
    if (m_rest.startsWith(u"&o"))
        return FromRadix(m_rest.sliced(2), 8);
    if (!ReadFront() || !ReadDigits() || !ReadExponent() || !ReadBack())
        return {};
    Reading reading = FromDigits(m_digits);
    if (m_isNegative)
        reading.Value = -reading.Value;
    return reading;
}

Reading ReadNumber(QStringView Text)
{
    const QStringView trimmed = Trimmed(Text);
    return IsFolded(trimmed) ? CNumberReader(trimmed).Read() : CNumberReader(Fold(trimmed)).Read();
}

/// Halves go to the even neighbour.
template<typename Integer> std::optional<Integer> RoundTo(std::optional<double> Value)
{
    if (!Value)
        return std::nullopt;
    const double rounded = std::nearbyint(*Value);
    if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max()))
        return std::nullopt;
    return static_cast<Integer>(rounded);
}

} // namespace

std::optional<double> TextToDouble(QStringView Text)
{
    const Reading reading = ReadNumber(Text);
    return reading.What == Fault::None ? std::optional(reading.Value) : std::nullopt;
}

std::optional<qint32> TextToLong(QStringView Text) { return RoundTo<qint32>(TextToDouble(Text)); }

std::optional<qint16> TextToInteger(QStringView Text) { return RoundTo<qint16>(TextToDouble(Text)); }

std::optional<float> TextToSingle(QStringView Text)
{
    const std::optional<double> value = TextToDouble(Text);
    if (!value || std::abs(*value) > std::numeric_limits<float>::max())
        return std::nullopt;
    return static_cast<float>(*value);
}

std::optional<bool> TextToBoolean(QStringView Text)
{
    if (Text.compare(u"True", Qt::CaseInsensitive) == 0 || Text == u"#TRUE#")
        return true;
    if (Text.compare(u"False", Qt::CaseInsensitive) == 0 || Text == u"#FALSE#")
        return false;
    const std::optional<double> value = TextToDouble(Text);
    return value ? std::optional(*value != 0) : std::nullopt;
}

bool IsNumeric(QStringView Text) { return TextToDouble(Text).has_value(); }

bool HasNumberForm(QStringView Text) { return ReadNumber(Text).What != Fault::NotANumber; }

namespace
{

/// The part of Text that Val may look at; what stands behind the first unit that belongs to no number is not read.
QString ValText(QStringView Text)
{
    QString kept;
    for (const QChar unit : Text) {
        if (unit == u' ' || unit == u'\t' || unit == u'\n')
            continue;
        if (unit.unicode() > 0x7F || !QStringView(u"0123456789abcdefhoABCDEFHO.+-&").contains(unit))
            break;
        kept.append(unit.toLower());
    }
    return kept;
}

double RadixVal(QStringView Digits, int Radix)
{
    quint64 value = 0;
    qsizetype used = 0;
    for (; used < Digits.size(); ++used) {
        const int place = static_cast<int>(QStringView(u"0123456789abcdef").indexOf(Digits[used]));
        if (place < 0 || place >= Radix || value > (1ull << 56))
            break;
        value = value * static_cast<unsigned>(Radix) + static_cast<unsigned>(place);
    }
    const bool isLong = used < Digits.size() && Digits[used] == u'&';
    if (value <= std::numeric_limits<quint16>::max() && !isLong)
        return static_cast<qint16>(value);
    if (value <= std::numeric_limits<quint32>::max())
        return static_cast<qint32>(value);
    return static_cast<double>(value);
}

/// How long the number at the start of Text is; Digits gets it in the form that FromDigits reads, without its sign.
QByteArray LeadingDigits(QStringView Text)
{
    QByteArray digits;
    bool hasDigit = false;
    qsizetype place = 0;
    const auto at = [&](qsizetype Place) { return Place < Text.size() ? Text[Place] : QChar(); };
    for (; IsDigit(at(place)) || (at(place) == u'.' && !digits.contains('.')); ++place) {
        hasDigit = hasDigit || at(place) != u'.';
        digits.append(at(place).toLatin1());
    }
    if (!hasDigit || (at(place) != u'e' && at(place) != u'd'))
        return hasDigit ? digits : QByteArray();
    const bool hasSign = at(place + 1) == u'-' || at(place + 1) == u'+';
    qsizetype exponent = place + (hasSign ? 2 : 1);
    if (!IsDigit(at(exponent)))
        return digits;
    digits.append(hasSign && at(place + 1) == u'-' ? "e-" : "e");
    for (; IsDigit(at(exponent)); ++exponent)
        digits.append(at(exponent).toLatin1());
    return digits;
}

} // namespace

double Val(QStringView Text)
{
    const QString kept = ValText(Text);
    QStringView rest(kept);
    if (rest.startsWith(u"&h"))
        return RadixVal(rest.sliced(2), 16);
    if (rest.startsWith(u"&o"))
        return RadixVal(rest.sliced(2), 8);
    const bool isNegative = rest.startsWith(u'-');
    if (isNegative || rest.startsWith(u'+'))
        rest = rest.sliced(1);
    const QByteArray digits = LeadingDigits(rest);
    if (digits.isEmpty())
        return 0;
    const Reading reading = FromDigits(digits);
    const double value = reading.What == Fault::TooLarge ? std::numeric_limits<double>::infinity() : reading.Value;
    return isNegative ? -value : value;
}

} // namespace text

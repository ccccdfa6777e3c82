// platform/text/FormatNumberPattern.cpp
// Writes one number by a pattern of digit places.

#include "platform/text/FormatParts.h"

#include <algorithm>
#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;

namespace text
{

namespace
{

constexpr int Precision = 15; // digits of a double that mean something

/// Value as decimal digits with Point of them before the decimal point (0 or less: zeros follow the point first).
struct Decimal
{
    std::vector<char> Digits; // 0 to 9, empty for 0
    int Point = 0;

    char At(int Place) const // counted from the point, 0 being the first behind it
    {
        const int index = Place + Point;
        return index >= 0 && index < static_cast<int>(Digits.size()) ? Digits[static_cast<std::size_t>(index)]
                                                                     : char(0);
    }
    bool IsZero() const { return Digits.empty(); }
};

Decimal ToDecimal(double Value)
{
    Decimal decimal;
    if (Value == 0)
        return decimal;
    const QByteArray text = QByteArray::number(Value, 'e', Precision - 1);
    const qsizetype e = text.indexOf('e');
    for (const char unit : text.left(e)) {
        if (unit != '.')
            decimal.Digits.push_back(static_cast<char>(unit - '0'));
    }
    decimal.Point = text.mid(e + 1).toInt() + 1;
    return decimal;
}

/// Cuts behind Places digits after the point, halves away from zero. Works on decimal digits: 1.005 to two places is
/// 1.01 as users expect, although the double is a little below.
void RoundTo(Decimal& Value, int Places)
{
    const int kept = std::max(Value.Point + Places, -1);
    if (kept >= static_cast<int>(Value.Digits.size()))
        return;
    const bool isUp = kept >= 0 && Value.Digits[static_cast<std::size_t>(kept)] >= 5;
    Value.Digits.resize(static_cast<std::size_t>(std::max(kept, 0)));
    if (isUp) {
        auto digit = Value.Digits.rbegin();
        for (; digit != Value.Digits.rend() && *digit == 9; ++digit)
            *digit = 0;
        if (digit != Value.Digits.rend()) {
            ++*digit;
        } else {
            Value.Digits.insert(Value.Digits.begin(), 1);
            ++Value.Point;
        }
    }
    if (std::all_of(Value.Digits.begin(), Value.Digits.end(), [](char Digit) { return Digit == 0; }))
        Value.Digits.clear();
}

enum class Kind { Zero, Digit, Point, Literal, Exponent };

struct Token
{
    Kind What;
    QString Text; // of a literal, and of an exponent as written
};

/// One of the parts of a pattern, taken apart.
struct Section
{
    std::vector<Token> Tokens;
    int IntegerPlaces = 0;
    int DecimalPlaces = 0;
    int ExponentZeros = 0;
    int Percents = 0;
    int Thousandths = 0; // commas that divide by 1000 each
    bool HasThousands = false;
    bool HasExponent = false;
};

bool IsExponent(QStringView Rest)
{
    return Rest.size() >= 2 && Rest[0].toLower() == u'e' && (Rest[1] == u'+' || Rest[1] == u'-');
}

/// Reads the sections of a pattern one after the other.
class CSectionReader
{
public:
    explicit CSectionReader(QStringView Pattern)
        : m_pattern(Pattern)
    {}

    std::vector<Section> Read();

private:
    void ReadNext(Section& To);
    void ReadPlace(Section& To, Kind What);
    void EndInteger(Section& To);
    void ReadExponent(Section& To);

    QStringView m_pattern;
    qsizetype m_place = 0;
    bool m_isBehindPoint = false;
    int m_commas = 0; // behind the last integer place so far
};

std::vector<Section> CSectionReader::Read()
{
    std::vector<Section> sections(1);
    while (m_place < m_pattern.size()) {
        if (m_pattern[m_place] == u';') {
            ++m_place;
            EndInteger(sections.back());
            sections.emplace_back();
            m_isBehindPoint = false;
        } else {
            ReadNext(sections.back());
        }
    }
    EndInteger(sections.back());
    return sections;
}

void CSectionReader::ReadNext(Section& To)
{
    QString literal;
    if (const qsizetype length = TakeLiteral(m_pattern, m_place, literal); length > 0) {
        m_place += length;
        To.Tokens.push_back({Kind::Literal, literal});
        return;
    }
    if (IsExponent(m_pattern.sliced(m_place)) && To.IntegerPlaces + To.DecimalPlaces > 0 && !To.HasExponent)
        return ReadExponent(To);
    const QChar unit = m_pattern[m_place++];
    if (unit == u'0' || unit == u'#') {
        ReadPlace(To, unit == u'0' ? Kind::Zero : Kind::Digit);
    } else if (unit == u'.' && !m_isBehindPoint) {
        m_isBehindPoint = true;
        EndInteger(To);
        To.Tokens.push_back({Kind::Point, {}});
    } else if (unit == u',' && To.IntegerPlaces > 0) {
        ++m_commas;
    } else {
        To.Percents += unit == u'%' ? 1 : 0;
        To.Tokens.push_back({Kind::Literal, QString(unit)});
    }
}

void CSectionReader::ReadPlace(Section& To, Kind What)
{
    To.HasThousands |= m_commas > 0 && !m_isBehindPoint;
    m_commas = 0;
    ++(m_isBehindPoint ? To.DecimalPlaces : To.IntegerPlaces);
    To.Tokens.push_back({What, {}});
}

/// A comma between two places parts the thousands; one behind the last place leaves three digits away.
void CSectionReader::EndInteger(Section& To)
{
    To.Thousandths += m_isBehindPoint && To.DecimalPlaces > 0 ? 0 : m_commas;
    m_commas = 0;
}

void CSectionReader::ReadExponent(Section& To)
{
    To.HasExponent = true;
    To.Tokens.push_back({Kind::Exponent, m_pattern.sliced(m_place, 2).toString()});
    for (m_place += 2; m_place < m_pattern.size(); ++m_place) {
        const QChar unit = m_pattern[m_place];
        if (unit != u'0' && unit != u'#')
            break;
        To.ExponentZeros += unit == u'0' ? 1 : 0;
    }
}

/// Writes a number of at least 0 by one section.
class CNumberWriter
{
public:
    CNumberWriter(double Value, const Section& How)
        : m_value(ToDecimal(Value))
        , m_how(How)
    {
        Scale();
    }

    bool IsZero() const { return m_value.IsZero(); }
    QString Write();

private:
    void Scale();
    void WriteIntegerPlace(Kind What);
    void WriteDecimalPlace(Kind What);
    void WriteDigit(char Digit, int PlacesBehind);
    void WriteExponent(const QString& Sign);

    Decimal m_value;
    const Section& m_how;
    QString m_text;
    int m_exponent = 0;
    int m_placesLeft = 0; // integer places still to come
    int m_decimals = 0;   // decimal places written
    bool m_hasInteger = false;
};

void CNumberWriter::Scale()
{
    if (m_value.IsZero())
        return;
    m_value.Point += 2 * m_how.Percents - 3 * m_how.Thousandths;
    if (!m_how.HasExponent)
        return RoundTo(m_value, m_how.DecimalPlaces);
    m_exponent = m_value.Point - m_how.IntegerPlaces;
    m_value.Point = m_how.IntegerPlaces;
    RoundTo(m_value, m_how.DecimalPlaces);
    if (m_value.Point > m_how.IntegerPlaces) { // 9.99 has become 10.0
        --m_value.Point;
        ++m_exponent;
    }
}

QString CNumberWriter::Write()
{
    m_placesLeft = m_how.IntegerPlaces;
    bool isBehindPoint = false;
    for (const Token& token : m_how.Tokens) {
        switch (token.What) {
        case Kind::Literal:
            m_text += token.Text;
            break;
        case Kind::Exponent:
            WriteExponent(token.Text);
            break;
        case Kind::Point:
            // A pattern such as ".00" has no place for the digits before the point; they are shown all the same.
            if (m_how.IntegerPlaces == 0 && m_value.Point > 0)
                WriteIntegerPlace(Kind::Digit);
            isBehindPoint = true;
            m_text += u'.';
            break;
        default:
            isBehindPoint ? WriteDecimalPlace(token.What) : WriteIntegerPlace(token.What);
        }
    }
    return m_text;
}

/// The first place takes every digit that has no place of its own.
void CNumberWriter::WriteIntegerPlace(Kind What)
{
    const int behind = std::max(m_placesLeft - 1, 0); // places to the right of this one
    const bool isFirst = m_placesLeft == m_how.IntegerPlaces;
    m_placesLeft = behind;
    if (isFirst) {
        for (int place = m_value.Point; place > behind + 1; --place)
            WriteDigit(m_value.At(-place), place - 1);
    }
    if (m_value.Point > behind || What == Kind::Zero || m_hasInteger)
        WriteDigit(m_value.At(-behind - 1), behind);
}

void CNumberWriter::WriteDigit(char Digit, int PlacesBehind)
{
    m_text += QChar(u'0' + Digit);
    m_hasInteger = true;
    if (m_how.HasThousands && PlacesBehind > 0 && PlacesBehind % 3 == 0)
        m_text += u',';
}

void CNumberWriter::WriteDecimalPlace(Kind What)
{
    const int behind = static_cast<int>(m_value.Digits.size()) - m_value.Point - m_decimals; // digits still to come
    bool isLeft = What == Kind::Zero;
    for (int place = m_decimals; !isLeft && place < m_decimals + behind; ++place)
        isLeft = m_value.At(place) != 0;
    if (isLeft)
        m_text += QChar(u'0' + m_value.At(m_decimals));
    ++m_decimals;
}

void CNumberWriter::WriteExponent(const QString& Sign)
{
    m_text += Sign[0];
    if (m_exponent < 0)
        m_text += u'-';
    else if (Sign[1] == u'+')
        m_text += u'+';
    m_text += u"%1"_s.arg(std::abs(m_exponent), m_how.ExponentZeros, 10, QChar(u'0'));
}

bool IsEmpty(const Section& What) { return What.Tokens.empty(); }

} // namespace

QString WriteNumber(double Value, QStringView Pattern)
{
    const std::vector<Section> sections = CSectionReader(Pattern).Read();
    const bool hasNegative = sections.size() > 1 && !IsEmpty(sections[1]);
    const bool hasZero = sections.size() > 2 && !IsEmpty(sections[2]);
    const Section* section = &sections[0];
    if (Value < 0 && hasNegative)
        section = &sections[1];
    else if (Value == 0 && hasZero)
        section = &sections[2];
    CNumberWriter writer(std::abs(Value), *section);
    const bool needsMinus = Value < 0 && !hasNegative && !writer.IsZero();
    return (needsMinus ? u"-"_s : QString()) + writer.Write();
}

} // namespace text

// platform/jetsql/CTokens.cpp
// The words and signs of a statement's key, each with its place in the statement.

#include "platform/jetsql/CTokens.h"

#include "platform/jetsql/CShaper.h"
#include "platform/jetsql/Characters.h"

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr qsizetype ShownLength = 60;

FieldType LiteralType(char16_t Unit)
{
    switch (Unit) {
    case Placeholder::Text: return FieldType::Text;
    case Placeholder::Long: return FieldType::Long;
    case Placeholder::Double: return FieldType::Double;
    default: return FieldType::Date;
    }
}

}

CTokens::CTokens(const Shape& Taken) : m_key(Taken.Key), m_literals(Taken.Literals), m_offsets(Taken.Offsets)
{
    int at = 0;
    for (;;) {
        const int begin = at;
        while (at < m_key.size() && IsBlank(m_key[at].unicode()))
            ++at;
        if (at == m_key.size() || m_key[at] == QChar(Placeholder::Equals))
            break;
        Add(at);
        m_tokens.back().Touches = m_tokens.back().Begin == begin;
    }
    m_equals = m_key.mid(at + 1);
    Token end;
    end.Begin = end.End = at;
    end.Offset = at + m_shift;
    m_tokens.push_back(end);
}

void CTokens::Add(int& At)
{
    Token token;
    token.Begin = At;
    token.Offset = At + m_shift;
    const char16_t unit = m_key[At].unicode();
    const CharClass unitClass = ClassOf(unit);
    if (unit >= Placeholder::Text && unit <= Placeholder::Date) {
        token.What = Token::Kind::Literal;
        token.Type = LiteralType(unit);
        token.Literal = m_literalCount++;
        m_shift = m_offsets[2 * size_t(token.Literal) + 1] - ++At;
    } else if (unitClass == CharClass::Bracket || unitClass == CharClass::BackQuote) {
        AddEnclosed(token, At);
    } else if (unitClass == CharClass::Letter || unitClass == CharClass::Digit) {
        token.What = unitClass == CharClass::Letter ? Token::Kind::Word : Token::Kind::Number;
        const auto goesOn = [&] { return unitClass == CharClass::Letter ? IsNameUnit(m_key[At].unicode()) : IsDigit(m_key[At].unicode()); };
        while (At < m_key.size() && goesOn())
            ++At;
        token.Text = QStringView(m_key).mid(token.Begin, At - token.Begin);
        token.Key = KeywordOf(token.Text);
    } else {
        AddSign(token, At);
    }
    token.End = At;
    m_tokens.push_back(token);
}

void CTokens::AddEnclosed(Token& What, int& At)
{
    const int size = int(EnclosedSize(QStringView(m_key).mid(At)));
    What.What = Token::Kind::Name;
    What.Text = QStringView(m_key).mid(At + 1, size - 2);
    At += size;
}

void CTokens::AddSign(Token& What, int& At)
{
    const char16_t unit = m_key[At++].unicode();
    const char16_t next = At < m_key.size() ? m_key[At].unicode() : u'\0';
    What.What = Token::Kind::Sign;
    What.Mark = Sign(unit);
    if (unit == u'<' && (next == u'>' || next == u'=')) {
        What.Mark = next == u'>' ? Sign::NotEqual : Sign::LessEqual;
        ++At;
    } else if (unit == u'>' && next == u'=') {
        What.Mark = Sign::GreaterEqual;
        ++At;
    }
}

int CTokens::FirstEqual(int Literal) const
{
    return Literal < m_equals.size() ? m_equals[Literal].unicode() : Literal;
}

QString CTokens::ShownLiteral(int Literal) const
{
    const Value& value = LiteralValue(Literal);
    switch (value.Type()) {
    case FieldType::Text: return u'\'' + value.TextRef().left(ShownLength).replace(u'\'', u"''"_s) + u'\'';
    case FieldType::Date: return u'#' + value.ToText() + u'#';
    default: return value.ToText();
    }
}

QString CTokens::Shown(int First, int Last) const
{
    QString shown;
    int at = (*this)[First].Begin;
    for (int i = First; i <= std::min(Last, Count() - 1) && shown.size() <= ShownLength; ++i) {
        const Token& token = (*this)[i];
        const bool isLiteral = token.What == Token::Kind::Literal;
        shown += QStringView(m_key).mid(at, (isLiteral ? token.Begin : token.End) - at);
        if (isLiteral)
            shown += ShownLiteral(token.Literal);
        at = token.End;
    }
    if (shown.size() > ShownLength)
        shown = shown.left(ShownLength) + u'…';
    return shown.simplified();
}

}

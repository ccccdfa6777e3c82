// query/mdlStatementParts.cpp
// The parts of a statement that its box draws in colours, line by line.

#include "query/mdlStatementParts.h"

#include "platform/jetsql/Characters.h"
#include "platform/jetsql/FunctionTable.h"
#include "platform/jetsql/Keyword.h"

#include <algorithm>

namespace mdlStatementParts
{

namespace
{

using jetsql::CharClass;

QChar CloserOf(Open What)
{
    switch (What) {
    case Open::SingleQuote:
        return u'\'';
    case Open::DoubleQuote:
        return u'"';
    case Open::Bracket:
        return u']';
    default:
        return u'`';
    }
}

/// The engine's own tokens want a statement without a fault in it; what is being typed has one most of the time.
class CReader
{
public:
    explicit CReader(QStringView Text)
        : m_text(Text)
    {}

    Line Read(Open AtBegin)
    {
        if (AtBegin != Open::Nothing)
            Enclosed(AtBegin, 0);
        while (!AtEnd())
            Next();
        return std::move(m_line);
    }

private:
    bool AtEnd() const { return m_at >= m_text.size(); }
    char16_t Peek(qsizetype Ahead = 0) const
    {
        return m_at + Ahead < m_text.size() ? m_text[m_at + Ahead].unicode() : u'\0';
    }
    void Put(qsizetype Begin, Part What) { m_line.Runs.push_back({int(Begin), int(m_at - Begin), What}); }

    void Next();
    void Enclosed(Open What, qsizetype Begin);
    void Bracket();
    void Date();
    bool Qualifies() const;
    void Digits();
    void Number();
    void Word();
    bool IsKeyword(QStringView Word, qsizetype Begin) const;
    QStringView Ahead() const;

    QStringView m_text;
    qsizetype m_at = 0;
    Line m_line;
};

void CReader::Next()
{
    const qsizetype begin = m_at;
    switch (jetsql::ClassOf(Peek())) {
    case CharClass::Letter:
        return Word();
    case CharClass::Digit:
        return Number();
    case CharClass::Point:
        return !Qualifies() && jetsql::IsDigit(Peek(1)) ? Number() : void(++m_at);
    case CharClass::Hash:
        return Date();
    case CharClass::Bracket:
        return Bracket();
    case CharClass::Quote:
        return Enclosed(m_text[m_at++] == u'\'' ? Open::SingleQuote : Open::DoubleQuote, begin);
    case CharClass::BackQuote:
        ++m_at;
        return Enclosed(Open::BackQuote, begin);
    default:
        ++m_at;
    }
}

/// From within to the closing sign or to the line's end. A doubled quote ends one text and begins the next at once.
void CReader::Enclosed(Open What, qsizetype Begin)
{
    const bool isText = What == Open::SingleQuote || What == Open::DoubleQuote;
    const qsizetype closer = m_text.indexOf(CloserOf(What), m_at);
    m_at = closer < 0 ? m_text.size() : closer + 1;
    if (m_at > Begin)
        Put(Begin, isText ? Part::Text : Part::Name);
    m_line.AtEnd = closer < 0 ? What : Open::Nothing;
}

/// Brackets hold a name, or else a whole statement in the place of a table.
void CReader::Bracket()
{
    const qsizetype begin = m_at++;
    const QStringView inside = Ahead();
    constexpr int selectSize = 6;
    const bool isStatement = jetsql::KeywordOf(inside.left(selectSize)) == jetsql::Keyword::Select &&
                             (inside.size() == selectSize || jetsql::IsBlank(inside[selectSize].unicode()));
    if (!isStatement)
        Enclosed(Open::Bracket, begin);
}

void CReader::Date()
{
    const qsizetype begin = m_at++;
    const qsizetype closer = m_text.indexOf(u'#', m_at);
    m_at = closer < 0 ? m_text.size() : closer + 1;
    Put(begin, Part::Date);
}

/// The point parts a field from its table.
bool CReader::Qualifies() const
{
    const QChar before = m_at > 0 ? m_text[m_at - 1] : u' ';
    return jetsql::IsNameUnit(before.unicode()) || before == u']' || before == u'`';
}

void CReader::Digits()
{
    while (jetsql::IsDigit(Peek()))
        ++m_at;
}

void CReader::Number()
{
    const qsizetype begin = m_at;
    Digits();
    if (Peek() == u'.') {
        ++m_at;
        Digits();
    }
    const qsizetype sign = Peek(1) == u'+' || Peek(1) == u'-' ? 1 : 0;
    if ((Peek() | 0x20) == u'e' && jetsql::IsDigit(Peek(1 + sign))) {
        m_at += 1 + sign;
        Digits();
    }
    Put(begin, Part::Number);
}

/// What is left of the line, without the blanks before it.
QStringView CReader::Ahead() const
{
    const QStringView rest = m_text.mid(m_at);
    const auto first = std::find_if_not(rest.begin(), rest.end(), [](QChar U) { return jetsql::IsBlank(U.unicode()); });
    return rest.mid(first - rest.begin());
}

void CReader::Word()
{
    const qsizetype begin = m_at;
    while (!AtEnd() && jetsql::IsNameUnit(Peek()))
        ++m_at;
    if (IsKeyword(m_text.mid(begin, m_at - begin), begin))
        Put(begin, Part::Keyword);
}

/// What is a field's name behind its table's, and what is called as a function, is no keyword there.
bool CReader::IsKeyword(QStringView Word, qsizetype Begin) const
{
    if (jetsql::KeywordOf(Word) == jetsql::Keyword::None)
        return false;
    if (Begin > 0 && (m_text[Begin - 1] == u'.' || m_text[Begin - 1] == u'!'))
        return false;
    const bool isCalled = Ahead().startsWith(u'(');
    return !isCalled || !jetsql::FindFunction(Word);
}

} // namespace

Line Read(QStringView Text, Open AtBegin) { return CReader(Text).Read(AtBegin); }

} // namespace mdlStatementParts

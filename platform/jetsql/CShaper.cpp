// platform/jetsql/CShaper.cpp
// The one pass over a statement that parts its constants from its form.

#include "platform/jetsql/CShaper.h"

#include "platform/jetsql/Characters.h"
#include "platform/jetsql/DateLiteral.h"
#include "platform/jetsql/Keyword.h"

#include <QLocale>

#include <limits>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr qsizetype UsualLiterals = 16;      // the statement that stores a message has twelve
constexpr qsizetype MaxEquals = 1000;        // beyond it equal literals are not looked for: nobody groups by that many
constexpr size_t MaxValues = 20'000;         // constants of a crosstab; their numbers fit one unit of the key
constexpr qsizetype ShownLength = 40;

// Wanted is in small letters. Setting the bit of small letters makes none of a unit that was no letter.
bool Is(QStringView Word, QLatin1StringView Wanted)
{
    if (Word.size() != Wanted.size())
        return false;
    for (qsizetype i = 0; i < Word.size(); ++i) {
        const char16_t unit = Word[i].unicode();
        if ((unit | 0x20) != Wanted[i].unicode() && unit != Wanted[i].unicode())
            return false;
    }
    return true;
}

}

namespace {

// "[SELECT …" or "[TRANSFORM …".
bool BeginsWithSelect(QStringView Text)
{
    const QStringView inside = Text.mid(1).trimmed();
    return inside.size() > 6 && Is(inside.left(6), "select"_L1) && IsBlank(inside[6].unicode());
}

}

qsizetype EnclosedSize(QStringView Text)
{
    const bool isBracket = Text[0] == u'[';
    const qsizetype first = Text.indexOf(isBracket ? u']' : Text[0], 1) + 1;
    if (!isBracket || first == 0 || !BeginsWithSelect(Text))
        return first == 0 ? -1 : first;
    int depth = 0;
    for (qsizetype at = 0; at < Text.size(); ++at) {
        const QChar unit = Text[at];
        if (unit == u'\'' || unit == u'"') {
            at = Text.indexOf(unit, at + 1);
            if (at < 0)
                break;
        }
        depth += unit == u'[' ? 1 : unit == u']' ? -1 : 0;
        if (depth == 0)
            return at + 1;
    }
    return first;
}

CShaper::CShaper(QStringView Sql)
    : m_begin(Sql.utf16()), m_end(m_begin + Sql.size()), m_at(m_begin), m_run(m_begin)
{
}

Shape CShaper::Take()
{
    m_shape.Key.reserve(std::min<qsizetype>(m_end - m_begin, 512));
    m_shape.Literals.reserve(UsualLiterals);
    m_shape.Offsets.reserve(2 * UsualLiterals);
    while (!AtEnd())
        Token();
    m_shape.Key.append(QStringView(m_run, m_end));
    if (m_wantsEquals || m_wantsValues)
        PutEquals();
    if (m_wantsValues)
        PutValues();
    return std::move(m_shape);
}

void CShaper::SkipBlanks()
{
    while (!AtEnd() && IsBlank(*m_at))
        ++m_at;
}

void CShaper::Token()
{
    switch (ClassOf(*m_at)) {
    case CharClass::Blank: ++m_at; break;
    case CharClass::Letter: Word(); break;
    case CharClass::Digit: Number(); break;
    case CharClass::Point: Point(); break;
    case CharClass::Quote: Text(); break;
    case CharClass::Hash: Date(); break;
    case CharClass::Bracket:
    case CharClass::BackQuote: Enclosed(); break;
    case CharClass::Ampersand: Ampersand(); break;
    case CharClass::Symbol: Symbol(); break;
    case CharClass::Other: Refuse(u"構文エラーです: 使えない文字があります"_s, m_at);
    }
}

void CShaper::Word()
{
    const char16_t* begin = m_at;
    while (!AtEnd() && IsNameUnit(*m_at))
        ++m_at;
    const QStringView word(begin, m_at);
    if (word.size() <= 9 && NoteWord(word))
        return;
    m_word = word;
    m_last = Last::Word;
}

// The few words that decide what a following constant is. True where the word has been dealt with altogether.
bool CShaper::NoteWord(QStringView Word)
{
    const bool afterOrder = std::exchange(m_afterOrder, false);
    m_afterTop = false;
    switch (Word[0].unicode() | 0x20) {
    case u'b':
        if (afterOrder && Is(Word, "by"_L1)) {
            m_orderDepth = m_depth;
            m_last = Last::Comma;   // what follows is the first of a list
            return true;
        }
        break;
    case u't':
        m_afterTop = Is(Word, "top"_L1);
        m_wantsValues |= m_last == Last::Nothing && Is(Word, "transform"_L1);
        break;
    case u'e': m_wantsValues |= m_last == Last::Nothing && Is(Word, "execute"_L1); break;
    case u'o': m_afterOrder = Is(Word, "order"_L1); break;
    case u'g': m_wantsEquals |= Is(Word, "group"_L1); break;
    case u'd':
        m_wantsEquals |= Is(Word, "distinct"_L1);
        m_keepsNumbers |= m_last == Last::Nothing && Is(Word, "drop"_L1);
        break;
    case u'c':
        m_keepsNumbers |= m_last == Last::Nothing && Is(Word, "create"_L1);
        return (Is(Word, "chr"_L1) || Is(Word, "chr$"_L1)) && ChrCall(Word.utf16());
    case u'a': m_keepsNumbers |= m_last == Last::Nothing && Is(Word, "alter"_L1); break;
    case u'm':
        if (Is(Word, "mod"_L1)) {
            m_last = Last::Arithmetic;
            return true;
        }
        break;
    default: break;
    }
    return false;
}

// At the "(" after Chr: a whole ASCII code in it is a constant text, and perhaps the first link of a chain.
bool CShaper::ChrCall(const char16_t* Begin)
{
    const char16_t* afterName = m_at;
    QString text;
    if ((Begin > m_begin && (Begin[-1] == u'.' || Begin[-1] == u'!')) || !ReadChr(text)) {
        m_at = afterName;
        return false;
    }
    if (m_last != Last::Arithmetic)
        while (ExtendChain(text)) {}
    Put(Begin, Placeholder::Text, Value::FromText(std::move(text)));
    return true;
}

// Leaves the place anywhere when it answers False.
bool CShaper::ReadChr(QString& To)
{
    SkipBlanks();
    if (Peek() != u'(')
        return false;
    ++m_at;
    SkipBlanks();
    int code = 0, digits = 0;
    for (; IsDigit(Peek()) && digits < 4; ++m_at, ++digits)
        code = code * 10 + (*m_at - u'0');
    SkipBlanks();
    if (digits == 0 || code > 127 || Peek() != u')')
        return false;
    ++m_at;
    To.append(QChar(code));
    return true;
}

void CShaper::Enclosed()
{
    const char16_t* begin = m_at;
    const qsizetype size = EnclosedSize(QStringView(m_at, m_end));
    if (size < 0)
        throw MakeError(3126, {QStringView(begin, m_end).left(ShownLength).toString()}, Offset(begin));
    m_at += size;
    m_last = Last::Operand;
}

void CShaper::ReadQuoted(QString& To)
{
    const QChar quote(*m_at);
    const char16_t* begin = m_at++;
    for (;;) {
        const qsizetype length = QStringView(m_at, m_end).indexOf(quote);
        if (length < 0)
            Refuse(u"文字列が閉じていません"_s, begin);
        if (To.isEmpty())
            To = QString(reinterpret_cast<const QChar*>(m_at), length);   // exactly as long: most texts are of one piece
        else
            To.append(QStringView(m_at, length));
        m_at += length + 1;
        if (Peek() != quote.unicode())
            return;
        To.append(quote);   // doubled: stands for one
        ++m_at;
    }
}

void CShaper::Text()
{
    const char16_t* begin = m_at;
    QString text;
    ReadQuoted(text);
    if (m_last != Last::Arithmetic)
        while (ExtendChain(text)) {}
    Put(begin, Placeholder::Text, Value::FromText(std::move(text)));
}

// At the end of a constant text: takes "& constant text" along, unless an operator that binds closer follows it.
bool CShaper::ExtendChain(QString& To)
{
    const char16_t* begin = m_at;
    const qsizetype length = To.size();
    SkipBlanks();
    if (Peek() == u'&') {
        ++m_at;
        SkipBlanks();
        bool taken = false;
        if (ClassOf(Peek()) == CharClass::Quote) {
            ReadQuoted(To);
            taken = true;
        } else if ((Peek() | 0x20) == u'c') {
            const char16_t* word = m_at;
            while (!AtEnd() && IsNameUnit(*m_at))
                ++m_at;
            const QStringView name(word, m_at);
            taken = (Is(name, "chr"_L1) || Is(name, "chr$"_L1)) && ReadChr(To);
        }
        if (taken && !ArithmeticFollows())
            return true;
    }
    To.truncate(length);
    m_at = begin;
    return false;
}

bool CShaper::ArithmeticFollows()
{
    const char16_t* at = m_at;
    while (at != m_end && IsBlank(*at))
        ++at;
    if (at == m_end || *at == u'&' || *at == u',')
        return false;
    if (QStringView(u"+-*/\\^").contains(QChar(*at)))
        return true;
    const char16_t* word = at;
    while (at != m_end && IsNameUnit(*at))
        ++at;
    return Is(QStringView(word, at), "mod"_L1);
}

void CShaper::Number()
{
    const char16_t* begin = m_at;
    qint64 number = 0;
    for (; !AtEnd() && IsDigit(*m_at); ++m_at)
        number = std::min<qint64>(number * 10 + (*m_at - u'0'), std::numeric_limits<qint64>::max() / 16);
    const bool isExponent = (Peek() | 0x20) == u'e'
        && (IsDigit(Peek(1)) || ((Peek(1) == u'+' || Peek(1) == u'-') && IsDigit(Peek(2))));
    if (Peek() == u'.' || isExponent)
        return Decimal(begin);
    const bool isPosition = m_orderDepth == m_depth && m_last == Last::Comma;
    if (isPosition || m_keepsNumbers || (m_afterTop && m_last == Last::Word)) {
        m_last = Last::Operand;
        return;
    }
    if (number > std::numeric_limits<qint32>::max())
        return Decimal(begin);
    Put(begin, Placeholder::Long, Value::FromLong(static_cast<qint32>(number)));
}

void CShaper::Decimal(const char16_t* Begin)
{
    const auto digits = [this] { while (!AtEnd() && IsDigit(*m_at)) ++m_at; };
    if (Peek() == u'.') {
        ++m_at;
        digits();
    }
    if ((Peek() | 0x20) == u'e') {
        const qsizetype sign = Peek(1) == u'+' || Peek(1) == u'-' ? 1 : 0;
        if (IsDigit(Peek(1 + sign))) {
            m_at += 1 + sign;
            digits();
        }
    }
    bool isFinite = false;
    const double number = QLocale::c().toDouble(QStringView(Begin, m_at), &isFinite);
    if (!isFinite)
        throw MakeError(6, {}, Offset(Begin));
    Put(Begin, Placeholder::Double, Value::FromDouble(number));
}

// At "&": &H or &O and only digits after it, where an operand may begin. After an operand it joins texts.
bool CShaper::IsRadix() const
{
    const char16_t letter = Peek(1) | 0x20;
    const Keyword before = m_last == Last::Word ? KeywordOf(m_word) : Keyword::Select;
    const bool isOperand = !IsOperatorWord(before) && before != Keyword::All && before != Keyword::Distinct && before != Keyword::DistinctRow;
    if ((letter != u'h' && letter != u'o') || m_last == Last::Operand || isOperand)
        return false;
    qsizetype ahead = 2;
    for (; IsNameUnit(Peek(ahead)); ++ahead) {
        const char16_t digit = Peek(ahead) | 0x20;
        const bool isHex = IsDigit(Peek(ahead)) || (digit >= u'a' && digit <= u'f');
        if (letter == u'h' ? !isHex : (Peek(ahead) < u'0' || Peek(ahead) > u'7'))
            return false;
    }
    return ahead > 2;
}

void CShaper::Radix()
{
    const char16_t* begin = m_at;
    const unsigned bits = (m_at[1] | 0x20) == u'h' ? 4 : 3;
    quint64 number = 0;
    for (m_at += 2; IsNameUnit(Peek()); ++m_at) {
        number = (number << bits) | (IsDigit(*m_at) ? quint64(*m_at - u'0') : quint64((*m_at | 0x20) - u'a' + 10));
        if (number > std::numeric_limits<quint32>::max())
            throw MakeError(6, {}, Offset(begin));
    }
    Put(begin, Placeholder::Long, Value::FromLong(static_cast<qint32>(static_cast<quint32>(number))));
}

void CShaper::Date()
{
    const char16_t* begin = m_at++;
    const qsizetype length = QStringView(m_at, m_end).indexOf(u'#');
    const auto serial = length < 0 ? std::nullopt : ReadDateLiteral(QStringView(m_at, length));
    if (!serial)
        Refuse(u"日付の形式が不正です"_s, begin);
    m_at += length + 1;
    Put(begin, Placeholder::Date, Value::FromDate(*serial));
}

void CShaper::Point()
{
    const bool qualifies = m_at > m_begin && (IsNameUnit(m_at[-1]) || m_at[-1] == u']' || m_at[-1] == u'`');
    if (!qualifies && IsDigit(Peek(1)))
        return Decimal(m_at);
    ++m_at;
    m_last = Last::Other;
}

void CShaper::Ampersand()
{
    if (IsRadix())
        return Radix();
    ++m_at;
    m_last = Last::Other;
}

void CShaper::Symbol()
{
    switch (*m_at++) {
    case u'(': ++m_depth; m_last = Last::Other; break;
    case u')':
        if (--m_depth < m_orderDepth)
            m_orderDepth = -1;
        m_last = Last::Operand;
        break;
    case u',': m_last = Last::Comma; break;
    case u';': m_last = Last::Nothing; break;   // after PARAMETERS the statement begins
    case u'+': case u'-': case u'*': case u'/': case u'\\': case u'^': m_last = Last::Arithmetic; break;
    default: m_last = Last::Other; break;
    }
}

void CShaper::Put(const char16_t* Begin, char16_t Placeholder, Value&& Literal)
{
    m_shape.Key.append(QStringView(m_run, Begin));
    m_shape.Key.append(QChar(Placeholder));
    m_run = m_at;
    m_shape.Literals.push_back(std::move(Literal));
    m_shape.Offsets.push_back(Offset(Begin));
    m_shape.Offsets.push_back(Offset(m_at));
    m_last = Last::Operand;
}

// Grouping by Left(Subject, 3) must know that the 3 of the select list is the same 3: each literal is followed by the
// number of the first one that equals it.
void CShaper::PutEquals()
{
    const auto& literals = m_shape.Literals;
    const bool isCompared = qsizetype(literals.size()) <= MaxEquals;
    if (literals.empty() || (!isCompared && !m_wantsValues))
        return;
    m_shape.Key.append(QChar(Placeholder::Equals));
    for (size_t i = 0; i < literals.size(); ++i) {
        size_t first = isCompared ? 0 : i;
        while (!(literals[first] == literals[i]))
            ++first;
        m_shape.Key.append(QChar(static_cast<char16_t>(first)));
    }
}

// After the list of equal ones, which has one unit for each.
void CShaper::PutValues()
{
    if (m_shape.Literals.size() > MaxValues)
        throw MakeError(3360);
    for (const Value& literal : m_shape.Literals) {
        const QString text = literal.ToText();
        m_shape.Key += QString::number(text.size()) + u':' + text;
    }
}

void CShaper::Refuse(const QString& Reason, const char16_t* Place) const
{
    const QString shown = QStringView(Place, m_end).left(ShownLength).toString();
    throw MakeError(3075, {Reason, shown}, Offset(Place));
}

Shape TakeShape(QStringView Sql)
{
    return CShaper(Sql).Take();
}

}

// platform/regexp/CEcmaReader.cpp
// From left to right, writing as it goes; open groups are kept in a list, so no nesting is too deep for the stack.

#include "platform/regexp/CEcmaReader.h"

#include "platform/regexp/CaseVariants.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace regexp
{

namespace
{

constexpr char16_t NoUnit = 0; // behind the end; U+0000 itself has no meaning to the reader
constexpr int LastCalloutNumber = 255;
constexpr double UnitsPerRange = 8; // of a class as it is written, or fewer

bool IsDigit(char16_t Unit) { return Unit >= u'0' && Unit <= u'9'; }
bool IsOctalDigit(char16_t Unit) { return Unit >= u'0' && Unit <= u'7'; }
bool IsAsciiLetter(char16_t Unit) { return (Unit >= u'a' && Unit <= u'z') || (Unit >= u'A' && Unit <= u'Z'); }
bool IsClassLetter(char16_t Unit) { return Unit != NoUnit && QStringView(u"dDwWsS").contains(QChar(Unit)); }

CCharacterClass Single(char16_t Unit)
{
    CCharacterClass set;
    set.Add(Unit, Unit);
    return set;
}

} // namespace

CEcmaReader::CEcmaReader(QStringView Source, const COptions& Options)
    : m_source(Source)
    , m_options(Options)
{
    m_result.GroupCount = CountGroups(Source);
}

/// Back references look ahead: whether \2 is one depends on groups that may come later.
int CEcmaReader::CountGroups(QStringView Source)
{
    int count = 0;
    bool isInClass = false;
    for (qsizetype i = 0; i < Source.size(); ++i) {
        if (Source[i] == u'\\')
            ++i;
        else if (Source[i] == u'[')
            isInClass = true;
        else if (Source[i] == u']')
            isInClass = false;
        else if (Source[i] == u'(' && !isInClass && Source.mid(i + 1, 1) != u"?")
            ++count;
    }
    return count;
}

CEcmaPattern CEcmaReader::Read()
{
    while (!AtEnd() && m_result.What == Fault::None)
        ReadItem();
    if (m_result.What == Fault::None && !m_open.empty())
        Refuse(Fault::OpenGroup, m_open.back().Offset);
    m_result.Effort.Ways *= m_alternatives;
    if (m_result.What != Fault::None)
        m_result.Pcre.clear();
    return m_result;
}

void CEcmaReader::ReadItem()
{
    if (const auto times = TakeQuantifier())
        return ReadQuantifier(*times);
    m_isAfterGroup = false;
    switch (Ahead()) {
    case u'(':
        return ReadGroup();
    case u')':
        return CloseGroup();
    case u'|':
        return ReadAlternative();
    case u'[':
        return ReadClass();
    case u'\\':
        return ReadEscape();
    case u'^':
        ++m_at;
        return WriteAssertion(u"^"_s, u"(?:^|(?<=[\\x{a}\\x{d}]))"_s);
    case u'$':
        ++m_at;
        return WriteAssertion(u"\\z"_s, u"(?=[\\x{a}\\x{d}]|\\z)"_s);
    case u'.':
        ++m_at;
        return WriteSet(u"\\N"_s);
    default:
        WriteUnit(m_source[m_at++].unicode());
    }
}

void CEcmaReader::ReadGroup()
{
    const qsizetype offset = m_at;
    if (m_open.size() == CEcmaPattern::MaxDepth)
        return Refuse(Fault::TooDeep, offset);
    for (const QStringView start : {u"(?:", u"(?=", u"(?!"}) {
        if (Take(start))
            return OpenGroup(start, offset);
    }
    if (Take(u"(?"))
        return Refuse(Fault::UnknownGroup, offset);
    ++m_at;
    OpenGroup(u"(", offset);
}

void CEcmaReader::OpenGroup(QStringView Start, qsizetype Offset)
{
    const bool isLookahead = Start == u"(?=" || Start == u"(?!";
    m_result.Pcre += Start;
    m_open.push_back({Offset, isLookahead, m_result.Effort.Runs});
    m_isRepeatable = false;
}

void CEcmaReader::CloseGroup()
{
    if (m_open.empty())
        return Refuse(Fault::StrayParenthesis, m_at);
    ++m_at;
    const Group& group = m_open.back();
    m_result.Pcre += group.Alternatives > 1 ? u"(?C))"_s : u")"_s;
    m_result.Effort.Ways *= group.Alternatives;
    if (group.IsLookahead && m_result.Effort.Runs > group.RunsBefore)
        m_result.Effort.IsBounded = false; // it goes back to where it began
    m_open.pop_back();
    m_isRepeatable = true;
    m_isAfterGroup = true;
}

void CEcmaReader::ReadAlternative()
{
    ++m_at;
    m_result.Pcre += m_open.empty() ? u"|"_s : u"(?C)|"_s;
    ++(m_open.empty() ? m_alternatives : m_open.back().Alternatives);
    m_isRepeatable = false;
}

void CEcmaReader::ReadQuantifier(const Bounds& Times)
{
    const bool isLazy = Take(u"?");
    m_result.Pcre += u'{' + QString::number(Times.Least);
    if (Times.Most != Times.Least)
        m_result.Pcre += u',' + (Times.Most == Endless ? QString() : QString::number(Times.Most));
    m_result.Pcre += isLazy ? u"}?"_s : u"}"_s;
    if (Times.Most != Times.Least)
        m_result.Pcre += u"(?C)"_s;
    CountChoices(Times);
    m_isRepeatable = false;
}

void CEcmaReader::CountChoices(const Bounds& Times)
{
    CEffort& effort = m_result.Effort;
    if (Times.Least == 0 && Times.Most == 1)
        effort.Ways *= 2;
    else if (m_isAfterGroup)
        effort.IsBounded = false;
    else if (Times.Most != Times.Least)
        ++effort.Runs;
    effort.Length *= m_isAfterGroup ? 1 : std::max(Times.Least, 1);
}

std::optional<CEcmaReader::Bounds> CEcmaReader::TakeQuantifier()
{
    const qsizetype start = m_at;
    std::optional<Bounds> times;
    if (Take(u"*"))
        times = Bounds{0, Endless};
    else if (Take(u"+"))
        times = Bounds{1, Endless};
    else if (Take(u"?"))
        times = Bounds{0, 1};
    else if (times = TakeBounds(); !times)
        m_at = start;
    if (times && !m_isRepeatable)
        Refuse(Fault::NothingToRepeat, start);
    else if (times && std::max(times->Least, times->Most) > CEcmaPattern::MaxRepeats)
        Refuse(Fault::TooManyRepeats, start);
    else if (times && times->Most != Endless && times->Most < times->Least)
        Refuse(Fault::ReversedBounds, start);
    return times;
}

std::optional<CEcmaReader::Bounds> CEcmaReader::TakeBounds()
{
    if (!Take(u"{"))
        return std::nullopt;
    const auto least = TakeCount();
    if (!least)
        return std::nullopt;
    Bounds times{*least, *least};
    if (Take(u","))
        times.Most = TakeCount().value_or(Endless);
    return Take(u"}") ? std::optional(times) : std::nullopt;
}

/// Stops counting beyond the greatest number that is allowed.
std::optional<int> CEcmaReader::TakeCount()
{
    if (!IsDigit(Ahead()))
        return std::nullopt;
    int count = 0;
    for (; IsDigit(Ahead()); ++m_at)
        count = std::min(count * 10 + (Ahead() - u'0'), CEcmaPattern::MaxRepeats + 1);
    return count;
}

void CEcmaReader::ReadEscape()
{
    const char16_t letter = Ahead(1);
    if (m_at + 1 == m_source.size())
        return Refuse(Fault::TrailingBackslash, m_at);
    ++m_at;
    if (letter >= u'1' && letter <= u'9')
        return ReadNumber();
    if (letter != u'b' && letter != u'B' && !IsClassLetter(letter))
        return WriteUnit(TakeEscapedUnit());
    ++m_at;
    if (IsClassLetter(letter)) {
        return WriteSet(CCharacterClass::Named(QChar(letter)).Pattern());
    }
    const QString boundary = u"\\"_s + QChar(letter);
    WriteAssertion(boundary, boundary);
}

/// \12 is group 12 where there is one, else group 1 and the digit 2, else an octal code, else a digit by itself.
void CEcmaReader::ReadNumber()
{
    const int first = Ahead() - u'0';
    const int both = IsDigit(Ahead(1)) ? first * 10 + (Ahead(1) - u'0') : first;
    if (first > m_result.GroupCount)
        return WriteUnit(TakeEscapedUnit());
    const bool isLong = both > first && both <= m_result.GroupCount;
    m_at += isLong ? 2 : 1;
    WriteBackReference(isLong ? both : first);
}

char16_t CEcmaReader::TakeEscapedUnit()
{
    const char16_t letter = Ahead();
    if (IsOctalDigit(letter))
        return TakeOctal();
    ++m_at;
    switch (letter) {
    case u'f':
        return u'\f';
    case u'n':
        return u'\n';
    case u'r':
        return u'\r';
    case u't':
        return u'\t';
    case u'v':
        return u'\v';
    case u'x':
        return TakeHex(2).value_or(letter);
    case u'u':
        return TakeHex(4).value_or(letter);
    case u'c':
        return IsAsciiLetter(Ahead()) ? static_cast<char16_t>(m_source[m_at++].unicode() & 0x1F) : letter;
    default:
        return letter;
    }
}

char16_t CEcmaReader::TakeOctal()
{
    const qsizetype most = Ahead() <= u'3' ? 3 : 2; // up to 377
    int value = 0;
    for (qsizetype i = 0; i < most && IsOctalDigit(Ahead()); ++i, ++m_at)
        value = value * 8 + (Ahead() - u'0');
    return static_cast<char16_t>(value);
}

std::optional<char16_t> CEcmaReader::TakeHex(qsizetype Digits)
{
    const QStringView digits = m_source.mid(m_at, Digits);
    const auto isHex = [](QChar Each) {
        return IsDigit(Each.unicode()) || (Each.toLower() >= u'a' && Each.toLower() <= u'f');
    };
    if (digits.size() < Digits || !std::all_of(digits.begin(), digits.end(), isHex))
        return std::nullopt;
    m_at += Digits;
    return static_cast<char16_t>(digits.toUShort(nullptr, 16));
}

void CEcmaReader::ReadClass()
{
    const qsizetype offset = m_at++;
    const bool isNegated = Take(u"^");
    CCharacterClass set;
    while (!AtEnd() && Ahead() != u']' && m_result.What == Fault::None)
        ReadClassItem(set);
    if (m_result.What != Fault::None)
        return;
    if (!Take(u"]"))
        return Refuse(Fault::OpenClass, offset);
    if (m_options.IgnoreCase)
        set.AddCaseVariants();
    WriteSet(set.Pattern(isNegated));
}

/// One unit or a range; where either end of a range is \w or its like, the hyphen stands for itself.
void CEcmaReader::ReadClassItem(CCharacterClass& Into)
{
    const qsizetype start = m_at;
    const CCharacterClass first = ReadClassAtom();
    const bool isRange = Ahead() == u'-' && m_at + 1 < m_source.size() && Ahead(1) != u']';
    if (!isRange)
        return Into.Add(first);
    ++m_at;
    const CCharacterClass last = ReadClassAtom();
    const auto from = first.OnlyUnit();
    const auto to = last.OnlyUnit();
    if (from && to && *from > *to)
        return Refuse(Fault::ReversedRange, start);
    if (from && to)
        return Into.Add(*from, *to);
    Into.Add(first);
    Into.Add(u'-', u'-');
    Into.Add(last);
}

CCharacterClass CEcmaReader::ReadClassAtom()
{
    if (Ahead() != u'\\')
        return Single(m_source[m_at++].unicode());
    if (m_at + 1 == m_source.size()) {
        Refuse(Fault::TrailingBackslash, m_at++);
        return {};
    }
    ++m_at;
    if (IsClassLetter(Ahead()))
        return CCharacterClass::Named(m_source[m_at++]);
    if (Take(u"b"))
        return Single(u'\b');
    return Single(TakeEscapedUnit());
}

/// Pattern takes one unit.
void CEcmaReader::WriteSet(const QString& Pattern)
{
    m_result.Pcre += Pattern;
    m_result.Effort.Length += std::ceil(static_cast<double>(Pattern.size()) / UnitsPerRange);
    m_isRepeatable = true;
}

void CEcmaReader::WriteUnit(char16_t Unit)
{
    QString pattern;
    if (m_options.IgnoreCase && !CaseVariants(Unit).empty()) {
        CCharacterClass set = Single(Unit);
        set.AddCaseVariants();
        pattern = set.Pattern();
    } else {
        AppendUnit(pattern, Unit);
    }
    WriteSet(pattern);
}

void CEcmaReader::WriteBackReference(int Number)
{
    m_result.Pcre += u"(?:(?C%1)\\g{%2})"_s.arg(std::min(Number, LastCalloutNumber)).arg(Number);
    m_result.Effort.IsBounded = false;
    m_isRepeatable = true;
}

void CEcmaReader::WriteAssertion(const QString& Plain, const QString& Multiline)
{
    m_result.Pcre += m_options.Multiline ? Multiline : Plain;
    m_isRepeatable = false;
}

char16_t CEcmaReader::Ahead(qsizetype Distance) const
{
    return m_at + Distance < m_source.size() ? m_source[m_at + Distance].unicode() : NoUnit;
}

bool CEcmaReader::Take(QStringView Text)
{
    if (!m_source.mid(m_at).startsWith(Text))
        return false;
    m_at += Text.size();
    return true;
}

void CEcmaReader::Refuse(Fault What, qsizetype Offset)
{
    m_result.What = What;
    m_result.Offset = Offset;
}

} // namespace regexp

// platform/text/Like.cpp
// Patterns are cut at their stars; each piece is then looked for behind the one before it, never going back.

#include "platform/text/Like.h"

#include "platform/text/Fold.h"

#include <algorithm>

namespace text
{

namespace
{

constexpr char16_t LastAscii = 0x7F;
constexpr char16_t FirstKatakana = 0x30A1;
constexpr char16_t LastKatakana = 0x30FA;

/// In these blocks the codes are in the order of the language, except that capitals have been folded away.
bool IsInOrder(char16_t Unit) { return Unit <= LastAscii || (Unit >= FirstKatakana && Unit <= LastKatakana); }

int CompareUnits(char16_t Left, char16_t Right) { return CompareText(QStringView(&Left, 1), QStringView(&Right, 1)); }

} // namespace

CLikePattern::CLikePattern(Compare Mode)
    : m_mode(Mode)
    , m_pieces(1)
{}

std::optional<CLikePattern> CLikePattern::Compile(QStringView Pattern, Compare Mode)
{
    CLikePattern compiled(Mode);
    if (!compiled.Read(Tokens(Pattern, Mode)))
        return std::nullopt;
    return compiled;
}

std::vector<CLikePattern::Token> CLikePattern::Tokens(QStringView Pattern, Compare Mode)
{
    std::vector<Token> tokens;
    tokens.reserve(static_cast<std::size_t>(Pattern.size()));
    if (Mode == Compare::Binary) {
        for (const QChar unit : Pattern)
            tokens.push_back({unit.unicode(), unit.unicode()});
        return tokens;
    }
    const CFoldedText folded = FoldWithOffsets(Pattern);
    for (qsizetype i = 0; i < folded.Text.size(); ++i) {
        const qsizetype source = folded.Offsets[static_cast<std::size_t>(i)];
        tokens.push_back({folded.Text[i].unicode(), Pattern[source].unicode()});
    }
    return tokens;
}

bool CLikePattern::Read(const std::vector<Token>& Pattern)
{
    for (auto token = Pattern.begin(); token != Pattern.end(); ++token) {
        switch (token->Sign) {
        case u'*':
            if (m_pieces.size() == 1 || m_pieces.back().Size() > 0) // "**" is "*"
                m_pieces.emplace_back();
            break;
        case u'?':
            Add({Kind::AnyUnit, 0, {}});
            break;
        case u'#':
            Add({Kind::Digit, 0, {}});
            break;
        case u'[': {
            const auto end = std::find_if(token, Pattern.end(), [](const Token& Other) { return Other.Sign == u']'; });
            if (end == Pattern.end() || !AddList({token + 1, end}))
                return false;
            token = end;
            break;
        }
        default:
            Add({Kind::Unit, token->Unit, {}});
        }
    }
    return true;
}

bool CLikePattern::AddList(std::span<const Token> List)
{
    const bool isNegated = List.size() > 1 && List.front().Sign == u'!';
    if (isNegated)
        List = List.subspan(1);
    Step step{isNegated ? Kind::NotList : Kind::List, 0, {}};
    for (std::size_t i = 0; i < List.size(); ++i) {
        const bool isRange = i + 2 < List.size() && List[i + 1].Sign == u'-';
        if (!AddRange(step, List[i].Unit, List[isRange ? i + 2 : i].Unit))
            return false;
        i += isRange ? 2 : 0;
    }
    const bool isOneUnit = !isNegated && step.Ranges.size() == 1 && step.Ranges[0].First == step.Ranges[0].Last;
    if (isOneUnit)
        Add({Kind::Unit, step.Ranges[0].First, {}});
    else if (!step.Ranges.empty()) // "[]" takes nothing and asks for nothing
        Add(std::move(step));
    return true;
}

bool CLikePattern::AddRange(Step& To, char16_t First, char16_t Last) const
{
    const bool isByOrder = m_mode == Compare::Text && First != Last && !(IsInOrder(First) && IsInOrder(Last));
    To.Ranges.push_back({First, Last, isByOrder});
    return isByOrder ? CompareUnits(First, Last) <= 0 : First <= Last;
}

void CLikePattern::Add(Step What)
{
    Piece& piece = m_pieces.back();
    piece.IsPlain = piece.IsPlain && What.What == Kind::Unit;
    piece.Text.append(QChar(What.Unit));
    piece.Steps.push_back(std::move(What));
}

bool CLikePattern::Matches(QStringView Text) const
{
    if (m_mode == Compare::Binary || IsFolded(Text))
        return MatchesUnits(Text);
    return MatchesUnits(Fold(Text));
}

qint64 CLikePattern::MostSteps(qsizetype Size) const
{
    constexpr qint64 plainFactor = 16; // a plain piece is looked for with leaps
    qint64 most = 1;
    for (const Piece& piece : m_pieces)
        most = std::max(most, piece.IsPlain ? piece.Size() / plainFactor : piece.Size());
    return m_pieces.size() == 1 ? Size : Size * most;
}

bool CLikePattern::MatchesUnits(QStringView Text) const
{
    const Piece& first = m_pieces.front();
    const Piece& last = m_pieces.back();
    if (m_pieces.size() == 1)
        return Text.size() == first.Size() && MatchesHere(first, Text);
    if (Text.size() < first.Size() + last.Size() || !MatchesHere(first, Text) ||
        !MatchesHere(last, Text.last(last.Size())))
        return false;

    // The leftmost place is always good enough for a piece between two stars: it leaves most to the pieces behind it.
    const QStringView middle = Text.chopped(last.Size());
    qsizetype place = first.Size();
    for (auto piece = m_pieces.begin() + 1; piece != m_pieces.end() - 1; ++piece) {
        const qsizetype found = Find(*piece, middle, place);
        if (found < 0)
            return false;
        place = found + piece->Size();
    }
    return true;
}

bool CLikePattern::IsInRange(const Range& Among, char16_t Unit)
{
    if (!Among.IsByOrder)
        return Unit >= Among.First && Unit <= Among.Last;
    return CompareUnits(Among.First, Unit) <= 0 && CompareUnits(Unit, Among.Last) <= 0;
}

bool CLikePattern::MatchesStep(const Step& What, char16_t Unit)
{
    switch (What.What) {
    case Kind::Unit:
        return Unit == What.Unit;
    case Kind::AnyUnit:
        return true;
    case Kind::Digit:
        return Unit >= u'0' && Unit <= u'9';
    default:
        break;
    }
    const bool isListed = std::any_of(What.Ranges.begin(), What.Ranges.end(),
                                      [Unit](const Range& Among) { return IsInRange(Among, Unit); });
    return isListed == (What.What == Kind::List);
}

bool CLikePattern::MatchesHere(const Piece& What, QStringView Text)
{
    if (What.IsPlain)
        return Text.startsWith(What.Text);
    return std::equal(What.Steps.begin(), What.Steps.end(), Text.begin(),
                      [](const Step& Wanted, QChar Unit) { return MatchesStep(Wanted, Unit.unicode()); });
}

qsizetype CLikePattern::Find(const Piece& What, QStringView Text, qsizetype From)
{
    if (What.IsPlain)
        return Text.indexOf(What.Text, From);
    for (qsizetype place = From; place + What.Size() <= Text.size(); ++place) {
        if (MatchesHere(What, Text.sliced(place)))
            return place;
    }
    return -1;
}

bool Like(QStringView Text, QStringView Pattern, Compare Mode)
{
    const std::optional<CLikePattern> compiled = CLikePattern::Compile(Pattern, Mode);
    return compiled && compiled->Matches(Text);
}

QString EscapeLike(QStringView Text)
{
    QString escaped;
    escaped.reserve(Text.size());
    for (const QChar unit : Text) {
        if (QStringView(u"[*?#").contains(unit))
            escaped.append(u'[').append(unit).append(u']');
        else
            escaped.append(unit);
    }
    return escaped;
}

} // namespace text

// platform/text/Like.h
// The wildcard patterns of the query language: ? * # [list] [!list], the whole text must match.

#ifndef TEXT_LIKE_H
#define TEXT_LIKE_H

#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace text
{

/// Binary tells every UTF-16 unit apart, Text takes as equal what Fold makes equal.
enum class Compare { Binary, Text };

/// One pattern, read once and matched against many texts.
///
/// "?" is one unit, "*" any run (line ends too), "#" one digit 0-9, "[a-z]" one unit of the list, "[!a-z]" one unit
/// that is not in it, "[]" nothing at all, "[!]" an exclamation mark. Everything else stands for itself, "]" outside a
/// list too. With Compare::Text pattern and text are folded first, so a half-width kana with its voicing mark counts as
/// one, and a range of kanji goes by their order instead of their codes. Matching takes at most (length of the text) x
/// (length of the pattern) steps.
class CLikePattern
{
public:
    /// Reads Pattern. Empty when a list is not closed or holds a descending range.
    static std::optional<CLikePattern> Compile(QStringView Pattern, Compare Mode);

    /// Whether the whole of Text matches.
    bool Matches(QStringView Text) const;

    /// About how many steps a text of Size units can take at the most.
    qint64 MostSteps(qsizetype Size) const;

private:
    enum class Kind { Unit, AnyUnit, Digit, List, NotList };

    struct Range
    {
        char16_t First = 0;
        char16_t Last = 0;
        bool IsByOrder = false; // by CompareText instead of by code
    };

    /// What takes exactly one unit of the text.
    struct Step
    {
        Kind What = Kind::Unit;
        char16_t Unit = 0;
        std::vector<Range> Ranges;
    };

    /// The steps between two stars. Text is what they spell when they are all plain units.
    struct Piece
    {
        std::vector<Step> Steps;
        QString Text;
        bool IsPlain = true;

        qsizetype Size() const { return static_cast<qsizetype>(Steps.size()); }
    };

    /// A pattern unit, folded where that is asked for, and the sign that it is in the pattern as written; only a sign
    /// typed in ASCII is a wildcard (？ ends many a Japanese sentence).
    struct Token
    {
        char16_t Unit;
        char16_t Sign;
    };

    explicit CLikePattern(Compare Mode);
    static std::vector<Token> Tokens(QStringView Pattern, Compare Mode);
    bool Read(const std::vector<Token>& Pattern);
    bool AddList(std::span<const Token> List);
    bool AddRange(Step& To, char16_t First, char16_t Last) const;
    void Add(Step What);

    bool MatchesUnits(QStringView Text) const;
    static bool IsInRange(const Range& Among, char16_t Unit);
    static bool MatchesStep(const Step& What, char16_t Unit);
    static bool MatchesHere(const Piece& What, QStringView Text);
    static qsizetype Find(const Piece& What, QStringView Text, qsizetype From);

    Compare m_mode;
    std::vector<Piece> m_pieces; // one more than there are stars
};

/// Whether Text matches Pattern; a pattern that cannot be read matches nothing.
bool Like(QStringView Text, QStringView Pattern, Compare Mode = Compare::Binary);

/// Text with each of [ * ? # put into brackets, so that a pattern takes it as it stands.
QString EscapeLike(QStringView Text);

} // namespace text

#endif // TEXT_LIKE_H

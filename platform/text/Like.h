// platform/text/Like.h
// The wildcard patterns of the query language: ? * # [list] [!list], the whole text must match.

#ifndef TEXT_LIKE_H
#define TEXT_LIKE_H

#include <QString>

#include <optional>
#include <vector>

namespace text
{

/// Binary tells every UTF-16 unit apart, Text takes as equal what Fold makes equal.
enum class Compare { Binary, Text };

/// One pattern, read once and matched against many texts.
///
/// "?" is one unit, "*" any run (line ends too), "#" one digit 0-9, "[a-z]" one unit of the list, "[!a-z]" one unit that
/// is not in it, "[]" nothing at all, "[!]" an exclamation mark. Everything else stands for itself. With Compare::Text
/// pattern and text are folded first, so a half-width kana with its voicing mark counts as one.
/// Matching takes at most (length of the text) x (length of the pattern) steps.
class CLikePattern
{
public:
    /// Reads Pattern. Empty when a list is not closed or holds a descending range.
    static std::optional<CLikePattern> Compile(QStringView Pattern, Compare Mode);

    /// Whether the whole of Text matches.
    bool Matches(QStringView Text) const;

private:
    enum class Kind { Literal, AnyUnit, Digit, List, NotList };

    struct Range
    {
        char16_t First;
        char16_t Last;
    };

    /// One pattern unit that takes exactly one unit of the text.
    struct Step
    {
        Kind What = Kind::Literal;
        char16_t Unit = 0;
        qsizetype FirstRange = 0; // in m_ranges
        qsizetype RangeCount = 0;
    };

    /// The steps between two stars; Text is set when they are all literals.
    struct Piece
    {
        std::vector<Step> Steps;
        QString Text;
        bool IsLiteral = true;
    };

    explicit CLikePattern(Compare Mode);
    bool Read(QStringView Pattern);
    bool ReadList(QStringView Pattern, qsizetype& Place);
    bool AddRanges(QStringView List, Step& To);
    void Add(const Step& What);
    void Join();

    bool MatchesFolded(QStringView Text) const;
    bool MatchesStep(const Step& What, char16_t Unit) const;
    bool MatchesAt(const Piece& What, QStringView Text, qsizetype Place) const;
    qsizetype Find(const Piece& What, QStringView Text, qsizetype From, qsizetype End) const;

    Compare m_mode;
    std::vector<Piece> m_pieces; // one more than there are stars
    std::vector<Range> m_ranges;
};

/// Whether Text matches Pattern; a pattern that cannot be read matches nothing.
bool Like(QStringView Text, QStringView Pattern, Compare Mode = Compare::Binary);

/// Text with each of [ * ? # put into brackets, so that a pattern takes it as it stands.
QString EscapeLike(QStringView Text);

} // namespace text

#endif // TEXT_LIKE_H

// platform/regexp/EcmaPattern.h
// Reads the expressions that users know from scripts (ECMAScript 3) and writes them for PCRE2.

#ifndef REGEXP_ECMAPATTERN_H
#define REGEXP_ECMAPATTERN_H

#include <QString>

namespace regexp
{

struct COptions
{
    bool IgnoreCase = false;
    bool Multiline = false; ///< ^ and $ also behind and before each CR and each LF
};

/// What an expression may have wrong. TooLarge: it is sound, but more than the matcher can hold.
enum class Fault {
    None,
    OpenGroup,
    StrayParenthesis,
    OpenClass,
    NothingToRepeat,
    TooManyRepeats,
    ReversedBounds,
    ReversedRange,
    TrailingBackslash,
    UnknownGroup,
    TooDeep,
    TooLarge,
};

/// What Fault means, in a sentence for the user; empty for None.
QString FaultText(Fault What);

/// How much a matcher that goes back can have to do at most. An expression whose repetitions each repeat one unit has
/// few ways to come by; one that repeats groups may have countless.
struct CEffort
{
    bool IsBounded = true; ///< false: nothing is known
    int Runs = 0;          ///< repetitions that can take more or fewer units
    double Ways = 1;       ///< through alternatives and what may be left out
    double Length = 1;     ///< compares along one of them

    /// Upper bound of the compares for a text of so many units, all starts together; infinite when nothing is known.
    double Compares(qsizetype Units) const;
};

/// An expression as PCRE2 takes it.
struct CEcmaPattern
{
    /// Upper bounds of what is read. PCRE2 holds the number of a repetition in 16 bits and recurses into groups.
    static constexpr int MaxRepeats = 65535;
    static constexpr int MaxDepth = 200;

    QString Pcre;       ///< empty in case of a fault
    int GroupCount = 0; ///< groups that capture
    Fault What = Fault::None;
    qsizetype Offset = -1; ///< where in the expression the fault is, in UTF-16 units
    CEffort Effort;

    /// Reads Source. Never recurses; takes time linear in its length, but for classes with very many ranges.
    ///
    /// The result has no meaning but its plain one: literals and classes are spelled by their codes, ^ $ . \b and back
    /// references as the dialect of scripts wants them. It expects PCRE2 without UTF, with LF as the only newline, a
    /// dot that takes it, unset groups matching empty and, for IgnoreCase, the caseless option.
    ///
    /// Callouts stand wherever a match may come by in more than one way, so that the caller can count its steps: the
    /// compiled matcher counts those of loops only, and (a|a)(a|a)… would go on for years. A callout before a back
    /// reference carries the number of its group (255 for the later ones), the others carry 0.
    static CEcmaPattern Read(QStringView Source, const COptions& Options = {});

    /// Pcre without callouts. Only where the effort is bounded: back references keep theirs.
    QString Uncounted() const;
};

} // namespace regexp

#endif // REGEXP_ECMAPATTERN_H

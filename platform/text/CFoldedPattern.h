// platform/text/CFoldedPattern.h
// A text that is looked for in many others, letter case, width and kana aside.

#ifndef TEXT_CFOLDEDPATTERN_H
#define TEXT_CFOLDEDPATTERN_H

#include <QString>

#include <bitset>

namespace text
{

/// A place in a text, in UTF-16 units; both are -1 where there is none.
struct CFoldedSpan
{
    qsizetype Index = -1;
    qsizetype Length = -1;

    bool operator==(const CFoldedSpan&) const = default;
};

/// Folds what is sought once and the searched texts not at all: most of their units cannot begin a match, and that is
/// told by the unit itself. The empty pattern is found nowhere.
class CFoldedPattern
{
public:
    explicit CFoldedPattern(const QString& Sought = {});

    /// The first match in Text that begins at From or behind it.
    CFoldedSpan First(QStringView Text, qsizetype From = 0) const;
    /// The last match in Text that ends at Until or before it; matches may overlap.
    CFoldedSpan Last(QStringView Text, qsizetype Until) const;

private:
    /// Length of the match that begins at Place; 0 when there is none.
    qsizetype LengthAt(QStringView Text, qsizetype Place) const;

    QString m_folded;
    std::bitset<0x10000> m_isFirst; // the units that can begin a match
};

} // namespace text

#endif // TEXT_CFOLDEDPATTERN_H

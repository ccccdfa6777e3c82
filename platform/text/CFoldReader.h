// platform/text/CFoldReader.h
// The fold unit by unit, for this room's own loops.

#ifndef TEXT_CFOLDREADER_H
#define TEXT_CFOLDREADER_H

#include <QStringView>

namespace text
{

constexpr char16_t HalfVoiced = 0xFF9E;     // ﾞ
constexpr char16_t HalfSemiVoiced = 0xFF9F; // ﾟ

constexpr bool IsHalfKana(char16_t Unit) { return Unit >= 0xFF66 && Unit <= 0xFF9D; }
constexpr bool IsHalfMark(char16_t Unit) { return Unit == HalfVoiced || Unit == HalfSemiVoiced; }

/// What each of the 65,536 units becomes by itself.
const char16_t* FoldTable();

/// The composed katakana of a folded Unit and the half-width Mark behind it; 0 when they do not go together.
char16_t ComposedKana(char16_t Unit, char16_t Mark);

/// Gives out the folded units of a text one by one.
class CFoldReader
{
public:
    explicit CFoldReader(QStringView Text)
        : m_from(Text.utf16())
        , m_end(m_from + Text.size())
        , m_table(FoldTable())
    {}

    bool AtEnd() const { return m_from == m_end; }
    /// Where in the text the next unit begins.
    const char16_t* Place() const { return m_from; }

    char16_t Next()
    {
        const char16_t unit = *m_from++;
        const char16_t folded = m_table[unit];
        if (IsHalfKana(unit) && m_from != m_end && IsHalfMark(*m_from)) {
            if (const char16_t composed = ComposedKana(folded, *m_from)) {
                ++m_from;
                return composed;
            }
        }
        return folded;
    }

private:
    const char16_t* m_from;
    const char16_t* m_end;
    const char16_t* m_table;
};

} // namespace text

#endif // TEXT_CFOLDREADER_H

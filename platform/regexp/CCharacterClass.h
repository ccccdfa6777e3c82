// platform/regexp/CCharacterClass.h
// A set of UTF-16 units, as the classes of an expression spell it.

#ifndef REGEXP_CCHARACTERCLASS_H
#define REGEXP_CCHARACTERCLASS_H

#include <QString>

#include <optional>
#include <vector>

namespace regexp
{

/// Units as ranges. Nothing here knows Unicode's classes: \w and its like are ASCII only, and a surrogate half is a
/// unit as any other.
class CCharacterClass
{
public:
    static constexpr char16_t LastUnit = 0xFFFF;

    /// \d \w \s and, for the capitals, all other units. Empty for any other letter.
    static CCharacterClass Named(QChar Letter);

    /// Needs First <= Last.
    void Add(char16_t First, char16_t Last);
    void Add(const CCharacterClass& Other);
    CCharacterClass Complement() const;

    /// Takes in whatever differs from a member by its letter case only, beyond ASCII. A letter outside ASCII never
    /// brings one inside it (the Kelvin sign is no k). ASCII is left alone: the matcher folds it by itself.
    void AddCaseVariants();

    /// The unit that was added by itself and alone.
    std::optional<char16_t> OnlyUnit() const;

    /// One item of a PCRE2 pattern that takes exactly one unit of the set; of all units but the set's if IsNegated.
    /// A dot stands for every unit: the pattern has to be compiled so that it takes line feeds too.
    QString Pattern(bool IsNegated = false) const;

private:
    struct Range
    {
        char16_t First;
        char16_t Last;
    };

    /// Ascending, and neither touching nor overlapping.
    std::vector<Range> Merged() const;

    std::vector<Range> m_ranges; // as they were added
};

/// Appends Unit to a PCRE2 pattern as a literal without any meaning of its own.
void AppendUnit(QString& Pattern, char16_t Unit);

} // namespace regexp

#endif // REGEXP_CCHARACTERCLASS_H

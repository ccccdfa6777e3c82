// platform/regexp/CEcmaReader.h
// The walk over an expression that CEcmaPattern::Read makes.

#ifndef REGEXP_CECMAREADER_H
#define REGEXP_CECMAREADER_H

#include "platform/regexp/CCharacterClass.h"
#include "platform/regexp/EcmaPattern.h"

#include <optional>
#include <vector>

namespace regexp
{

class CEcmaReader
{
public:
    CEcmaReader(QStringView Source, const COptions& Options);
    CEcmaPattern Read();

private:
    struct Group
    {
        qsizetype Offset;
        bool IsLookahead = false;
        int RunsBefore = 0;
        int Alternatives = 1;
    };
    struct Bounds
    {
        int Least = 0;
        int Most = Endless;
    };
    static constexpr int Endless = -1;

    // What stands at the place of reading; each takes it all.
    void ReadItem();
    void ReadGroup();
    void CloseGroup();
    void ReadAlternative();
    void ReadQuantifier(const Bounds& Times);
    void ReadEscape();
    void ReadNumber();
    void ReadClass();
    void ReadClassItem(CCharacterClass& Into);
    CCharacterClass ReadClassAtom();

    /// Takes a quantifier and its ? if there is one here; a { that begins none is left alone.
    std::optional<Bounds> TakeQuantifier();
    std::optional<Bounds> TakeBounds();
    std::optional<int> TakeCount();
    /// The unit that an escape spells, its backslash already taken.
    char16_t TakeEscapedUnit();
    char16_t TakeOctal();
    std::optional<char16_t> TakeHex(qsizetype Digits);

    void OpenGroup(QStringView Start, qsizetype Offset);
    void CountChoices(const Bounds& Times);
    void WriteSet(const QString& Pattern);
    void WriteUnit(char16_t Unit);
    void WriteBackReference(int Number);
    void WriteAssertion(const QString& Plain, const QString& Multiline);

    bool AtEnd() const { return m_at >= m_source.size(); }
    char16_t Ahead(qsizetype Distance = 0) const;
    bool Take(QStringView Text);
    void Refuse(Fault What, qsizetype Offset);

    static int CountGroups(QStringView Source);

    QStringView m_source;
    COptions m_options;
    CEcmaPattern m_result;
    std::vector<Group> m_open;
    qsizetype m_at = 0;
    int m_alternatives = 1;      // outside of any group
    bool m_isRepeatable = false; // whether a quantifier may stand here
    bool m_isAfterGroup = false;
};

} // namespace regexp

#endif // REGEXP_CECMAREADER_H

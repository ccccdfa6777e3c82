// platform/regexp/CScan.h
// The matches of an expression in one text, one after the other.

#ifndef REGEXP_CSCAN_H
#define REGEXP_CSCAN_H

#include "platform/regexp/CExpression.h"

#include <QStringView>

#include <memory>

namespace regexp
{

struct CMatchData;

/// GaveUp: the expression would take too long on this text, or more memory than it may have; whether there is another
/// match stays open.
enum class Outcome { Found, NotFound, GaveUp };

/// A place in the text, in UTF-16 units; both are -1 where there is none.
struct CSpan
{
    qsizetype Index = -1;
    qsizetype Length = -1;

    bool operator==(const CSpan&) const = default;
};

/// Walks through all matches that do not overlap. After a match the next search starts at its end, after an empty one a
/// unit further: x* on "axxb" gives (0,0) (1,2) (3,0) (4,0).
///
/// The whole walk has one allowance of steps, so it ends in a fraction of a second whatever the expression and the text
/// are. Expression and the text's memory must outlive it.
class CScan
{
public:
    /// Begins at From, which may be anything; ^ is still the start of the text.
    CScan(const CExpression& Expression, QStringView Text, qsizetype From = 0);
    ~CScan();
    CScan(const CScan&) = delete;
    CScan& operator=(const CScan&) = delete;

    /// Begins anew in another text, with a new allowance, in the memory that it has: for looking through many texts.
    void Restart(QStringView Text, qsizetype From = 0);

    /// Goes to the next match. Once there is none, or after giving up, the answer stays the same.
    Outcome Next();

    /// The match that Next has found.
    CSpan Match() const { return Group(0); }
    /// What group Number took, from 1 (0 is the whole match); nothing for a group that took no part or does not exist.
    CSpan Group(int Number) const;

private:
    const CExpression& m_expression;
    QStringView m_text;
    qsizetype m_next;
    Outcome m_outcome = Outcome::NotFound;
    std::unique_ptr<CMatchData> m_data;
};

} // namespace regexp

#endif // REGEXP_CSCAN_H

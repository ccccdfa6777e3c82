// platform/regexp/CExpression.h
// One compiled regular expression of the dialect that users know from scripts.

#ifndef REGEXP_CEXPRESSION_H
#define REGEXP_CEXPRESSION_H

#include "platform/regexp/EcmaPattern.h"

#include <QString>

#include <memory>

namespace regexp
{

struct CEngine;

/// An expression ready to search texts with (CScan). To be moved, not copied; one thread at a time.
///
/// The dialect is ECMAScript 3: \d \w \s are ASCII, "." is any unit but LF, there is no lookbehind, and what Perl adds
/// is either refused or plain letters. Positions count UTF-16 units, and half a surrogate pair can match alone.
class CExpression
{
public:
    /// Compiles Pattern; the empty one matches everywhere, with no length. With IgnoreCase letters beyond ASCII are
    /// alike in both cases too, except where a back reference repeats them. Kana have no case.
    explicit CExpression(QStringView Pattern, const COptions& Options = {});
    ~CExpression();
    CExpression(CExpression&& Other) noexcept;
    CExpression& operator=(CExpression&& Other) noexcept;

    /// An expression that is not sound finds nothing.
    bool IsValid() const { return m_fault == Fault::None; }
    Fault Reason() const { return m_fault; }
    /// Where the fault is, in UTF-16 units of the pattern; -1 when it is sound or the fault has no place.
    qsizetype FaultOffset() const { return m_faultOffset; }
    /// The fault and its place in a sentence for the user; empty for a sound expression.
    QString ErrorText() const;

    /// Groups that capture.
    int GroupCount() const { return m_groupCount; }

private:
    friend class CScan;

    std::unique_ptr<CEngine> m_engine; // null exactly when the expression is not sound
    Fault m_fault = Fault::None;
    qsizetype m_faultOffset = -1;
    int m_groupCount = 0;
};

} // namespace regexp

#endif // REGEXP_CEXPRESSION_H

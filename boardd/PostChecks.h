// boardd/PostChecks.h
// What a visitor may post: reading the fields of a form and telling what is wrong with them.

#ifndef BOARDD_POSTCHECKS_H
#define BOARDD_POSTCHECKS_H

#include "boardd/Boards.h"
#include "boardd/CBoardMessage.h"
#include "boardd/CFields.h"
#include "boardd/CVisitor.h"

/// The fields of a posting or a settings form, cleaned but not yet checked.
struct CPostFields
{
    QString Author, Mail, HomePage, Password, Title, Body;
    std::optional<qint32> ReplyTo; ///< 0 where the form has none; nullopt where it is no number
};

namespace mdlPostChecks
{

CPostFields Read(const CFields& Form);

/// What is wrong with a message for Board, in one Japanese sentence; empty when it may be posted.
QString Fault(const CPostFields& Post, const CBoardInfo& Board);
/// The same for name, addresses and password alone; all of them may be empty.
QString PersonFault(const CPostFields& Post);

/// The message as the board keeps it, still without a number, posted now.
CBoardMessage Message(const CPostFields& Post, const CBoardInfo& Board);

/// Takes the numbers of the settings form over into Visitor; false (Visitor half changed) when one is no number or not
/// in its range.
[[nodiscard]] bool CopyNumbers(const CFields& Form, bool TwoSided, CVisitor& Visitor);

} // namespace mdlPostChecks

#endif

// platform/dao/Crosstab.h
// Finding the columns of a crosstab.

#ifndef DAO_CROSSTAB_H
#define DAO_CROSSTAB_H

#include "platform/dao/CSession.h"

namespace dao::mdlCrosstab
{

/// The statement with one column for each value that PIVOT has among the rows now. Between this and the reading of the
/// rows another program may store more: their values are left out then, and nothing is put under a wrong heading.
/// Throws 3205 where the columns are too many.
jetsql::Statement Spread(CSession& Session, const CSession::Filled& Query);

} // namespace dao::mdlCrosstab

#endif

// platform/dao/MakeTable.h
// Storing the rows of a query as a new table.

#ifndef DAO_MAKETABLE_H
#define DAO_MAKETABLE_H

#include "platform/dao/CSession.h"

namespace dao::mdlMakeTable
{

/// Makes the table and fills it, both or neither, and returns the number of rows. Types and sizes are the columns'; any
/// text may be empty and no field is required. A text column that is no field (also one of which nothing is known) is
/// Text(255), or Memo where a row needs it.
/// Throws 3010 or 3012 where the name is taken, 3125 for a name that is none.
int Run(CSession& Session, const CSession::Filled& Action);

} // namespace dao::mdlMakeTable

#endif

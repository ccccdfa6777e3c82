// platform/dao/RunDefinition.h
// CREATE, ALTER and DROP on the catalogue.

#ifndef DAO_RUNDEFINITION_H
#define DAO_RUNDEFINITION_H

#include "platform/dao/CSchema.h"
#include "platform/jetsql/Definition.h"

namespace dao::mdlDefinition
{

/// Does what the statement says, whole or not at all. Throws Error with the place in the statement of the name that is
/// wrong: besides what CSchema throws 3382 for a size, 3371 for a table to alter and 3376 for any other that is
/// missing, 3125 for a table whose name begins with "~", which are the layer's own.
void Run(CSchema& Schema, const jetsql::Definition& Wanted);

} // namespace dao::mdlDefinition

#endif

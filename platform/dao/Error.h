// platform/dao/Error.h
// The one exception of the database layer under the name its users know.

#ifndef DAO_ERROR_H
#define DAO_ERROR_H

#include "platform/dao/Types.h"

#endif

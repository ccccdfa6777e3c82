// platform/dao/Progress.h
// How a long job tells how far it is, and is broken off.

#ifndef DAO_PROGRESS_H
#define DAO_PROGRESS_H

#include <functional>

namespace dao
{

/// Called every few milliseconds of a long job with how much of it is done, 0 to 100 percent. False breaks the job off
/// with error 3059. Must not use the files that the job works on. Empty: nobody wants to know.
using Progress = std::function<bool(int Percent)>;

} // namespace dao

#endif

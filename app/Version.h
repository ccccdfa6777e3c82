// app/Version.h
// Name and version of the product as users see them.

#ifndef APP_VERSION_H
#define APP_VERSION_H

#include <QString>

namespace mdlVersion
{

inline constexpr int Major = 0;
inline constexpr int Minor = 50;
inline constexpr int Revision = 112;

/// "Tavora".
QString ProductName();

/// "0112".
QString RevisionText();

} // namespace mdlVersion

/// "Ver.0.50", or "Ver.0.50.0112" with the revision.
QString VersionString(bool WithRevision);

#endif // APP_VERSION_H

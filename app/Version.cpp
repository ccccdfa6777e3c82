// app/Version.cpp
// The version as text.

#include "app/Version.h"

using namespace Qt::StringLiterals;

QString mdlVersion::ProductName() { return u"Tavora"_s; }

QString mdlVersion::RevisionText() { return u"%1"_s.arg(Revision, 4, 10, QChar(u'0')); }

QString VersionString(bool WithRevision)
{
    const QString version = u"Ver.%1.%2"_s.arg(mdlVersion::Major).arg(mdlVersion::Minor, 2, 10, QChar(u'0'));
    return WithRevision ? version + u'.' + mdlVersion::RevisionText() : version;
}

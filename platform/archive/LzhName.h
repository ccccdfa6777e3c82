// platform/archive/LzhName.h
// The name of an archive's member, read from its header.

#ifndef ARCHIVE_LZHNAME_H
#define ARCHIVE_LZHNAME_H

#include <QByteArrayView>
#include <QString>

namespace lzh
{

/// The name in Header, the raw bytes of a whole header of level 0 to 3, with its folders and "/" between them.
///
/// Read from the raw bytes because the library, which knows no code page, breaks names at every byte 5C (表, ソ and 能
/// end in one) and lowers bytes of kana. A name is UTF-8 where it cannot be code page 932, and where it can be both and
/// System is the letter of Unix. Control characters are left out and an endless name is cut: it is for show only.
QString ReadName(QByteArrayView Header, char System);

} // namespace lzh

#endif

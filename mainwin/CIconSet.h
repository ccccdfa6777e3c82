// mainwin/CIconSet.h
// The program's pictures as icons: painted as vectors at the size and pixel ratio they are asked for.

#ifndef MAINWIN_CICONSET_H
#define MAINWIN_CICONSET_H

#include <QIcon>
#include <QStringList>

/// The painted pictures by name: the toolbar's keys, "Board" (a board without an icon of its own), "Close" (back from
/// the result list), "More" (the rest of a bar), "MAINICON" and "SMALLICON1" to "SMALLICON4".
///
/// The pictures follow the palette of the application when they are drawn, so a change between a light and a dark theme
/// needs no new icons. Icons may be made before a window exists but only in the user-interface thread.
class CIconSet
{
public:
    static QStringList Names();

    /// The picture, or a null icon for an unknown name.
    static QIcon Picture(const QString& Name);

    /// A board's own icon file. Null when FileName is empty, no readable bitmap, larger than 1 MiB or than 256 x 256
    /// pixels: the files come with other people's board collections, and one must not eat the memory.
    static QIcon FromFile(const QString& FileName);
};

#endif

// platform/desktop/FileFilter.h
// File types of a file dialog, as the program writes them and as the toolkit wants them.

#ifndef DESKTOP_FILEFILTER_H
#define DESKTOP_FILEFILTER_H

#include <QStringList>

namespace mdlFileFilter
{
/// One "description (pattern pattern)" for each pair of Filter, whose pieces are separated by "|" and whose patterns by
/// ";". "*.*" becomes "*": a file without a dot is a file. A description that already ends in its patterns does not
/// repeat them. A last description without patterns shows all files.
QStringList NameFilters(const QString& Filter);
} // namespace mdlFileFilter

#endif

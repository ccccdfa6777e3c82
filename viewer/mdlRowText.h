// viewer/mdlRowText.h
// The selected rows of a list as text for other programs.

#ifndef VIEWER_MDLROWTEXT_H
#define VIEWER_MDLROWTEXT_H

#include <QString>

class CMessageList;

namespace mdlRowText
{

/// A line for each selected row, ended by CR LF, with all its columns and a tab between them: what spreadsheets take.
/// Line breaks and tabs within a text become blanks. Empty without a selection.
QString Selected(const CMessageList& List);

} // namespace mdlRowText

#endif // VIEWER_MDLROWTEXT_H

// viewer/mdlRowText.cpp
// The selected rows of a list as text for other programs.

#include "viewer/mdlRowText.h"

#include "viewer/CMessageList.h"

using namespace Qt::StringLiterals;

namespace
{

QString Cell(QString Text)
{
    Text.replace(u"\r\n"_s, u" "_s);
    for (QChar& c : Text) {
        if (c == u'\t' || c == u'\r' || c == u'\n')
            c = u' ';
    }
    return Text.trimmed();
}

} // namespace

QString mdlRowText::Selected(const CMessageList& List)
{
    QString text;
    for (const auto& range : List.SelectedRanges()) {
        for (int row = range.First; row <= range.Last; ++row) {
            for (int column = 0; column < List.ColumnCount(); ++column)
                text += (column > 0 ? u"\t"_s : QString()) + Cell(List.Text(row, column));
            text += u"\r\n"_s;
        }
    }
    return text;
}

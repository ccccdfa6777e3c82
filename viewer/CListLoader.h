// viewer/CListLoader.h
// Runs any statement and makes list contents of its rows, or tells the user what it did.

#ifndef VIEWER_CLISTLOADER_H
#define VIEWER_CLISTLOADER_H

#include "viewer/CMessageItem.h"

#include <QStringList>

#include <vector>

class Application;
class CBBS;
class CMarks;
class ViewerHost;

namespace jetsql
{
struct Error;
}

/// The step between the statement and the list. Shows the boxes and the size question; touches no list.
class CListLoader
{
public:
    enum class Outcome {
        Refused,  ///< the engine refused it and the user knows; nothing is to change
        Done,     ///< an action ran, its count was told; the data may be different now
        NoRows,   ///< nothing that a list could show; its contents stay
        NotShown, ///< rows that the board list cannot show; the user knows
        Messages,
        RawTable
    };

    struct Result
    {
        Outcome What = Outcome::NoRows;
        std::vector<CMessageItem> Items; ///< of Messages, in the order of the statement
        QStringList Headers;             ///< of RawTable: the field names
        std::vector<QString> Cells;      ///< of RawTable, row after row; Null is empty
        int ErrorOffset = -1;            ///< of Refused: the place in the statement, -1 where none is known
    };

    /// Rows between two calls of ViewerHost::Progress.
    static constexpr int ProgressStep = 2000;
    /// Cells of the largest table that can be shown: each takes some 70 bytes, so this is 700 MB.
    static constexpr qint64 MaxCells = 10'000'000;

    CListLoader(Application& App, CBBS& Board, ViewerHost& Host, const CMarks& Marks);

    /// IsBoardList: only messages can be shown there.
    Result Run(const QString& Sql, bool IsBoardList);
    /// All messages of a select statement without any question or box; none when it is refused or gives other rows.
    std::vector<CMessageItem> ReadQuietly(const QString& Sql);
    /// A message as a row in the colour of its mark.
    CMessageItem MakeItem(CMessage Msg) const;

private:
    Result Refuse(const jetsql::Error& Error) const;
    Result ReadRows(bool IsBoardList);
    Outcome TellAction(qint16 Code);
    int RowsToShow() const;
    std::vector<CMessageItem> ReadMessages(int Count);
    void ReadTable(Result& To);
    void ReadCells(Result& To, int Fields, int Count);
    void Tell(const QString& Text) const;
    void TellProgress(int Done, int Of) const;

    Application& m_app;
    CBBS& m_bbs;
    ViewerHost& m_host;
    const CMarks& m_marks;
};

#endif // VIEWER_CLISTLOADER_H

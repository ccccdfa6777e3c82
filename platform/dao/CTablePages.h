// platform/dao/CTablePages.h
// Finding the rows of tables in the pages of a file, damaged ones left out.

#ifndef DAO_CTABLEPAGES_H
#define DAO_CTABLEPAGES_H

#include "platform/dao/CPageFile.h"
#include "platform/dao/CStoredRow.h"

#include <functional>
#include <vector>

namespace dao
{

/// Goes through each page at most once, whatever the pages say about each other; so it always comes to an end.
class CTablePages
{
public:
    explicit CTablePages(CPageFile& File);

    /// Told each row; an empty optional stands for a row that could not be read. False ends the search.
    using TakeRow = std::function<bool(const std::optional<CStoredRow>& Row)>;

    /// All rows below a table's first page, in order. Returns how many pages of the table could not be read.
    int ReadTable(quint32 Root, const TakeRow& Take);
    /// Entries of an index, from its first page; nothing when a page of it cannot be read.
    std::optional<qint64> CountIndex(quint32 Root);
    /// Pages with rows that no table has led to: what stood below a damaged page. Free ones are not among them.
    /// To be called when all tables have been read.
    std::vector<quint32> StrayPages();
    /// Whether a page holds rows and all of them can be read: what tells a damaged database from a file of another kind.
    bool HoldsRows();
    /// The rows of one page.
    std::vector<std::optional<CStoredRow>> ReadPage(quint32 Number);

    /// Pages looked at so far, for showing how far the work is.
    quint32 VisitedCount() const { return m_visitedCount; }

private:
    bool Visit(quint32 Number);
    void VisitFreePages();
    void AddChildren(const QByteArray& Page, qsizetype Header, std::vector<quint32>& Pending) const;
    std::vector<qsizetype> CellPlaces(const QByteArray& Page, qsizetype Header, qsizetype HeaderSize) const;
    std::vector<std::optional<CStoredRow>> Rows(const QByteArray& Page, qsizetype Header);
    std::optional<CStoredRow> ReadCell(const QByteArray& Page, qsizetype Place);
    void AppendOverflow(QByteArray& Payload, qint64 Size, quint32 First);

    CPageFile& m_file;
    std::vector<bool> m_visited;
    quint32 m_visitedCount = 0;
};

} // namespace dao

#endif

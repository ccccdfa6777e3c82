// platform/dao/CTablePages.cpp
// The trees of SQLite's file format, read with distrust.

#include "platform/dao/CTablePages.h"

#include <algorithm>

namespace dao
{

namespace
{

constexpr char IndexInner = 2;
constexpr char IndexLeaf = 10;
constexpr char TableInner = 5;
constexpr char TableLeaf = 13;
constexpr qsizetype InnerHeaderSize = 12;
constexpr qsizetype LeafHeaderSize = 8;

/// The file's own header stands before that of its first page.
qsizetype HeaderOf(quint32 Number) { return Number == 1 ? 100 : 0; }

} // namespace

CTablePages::CTablePages(CPageFile& File)
    : m_file(File)
    , m_visited(size_t(File.PageCount()) + 1)
{}

bool CTablePages::Visit(quint32 Number)
{
    if (Number == 0 || Number > m_file.PageCount() || m_visited[Number])
        return false;
    m_visited[Number] = true;
    ++m_visitedCount;
    return true;
}

int CTablePages::ReadTable(quint32 Root, const TakeRow& Take)
{
    int unreadable = 0;
    std::vector<quint32> pending{Root};
    while (!pending.empty()) {
        const quint32 number = pending.back();
        pending.pop_back();
        const QByteArray page = Visit(number) ? m_file.Page(number) : QByteArray();
        const qsizetype header = HeaderOf(number);
        const char type = page.isEmpty() ? '\0' : page[header];
        if (type == TableInner)
            AddChildren(page, header, pending);
        else if (type != TableLeaf)
            ++unreadable;
        else if (const auto rows = Rows(page, header); !std::all_of(rows.begin(), rows.end(), Take))
            return unreadable;
    }
    return unreadable;
}

std::optional<qint64> CTablePages::CountIndex(quint32 Root)
{
    qint64 entries = 0;
    std::vector<quint32> pending{Root};
    while (!pending.empty()) {
        const quint32 number = pending.back();
        pending.pop_back();
        const QByteArray page = Visit(number) ? m_file.Page(number) : QByteArray();
        const char type = page.isEmpty() ? '\0' : page[HeaderOf(number)];
        if (type != IndexInner && type != IndexLeaf)
            return std::nullopt;
        entries += CPageFile::Number16(page, HeaderOf(number) + 3);
        if (type == IndexInner)
            AddChildren(page, HeaderOf(number), pending);
    }
    return entries;
}

/// The last one first, as the pending ones are taken from the end.
void CTablePages::AddChildren(const QByteArray& Page, qsizetype Header, std::vector<quint32>& Pending) const
{
    Pending.push_back(CPageFile::Number32(Page, Header + 8));
    const std::vector<qsizetype> places = CellPlaces(Page, Header, InnerHeaderSize);
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        Pending.push_back(*place + 4 <= Page.size() ? CPageFile::Number32(Page, *place) : 0);
}

std::vector<qsizetype> CTablePages::CellPlaces(const QByteArray& Page, qsizetype Header, qsizetype HeaderSize) const
{
    const qsizetype count = CPageFile::Number16(Page, Header + 3);
    const qsizetype most = (m_file.UsableSize() - Header - HeaderSize) / 2;
    std::vector<qsizetype> places;
    for (qsizetype cell = 0; cell < std::min(count, most); ++cell)
        places.push_back(CPageFile::Number16(Page, Header + HeaderSize + 2 * cell));
    return places;
}

std::vector<std::optional<CStoredRow>> CTablePages::Rows(const QByteArray& Page, qsizetype Header)
{
    std::vector<std::optional<CStoredRow>> rows;
    for (const qsizetype place : CellPlaces(Page, Header, LeafHeaderSize))
        rows.push_back(ReadCell(Page, place));
    return rows;
}

std::optional<CStoredRow> CTablePages::ReadCell(const QByteArray& Page, qsizetype Place)
{
    const QByteArrayView usable = QByteArrayView(Page).first(m_file.UsableSize());
    const auto size = CStoredRow::ReadVarint(usable, Place);
    const auto rowId = CStoredRow::ReadVarint(usable, Place);
    if (!size || !rowId || *size > quint64(m_file.PageCount()) * quint64(m_file.PageSize()))
        return std::nullopt;
    // A row that is too long for a page leaves at least so much of itself in it.
    const qint64 room = m_file.UsableSize();
    const qint64 total = qint64(*size);
    const qint64 least = (room - 12) * 32 / 255 - 23;
    const qint64 wanted = least + (total - least) % (room - 4);
    const qint64 local = total <= room - 35 ? total : wanted <= room - 35 ? wanted : least;
    if (local > usable.size() - Place)
        return std::nullopt;
    QByteArray payload = usable.sliced(Place, local).toByteArray();
    if (local < total && Place + local + 4 <= usable.size())
        AppendOverflow(payload, total, CPageFile::Number32(Page, Place + local));
    return CStoredRow::Read(qint64(*rowId), payload, total);
}

void CTablePages::AppendOverflow(QByteArray& Payload, qint64 Size, quint32 First)
{
    for (quint32 number = First; Payload.size() < Size && Visit(number);) {
        const QByteArray page = m_file.Page(number);
        // Nobody writes a page of nothing but zeros; a failing disk gives one.
        if (page.isEmpty() || page.count('\0') == page.size())
            return;
        number = CPageFile::Number32(page, 0);
        Payload += page.mid(4, std::min<qint64>(m_file.UsableSize() - 4, Size - Payload.size()));
    }
}

void CTablePages::VisitFreePages()
{
    for (quint32 trunk = m_file.FirstFreePage(); Visit(trunk);) {
        const QByteArray page = m_file.Page(trunk);
        if (page.isEmpty())
            return;
        const quint32 count = std::min<quint32>(CPageFile::Number32(page, 4), quint32(m_file.UsableSize() / 4 - 2));
        for (quint32 leaf = 0; leaf < count; ++leaf)
            Visit(CPageFile::Number32(page, 8 + 4 * leaf));
        trunk = CPageFile::Number32(page, 0);
    }
}

std::vector<quint32> CTablePages::StrayPages()
{
    VisitFreePages();
    std::vector<quint32> pages;
    for (quint32 number = 2; number <= m_file.PageCount(); ++number) {
        if (!m_visited[number] && m_file.Page(number).startsWith(TableLeaf))
            pages.push_back(number);
    }
    return pages;
}

bool CTablePages::HoldsRows()
{
    for (quint32 number = 2; number <= m_file.PageCount(); ++number) {
        if (!m_file.Page(number).startsWith(TableLeaf))
            continue;
        const std::vector<std::optional<CStoredRow>> rows = ReadPage(number);
        if (!rows.empty() && std::all_of(rows.begin(), rows.end(), [](const auto& Row) { return Row.has_value(); }))
            return true;
    }
    return false;
}

std::vector<std::optional<CStoredRow>> CTablePages::ReadPage(quint32 Number)
{
    Visit(Number);
    return Rows(m_file.Page(Number), HeaderOf(Number));
}

} // namespace dao

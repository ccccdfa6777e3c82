// platform/dao/CRecovery.cpp
// Reading what is there into what is made anew.

#include "platform/dao/CRecovery.h"

#include "platform/dao/CRun.h"
#include "platform/dao/CSchema.h"
#include "platform/dao/SchemaText.h"

#include <QStringConverter>

#include <algorithm>

namespace dao
{

using namespace Qt::StringLiterals;
using Kind = CStoredRow::Kind;
using Encoding = CPageFile::Encoding;

namespace
{

constexpr int BrokenOff = 3059;

/// The first page begins the table in which SQLite keeps the definitions.
constexpr quint32 DefinitionsRoot = 1;
/// type, name, tbl_name, rootpage, sql
constexpr size_t DefinitionColumns = 5;

/// name, seq
constexpr size_t CounterColumns = 2;

/// Errors that have nothing to do with the one statement that was tried.
bool IsFatal(int Number) { return Number == 3026 || Number == 3043 || Number == 3040 || Number == BrokenOff; }

bool IsInternal(const QString& Name) { return Name.startsWith(u"sqlite_"_s, Qt::CaseInsensitive); }

QString FirstWord(const QString& Sql) { return Sql.section(u' ', 0, 0, QString::SectionSkipEmpty).toUpper(); }

} // namespace

CRecovery::CRecovery(CPageFile& File, CConnection& Target, const Progress& Report)
    : m_file(File)
    , m_target(Target)
    , m_report(Report)
    , m_pages(File)
{}

Recovered CRecovery::Run(const std::vector<TableDef>& Known)
{
    m_target.Run("BEGIN");
    ReadObjects();
    MakeTables(Known);
    ReadTables();
    ReadCounters();
    CountIndexes();
    ReadStrayPages();
    for (const Place& place : m_tables)
        m_result.Tables.push_back(place.Table.Result());
    MakeOtherObjects();
    m_target.Run("COMMIT");
    m_target.Run("PRAGMA user_version=" + QByteArray::number(m_file.UserVersion()));
    return m_result;
}

void CRecovery::KeepGoing()
{
    const quint32 total = std::max<quint32>(1, m_file.PageCount());
    if (m_report && !m_report(int(std::min<quint64>(99, quint64(m_pages.VisitedCount()) * 100 / total))))
        throw jetsql::MakeError(BrokenOff);
}

QString CRecovery::Text(const CStoredRow::StoredValue& Value) const
{
    if (Value.Type != Kind::Text)
        return {};
    if (m_file.TextEncoding() == Encoding::Utf8)
        return QString::fromUtf8(Value.Bytes);
    const bool isLittle = m_file.TextEncoding() == Encoding::Utf16Le;
    return QStringDecoder(isLittle ? QStringConverter::Utf16LE : QStringConverter::Utf16BE)(Value.Bytes);
}

void CRecovery::ReadObjects()
{
    m_pages.ReadTable(DefinitionsRoot, [this](const std::optional<CStoredRow>& Row) {
        if (Row && !Row->IsCut() && Row->Values().size() == DefinitionColumns)
            TakeObject(*Row);
        return true;
    });
}

void CRecovery::TakeObject(const CStoredRow& Row)
{
    const auto& values = Row.Values();
    const qint64 root = values[3].Type == Kind::Integer ? values[3].Integer : 0;
    m_objects.push_back({Text(values[0]), Text(values[1]), Text(values[2]), root > 0 ? quint32(root) : 0, {}});
    // Only what makes something is run; the indexes of keys have no text and come with their tables.
    const QString sql = Text(values[4]);
    if (FirstWord(sql) == u"CREATE"_s && !IsInternal(m_objects.back().Name))
        m_objects.back().Sql = sql;
}

bool CRecovery::TryRun(const QByteArray& Sql, const QString& Name)
{
    try {
        CRun(m_target, Sql).Finish(); // never more than one statement
        return true;
    } catch (const Error& error) {
        if (IsFatal(error.Number))
            throw;
        m_result.LostObjects.append(Name);
        return false;
    }
}

void CRecovery::MakeTables(const std::vector<TableDef>& Known)
{
    for (const Object& object : m_objects) {
        if (object.Type != u"table"_s || object.Root == 0 || object.Sql.isEmpty())
            continue;
        if (TryRun(object.Sql.toUtf8(), object.Name))
            AddTable(object.Name, object.Root);
    }
    CSchema::MakeOwnTables(m_target);
    for (const TableDef& table : Known) {
        if (!HasTable(table.Name) && TryRun(mdlSchemaText::CreateTable(table), table.Name))
            AddTable(table.Name, 0);
    }
}

void CRecovery::AddTable(const QString& Name, quint32 Root)
{
    m_tables.push_back({CRecoveredTable(m_target, Name, m_file.TextEncoding()), Root});
}

bool CRecovery::HasTable(const QString& Name) const
{
    return std::any_of(m_tables.begin(), m_tables.end(), [&](const Place& Entry) {
        return Entry.Table.Result().Name.compare(Name, Qt::CaseInsensitive) == 0;
    });
}

void CRecovery::ReadTables()
{
    for (Place& place : m_tables) {
        if (place.Root == 0) {
            place.Table.AddUnreadablePages(1);
            continue;
        }
        int row = 0;
        const int unreadable = m_pages.ReadTable(place.Root, [&](const std::optional<CStoredRow>& Row) {
            if (row++ % 64 == 0)
                KeepGoing();
            place.Table.Add(Row);
            return true;
        });
        place.Table.AddUnreadablePages(unreadable);
    }
}

/// SQLite's own tables are read for their pages' sake too: they are no stray ones.
void CRecovery::ReadCounters()
{
    for (const Object& object : m_objects) {
        if (object.Type != u"table"_s || object.Root == 0 || !IsInternal(object.Name))
            continue;
        const bool holdsCounters = object.Name == u"sqlite_sequence"_s;
        m_pages.ReadTable(object.Root, [&](const std::optional<CStoredRow>& Row) {
            if (holdsCounters && Row && !Row->IsCut() && Row->Values().size() == CounterColumns)
                RaiseCounter(Text(Row->Values()[0]), Row->Values()[1].Integer);
            return true;
        });
    }
}

/// Numbers that were given out and removed again are not given out a second time.
void CRecovery::RaiseCounter(const QString& Table, qint64 Last)
{
    const bool hasCounters =
        m_target.RunForNumber("SELECT count(*) FROM sqlite_master WHERE name = 'sqlite_sequence'") > 0;
    if (!HasTable(Table) || !hasCounters)
        return;
    const Value name = Value::FromText(Table);
    for (const char* sql : {"INSERT INTO sqlite_sequence (name, seq) SELECT ?1, ?2 "
                            "WHERE NOT EXISTS (SELECT 1 FROM sqlite_sequence WHERE name = ?1)",
                            "UPDATE sqlite_sequence SET seq = max(seq, ?2) WHERE name = ?1"}) {
        CRun run(m_target, sql);
        run.Bind(1, name);
        run.BindNumber(2, Last);
        run.Finish();
    }
}

void CRecovery::CountIndexes()
{
    for (const Object& object : m_objects) {
        if (object.Type != u"index"_s || object.Root == 0)
            continue;
        for (Place& place : m_tables) {
            if (place.Table.Result().Name == object.Table)
                place.Table.Expect(m_pages.CountIndex(object.Root).value_or(0));
        }
    }
}

void CRecovery::ReadStrayPages()
{
    for (const quint32 number : m_pages.StrayPages()) {
        KeepGoing();
        const std::vector<std::optional<CStoredRow>> rows = m_pages.ReadPage(number);
        CRecoveredTable* owner = OwnerOf(rows);
        if (!owner)
            ++m_result.StrayPages;
        for (const std::optional<CStoredRow>& row : rows) {
            if (owner)
                owner->Add(row);
        }
    }
}

/// The only damaged table that all readable rows of the page look like.
CRecoveredTable* CRecovery::OwnerOf(const std::vector<std::optional<CStoredRow>>& Rows)
{
    CRecoveredTable* owner = nullptr;
    for (Place& place : m_tables) {
        const bool isCandidate = place.Table.Result().UnreadablePages > 0;
        const auto fits = [&](const std::optional<CStoredRow>& Row) { return !Row || place.Table.LooksLikeMine(*Row); };
        if (!isCandidate || !std::all_of(Rows.begin(), Rows.end(), fits))
            continue;
        if (owner)
            return nullptr;
        owner = &place.Table;
    }
    return owner;
}

/// After the rows: an index that does not accept them is lost, and not they; and nothing may fire while they come in.
void CRecovery::MakeOtherObjects()
{
    for (const Object& object : m_objects) {
        if (object.Sql.isEmpty() || (object.Type == u"table"_s && object.Root != 0))
            continue;
        KeepGoing();
        TryRun(object.Sql.toUtf8(), object.Name);
    }
}

} // namespace dao

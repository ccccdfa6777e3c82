// store/CConversion.cpp
// One step for each table: the old one out of the way, the new one made, the rows copied, the old one dropped.

#include "store/CConversion.h"

#include "platform/dao/CTransaction.h"
#include "platform/text/Fold.h"
#include "store/CTableCopy.h"
#include "store/FileVersion.h"
#include "store/Schema.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

const QString BBS = u"BBS"_s;
const QString Message = u"Message"_s;
const QString Mark = u"Mark"_s;

/// The first version with a row for each table, and the first one whose boards have a pattern for past logs.
QString VersionWithRows() { return u"Ver.0.14"_s; }
QString VersionWithPattern() { return u"Ver.0.30"_s; }

QStringList BoardFields(const QString& OldVersion)
{
    QStringList fields{u"BBS_Name"_s, u"ShortName"_s, u"URL"_s,       u"HowtouseURL"_s, u"MaxCount"_s,
                       u"Hitokoto"_s, u"VisitLoad"_s, u"ListOrder"_s, u"Identifier"_s};
    if (OldVersion >= VersionWithPattern())
        fields.append(u"DefaultLogFile"_s);
    return fields;
}

QStringList MessageFields()
{
    return {u"BBS_ID"_s,   u"ID"_s,       u"Read"_s,      u"Subject"_s, u"Homepage"_s,   u"Mail"_s,
            u"PostName"_s, u"PostDate"_s, u"InReplyTo"_s, u"Body"_s,    u"RootThread"_s, u"Mark"_s};
}

QStringList MarkFields() { return {u"ID"_s, u"Name"_s, u"ForeColor"_s, u"BackColor"_s}; }

} // namespace

CConversion::CConversion(dao::Database& Db, dao::Progress Report)
    : m_db(Db)
    , m_report(std::move(Report))
{}

bool CConversion::Try(const std::function<void()>& Step)
{
    try {
        dao::CTransaction transaction(m_db);
        Step();
        transaction.Keep();
        return true;
    } catch (const dao::Error& error) {
        m_reason = error;
        return false;
    }
}

bool CConversion::IsToBeConverted(const QString& Table, const QString& Current)
{
    return IsOlder(Table, Current) || !HasTable(Table);
}

/// A version that cannot be read is no sign of an old table when the file is in trouble.
bool CConversion::IsOlder(const QString& Table, const QString& Current)
{
    try {
        return mdlFileVersion::Read(m_db, Table) < Current;
    } catch (const dao::Error& error) {
        if (mdlFileVersion::IsFileTrouble(error.Number))
            throw;
        return true;
    }
}

bool CConversion::UpgradeVersionTable()
{
    return Try([this] {
        if (!IsOlder({}, VersionWithRows()))
            return;
        if (!mdlSchema::WriteVersionTable(m_db, mdlFileVersion::ReadOrUnknown(m_db, {})))
            ThrowRefusal();
    });
}

bool CConversion::ConvertBBSTable()
{
    return Try([this] {
        if (!IsToBeConverted(BBS, mdlSchema::BBSTableVersion()))
            return;
        const QStringList fields = BoardFields(mdlFileVersion::ReadOrUnknown(m_db, BBS));
        ConvertTable(BBS, mdlSchema::CreateBBSTable, [&](const QString& OldTable) {
            CTableCopy copy(m_db, OldTable, BBS, fields);
            copy.ChangeRows();
            NoteLeftOut(BBS, copy.LeftOut());
        });
    });
}

bool CConversion::ConvertMessageTable()
{
    return Try([this] {
        if (!IsToBeConverted(Message, mdlSchema::MessageTableVersion()))
            return;
        ConvertTable(Message, mdlSchema::CreateMessageTable, [this](const QString& OldTable) {
            CTableCopy copy(m_db, OldTable, Message, MessageFields());
            copy.AddRows(m_report);
            NoteLeftOut(Message, copy.LeftOut());
        });
        m_hasMovedRows = true;
    });
}

bool CConversion::ConvertMarkTable()
{
    return Try([this] {
        if (!IsToBeConverted(Mark, mdlSchema::MarkTableVersion()))
            return;
        ConvertTable(Mark, mdlSchema::CreateMarkTable, [this](const QString& OldTable) {
            CTableCopy copy(m_db, OldTable, Mark, MarkFields());
            copy.AddRows({});
            NoteLeftOut(Mark, copy.LeftOut());
        });
        m_hasMovedRows = true;
    });
}

bool CConversion::WriteVersions()
{
    return Try([this] {
        if (!mdlSchema::WriteVersionTable(m_db, {}))
            ThrowRefusal();
    });
}

void CConversion::ConvertTable(const QString& Table, bool (*Create)(dao::Database&),
                               const std::function<void(const QString& OldTable)>& CopyRows)
{
    const QStringList oldTables = TakeAway(Table);
    if (!Create(m_db))
        ThrowRefusal();
    for (const QString& oldTable : oldTables) {
        CopyRows(oldTable);
        m_db.DeleteTable(oldTable);
    }
}

/// The making of tables does not tell why it failed; a transaction that a full disk has taken does.
void CConversion::ThrowRefusal()
{
    const dao::CTransaction probe(m_db);
    throw jetsql::MakeError(3000);
}

/// The tables that hold the old rows. A conversion that an earlier program did not finish has left most of them in the
/// second table, and a part in the first.
QStringList CConversion::TakeAway(const QString& Table)
{
    const QString back = Table + u"_BACK"_s;
    QStringList tables;
    if (HasTable(Table)) {
        tables.append(FreeTableName(back));
        m_db.RenameTable(Table, tables.first());
    }
    if (HasTable(back) && !tables.contains(back))
        tables.append(back);
    return tables;
}

QString CConversion::FreeTableName(const QString& Wanted)
{
    QString name = Wanted;
    for (int number = 2; HasTable(name) || m_db.QueryDefs().contains(name); ++number)
        name = Wanted + QString::number(number);
    return name;
}

bool CConversion::HasTable(const QString& Table)
{
    const auto& tables = m_db.TableDefs();
    return std::any_of(tables.begin(), tables.end(),
                       [&](const dao::TableDef& Def) { return text::EqualText(Def.Name, Table); });
}

void CConversion::NoteLeftOut(const QString& Table, int Count)
{
    if (Count > 0)
        m_leftOut[Table] += Count;
}

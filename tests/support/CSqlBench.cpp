// tests/support/CSqlBench.cpp
// Runs statements of the engine's dialect on a small database and tells all that came of them.

#include "tests/support/CSqlBench.h"

#include "tests/support/CRawDatabase.h"

#include <QFile>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using jetsql::FieldType;

namespace
{

QString TypeName(FieldType Type)
{
    switch (Type) {
    case FieldType::Null: return u"?"_s;
    case FieldType::Boolean: return u"Boolean"_s;
    case FieldType::Byte: return u"Byte"_s;
    case FieldType::Integer: return u"Integer"_s;
    case FieldType::Long: return u"Long"_s;
    case FieldType::Currency: return u"Currency"_s;
    case FieldType::Single: return u"Single"_s;
    case FieldType::Double: return u"Double"_s;
    case FieldType::Date: return u"Date"_s;
    case FieldType::Text: return u"Text"_s;
    case FieldType::Memo: return u"Memo"_s;
    default: return QString::number(int(Type));
    }
}

dao::TableDef Definition(const jetsql::TableInfo& Table)
{
    dao::TableDef made;
    made.Name = Table.Name;
    for (const jetsql::FieldInfo& field : Table.Fields)
        made.Fields.push_back({field.Name, field.Type, field.Size, field.AllowZeroLength, field.Required, {}});
    for (const std::vector<int>& key : Table.UniqueKeys) {
        QStringList names;
        for (const int field : key)
            names.append(Table.Fields[size_t(field)].Name);
        made.Indexes.push_back({u"PK"_s, names, false, true});
    }
    return made;
}

/// Gives the parameters that have a value theirs.
void Fill(dao::QueryDef& Query, const QMap<QString, dao::Value>& Values)
{
    int index = 0;
    for (const dao::ParameterInfo& parameter : Query.Parameters()) {
        if (Values.contains(parameter.Name))
            Query.SetParameter(index, Values[parameter.Name]);
        ++index;
    }
}

void ReadRows(dao::Recordset& From, CSqlBench::Outcome& To)
{
    for (int field = 0; field < From.FieldCount(); ++field)
        To.Columns.append(From.Field(field).Name + u' ' + TypeName(From.Field(field).Type));
    for (; !From.Eof(); From.MoveNext()) {
        QStringList row;
        for (int field = 0; field < From.FieldCount(); ++field)
            row.append(From.IsNull(field) ? u"Null"_s : From.Get(field).ToText());
        To.Rows.append(row.join(u'|'));
    }
}

} // namespace

CSqlBench::CSqlBench()
{
    const auto text = [](const QString& name, int size = 255) { return jetsql::FieldInfo{name, FieldType::Text, size, true}; };
    const auto number = [](const QString& name) { return jetsql::FieldInfo{name, FieldType::Long}; };
    AddTable({u"BBS"_s, {number(u"BBS_ID"_s), text(u"BBS_Name"_s), text(u"ShortName"_s), text(u"URL"_s), text(u"HowtouseURL"_s), number(u"MaxCount"_s),
                         number(u"Hitokoto"_s), {u"VisitLoad"_s, FieldType::Boolean}, number(u"ListOrder"_s), text(u"DefaultLogFile"_s), text(u"Identifier"_s)},
              {{0}}});
    AddTable({u"Message"_s, {number(u"BBS_ID"_s), number(u"ID"_s), {u"Read"_s, FieldType::Boolean}, text(u"Subject"_s), text(u"Homepage"_s), text(u"Mail"_s),
                             text(u"PostName"_s), {u"PostDate"_s, FieldType::Date}, number(u"InReplyTo"_s), {u"Body"_s, FieldType::Memo}, number(u"RootThread"_s),
                             number(u"Mark"_s)},
              {{1, 0}}});
    AddTable({u"Mark"_s, {number(u"ID"_s), text(u"Name"_s), number(u"ForeColor"_s), number(u"BackColor"_s)}, {{0}}});
    AddTable({u"Version"_s, {text(u"Table"_s), text(u"Version"_s, 8)}, {}});
    AddTable({u"Kinds"_s,
              {{u"B"_s, FieldType::Byte},
               {u"I"_s, FieldType::Integer},
               {u"L"_s, FieldType::Long},
               {u"C"_s, FieldType::Currency},
               {u"S"_s, FieldType::Single},
               {u"D"_s, FieldType::Double},
               {u"W"_s, FieldType::Date},
               {u"F"_s, FieldType::Boolean},
               text(u"T"_s)},
              {}});
}

CSqlBench::~CSqlBench() = default;

dao::Database& CSqlBench::Db()
{
    if (!m_db) {
        static const QTemporaryDir first; // made once, as each commit waits for the disk
        const QString model = first.filePath(u"a.mdb"_s);
        if (!QFile::exists(model))
            MakeTables(model);
        QFile::copy(model, m_folder.filePath(u"a.mdb"_s));
        m_db = dao::Database::Open(m_folder.filePath(u"a.mdb"_s));
    }
    return *m_db;
}

void CSqlBench::MakeTables(const QString& FileName) const
{
    const auto db = dao::Database::Create(FileName);
    for (const jetsql::TableInfo& table : m_tables)
        db->AppendTable(Definition(table));
    CRawDatabase(FileName).Run(u"CREATE INDEX MessageRead ON Message(BBS_ID, Read); CREATE INDEX MessageBoard ON "
                               "Message(BBS_ID, ID); CREATE INDEX MessageThread ON Message(RootThread)"_s);
}

void CSqlBench::AddQuery(const QString& Name, const QString& Sql)
{
    Db().CreateQueryDef(Name, u"SELECT 1"_s);
    Raw(u"UPDATE \"~Queries\" SET Sql = '%2' WHERE Name = '%1'"_s.arg(Name, QString(Sql).replace(u'\'', u"''"_s)));
    m_db = dao::Database::Open(m_db->Name());
}

QString CSqlBench::Raw(const QString& Sql) { return CRawDatabase(Db().Name()).Run(Sql); }

QString CSqlBench::Plan(const QString& Sql)
{
    const QByteArray written = "EXPLAIN QUERY PLAN " + jetsql::Compile(jetsql::TakeShape(Sql), *this)->Sql;
    sqlite3* file = nullptr;
    sqlite3_stmt* plan = nullptr;
    sqlite3_open(Db().Name().toUtf8().constData(), &file);
    jetsql::RegisterFunctions(file);
    sqlite3_prepare_v2(file, written.constData(), -1, &plan, nullptr);
    QStringList lines;
    while (plan && sqlite3_step(plan) == SQLITE_ROW)
        lines.append(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(plan, 3))));
    sqlite3_finalize(plan);
    sqlite3_close(file);
    return lines.join(u'\n');
}

const jetsql::TableInfo* CSqlBench::FindTable(QStringView Name) const
{
    for (const jetsql::TableInfo& table : m_tables)
        if (Name.compare(table.Name, Qt::CaseInsensitive) == 0)
            return &table;
    return nullptr;
}

CSqlBench::Outcome CSqlBench::Run(const QString& Sql, const QMap<QString, dao::Value>& Parameters)
{
    Outcome outcome;
    try {
        const auto query = Db().CreateQueryDef(QString(), Sql);
        for (const dao::ParameterInfo& parameter : query->Parameters())
            outcome.Parameters.append(parameter.Name + u' ' + QString::number(int(parameter.Type)));
        Fill(*query, Parameters);
        if (jetsql::ReturnsRows(query->Type())) {
            ReadRows(*query->OpenRecordset(), outcome);
        } else {
            query->Execute();
            outcome.Affected = query->RecordsAffected();
        }
    } catch (const dao::Error& refused) {
        outcome.ErrorNumber = refused.Number;
        outcome.ErrorOffset = refused.Offset;
        outcome.ErrorText = refused.Description;
    }
    return outcome;
}

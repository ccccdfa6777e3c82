// tests/support/CSqlBench.cpp
// Runs statements of the engine's dialect on a SQLite database in memory, without the database objects.

#include "tests/support/CSqlBench.h"

#include "platform/text/Format.h"

#include <cmath>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using jetsql::FieldType;
using jetsql::Value;

namespace {

struct Finalizer
{
    void operator()(sqlite3_stmt* Statement) const { sqlite3_finalize(Statement); }
};
using Prepared = std::unique_ptr<sqlite3_stmt, Finalizer>;

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

QString Stored(sqlite3_stmt* Row, int Column)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(Row, Column)), sqlite3_column_bytes(Row, Column));
}

QString Shown(sqlite3_stmt* Row, int Column, FieldType Type)
{
    if (sqlite3_column_type(Row, Column) == SQLITE_NULL)
        return u"Null"_s;
    switch (Type) {
    case FieldType::Boolean: return sqlite3_column_int(Row, Column) ? u"True"_s : u"False"_s;
    case FieldType::Date: return text::GeneralDate(sqlite3_column_double(Row, Column));
    case FieldType::Single: return text::SingleToText(float(sqlite3_column_double(Row, Column)));
    case FieldType::Currency:
    case FieldType::Double: return text::NumberToText(sqlite3_column_double(Row, Column));
    default: return Stored(Row, Column);
    }
}

void BindValue(sqlite3_stmt* Statement, int Index, const Value& Bound)
{
    if (Bound.IsNull()) {
        sqlite3_bind_null(Statement, Index);
    } else if (jetsql::IsText(Bound.Type())) {
        const QByteArray bytes = Bound.TextRef().toUtf8();
        sqlite3_bind_text(Statement, Index, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
    } else if (jetsql::IsWhole(Bound.Type())) {
        sqlite3_bind_int64(Statement, Index, Bound.WholePart());
    } else {
        sqlite3_bind_double(Statement, Index, Bound.RealPart());
    }
}

}

void CSqlBench::Closer::operator()(sqlite3* Connection) const { sqlite3_close(Connection); }

CSqlBench::CSqlBench()
{
    sqlite3* connection = nullptr;
    sqlite3_open(":memory:", &connection);
    m_connection.reset(connection);
    Raw("PRAGMA encoding='UTF-16le'");   // as the files have it
    jetsql::RegisterFunctions(connection);
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
    AddTable({u"Kinds"_s, {{u"B"_s, FieldType::Byte}, {u"I"_s, FieldType::Integer}, {u"L"_s, FieldType::Long}, {u"C"_s, FieldType::Currency},
                           {u"S"_s, FieldType::Single}, {u"D"_s, FieldType::Double}, {u"W"_s, FieldType::Date}, {u"F"_s, FieldType::Boolean}, text(u"T"_s)}, {}});
    Raw("CREATE INDEX MessageRead ON Message(BBS_ID, Read); CREATE INDEX MessageBoard ON Message(BBS_ID, ID);"
        "CREATE INDEX MessageThread ON Message(RootThread)");
}

CSqlBench::~CSqlBench() = default;

void CSqlBench::AddTable(jetsql::TableInfo Table)
{
    QByteArrayList columns;
    for (const jetsql::FieldInfo& field : Table.Fields) {
        const char* type = jetsql::IsWhole(field.Type) ? " INTEGER" : jetsql::IsText(field.Type) ? " TEXT" : " REAL";
        columns.append('"' + field.Name.toUtf8() + '"' + type);
    }
    for (const std::vector<int>& key : Table.UniqueKeys) {
        QByteArrayList names;
        for (const int field : key)
            names.append(Table.Fields[size_t(field)].Name.toUtf8());
        columns.append("UNIQUE(" + names.join(',') + ')');
    }
    Raw("CREATE TABLE \"" + Table.Name.toUtf8() + "\"(" + columns.join(',') + ')');
    m_tables.push_back(std::move(Table));
}

bool CSqlBench::Raw(const QByteArray& Sql)
{
    return sqlite3_exec(m_connection.get(), Sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

const jetsql::TableInfo* CSqlBench::FindTable(QStringView Name) const
{
    for (const jetsql::TableInfo& table : m_tables)
        if (Name.compare(table.Name, Qt::CaseInsensitive) == 0)
            return &table;
    return nullptr;
}

const QString* CSqlBench::FindQuery(QStringView Name) const
{
    const auto found = m_queries.find(Name.toString().toLower());
    return found == m_queries.end() ? nullptr : &found->second;
}

CSqlBench::Outcome CSqlBench::Run(const QString& Sql, const QMap<QString, Value>& Parameters)
{
    Outcome outcome;
    try {
        const jetsql::Shape shape = jetsql::TakeShape(Sql);
        outcome.Compiled = jetsql::Compile(shape, *this);
        outcome.Sql = outcome.Compiled->Sql;
        for (const jetsql::ResultColumn& column : outcome.Compiled->Columns)
            outcome.Columns.append(column.Name + u' ' + TypeName(column.Type));
        Execute(shape, Parameters, outcome);
    } catch (const jetsql::Error& refused) {
        outcome.ErrorNumber = refused.Number;
        outcome.ErrorOffset = refused.Offset;
        outcome.ErrorText = refused.Description;
    }
    return outcome;
}

void CSqlBench::Execute(const jetsql::Shape& Taken, const QMap<QString, Value>& Parameters, Outcome& To)
{
    const auto fail = [&] {
        const QString message = QString::fromUtf8(sqlite3_errmsg(m_connection.get()));
        jetsql::Error error = jetsql::FunctionError(message);
        if (error.Number == 0)
            error = {-sqlite3_errcode(m_connection.get()), message, u"SQLite"_s};
        throw error;
    };
    const jetsql::Statement& compiled = *To.Compiled;
    sqlite3_stmt* made = nullptr;
    if (sqlite3_prepare_v2(m_connection.get(), compiled.Sql.constData(), int(compiled.Sql.size()), &made, nullptr) != SQLITE_OK)
        fail();
    const Prepared prepared(made);
    for (size_t i = 0; i < compiled.Bindings.size(); ++i) {
        const jetsql::Binding& binding = compiled.Bindings[i];
        Value value;
        if (binding.Source == jetsql::Binding::Literal) {
            value = Taken.Literals[size_t(binding.Index)];
        } else {
            const QString& name = compiled.Parameters[size_t(binding.Index)].Name;
            if (!Parameters.contains(name))
                throw jetsql::MakeError(3061, {QString::number(compiled.Parameters.size())});
            value = Parameters[name];
        }
        BindValue(made, int(i) + 1, value.ToType(binding.As));
    }
    if (sqlite3_column_count(made) != 0 && compiled.Columns.empty())
        throw jetsql::Error{-1, u"rows from an action"_s, u"test"_s};
    int step = SQLITE_ROW;
    std::vector<QStringList> keys;
    while ((step = sqlite3_step(made)) == SQLITE_ROW) {
        QStringList row, key;
        for (size_t i = 0; i < compiled.Columns.size(); ++i)
            row.append(Shown(made, int(i), compiled.Columns[i].Type));
        for (int i = 0; i < compiled.HiddenKeys; ++i)
            key.append(Stored(made, int(compiled.Columns.size()) + i));
        const bool ends = compiled.Top >= 0 && !compiled.TopPercent && To.Rows.size() >= compiled.Top
            && (compiled.HiddenKeys == 0 || keys[size_t(compiled.Top) - 1] != key);
        if (ends)
            break;
        To.Rows.append(row.join(u'|'));
        keys.push_back(key);
    }
    if (step != SQLITE_DONE && step != SQLITE_ROW)
        fail();
    if (compiled.TopPercent) {
        auto count = (To.Rows.size() * compiled.Top + 99) / 100;
        while (count > 0 && compiled.HiddenKeys > 0 && count < To.Rows.size() && keys[size_t(count)] == keys[size_t(count) - 1])
            ++count;
        To.Rows.resize(count);
    }
    To.Affected = compiled.Columns.empty() ? sqlite3_changes(m_connection.get()) : 0;
}

QString CSqlBench::Plan(const QString& Sql)
{
    QStringList lines;
    const auto compiled = jetsql::Compile(jetsql::TakeShape(Sql), *this);
    sqlite3_stmt* made = nullptr;
    sqlite3_prepare_v2(m_connection.get(), ("EXPLAIN QUERY PLAN " + compiled->Sql).constData(), -1, &made, nullptr);
    const Prepared prepared(made);
    while (made && sqlite3_step(made) == SQLITE_ROW)
        lines.append(Stored(made, 3));
    return lines.join(u'\n');
}

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

[[noreturn]] void Fail(sqlite3* Connection)
{
    const QString message = QString::fromUtf8(sqlite3_errmsg(Connection));
    jetsql::Error error = jetsql::FunctionError(message);
    if (error.Number == 0)
        error = {-sqlite3_errcode(Connection), message, u"SQLite"_s};
    throw error;
}

using Filling = QMap<QString, Value>;

Value BoundValue(const jetsql::Binding& Wanted, const jetsql::Shape& Taken, const Filling& Parameters, const jetsql::Statement& Compiled)
{
    if (Wanted.Source == jetsql::Binding::Literal)
        return Taken.Literals[size_t(Wanted.Index)];
    if (Wanted.Source == jetsql::Binding::Constant)
        return Compiled.Constants[size_t(Wanted.Index)];
    const QString& name = Compiled.Parameters[size_t(Wanted.Index)].Name;
    if (!Parameters.contains(name))
        throw jetsql::MakeError(3061, {QString::number(Compiled.Parameters.size())});
    return Parameters[name];
}

Prepared Ready(sqlite3* Connection, const QByteArray& Sql, const jetsql::Shape& Taken, const Filling& Parameters, const jetsql::Statement& Compiled)
{
    sqlite3_stmt* made = nullptr;
    if (sqlite3_prepare_v2(Connection, Sql.constData(), int(Sql.size()), &made, nullptr) != SQLITE_OK)
        Fail(Connection);
    Prepared prepared(made);
    int index = 0;
    for (const jetsql::Binding& binding : Compiled.Bindings)
        BindValue(made, ++index, BoundValue(binding, Taken, Parameters, Compiled).ToType(binding.As));
    return prepared;
}

Value ReadValue(sqlite3_stmt* Row, FieldType Type)
{
    switch (sqlite3_column_type(Row, 0)) {
    case SQLITE_NULL: return {};
    case SQLITE_INTEGER: return Type == FieldType::Null ? Value::FromLong(sqlite3_column_int(Row, 0)) : Value::FromLong(sqlite3_column_int(Row, 0)).ToType(Type);
    case SQLITE_FLOAT: return Value::FromDouble(sqlite3_column_double(Row, 0)).ToType(Type);
    default: return Value::FromText(Stored(Row, 0));
    }
}

// A crosstab's columns are known once its rows have been looked at.
std::shared_ptr<const jetsql::Statement> Spread(sqlite3* Connection, const jetsql::Shape& Taken, const Filling& Parameters, const jetsql::Statement& Compiled)
{
    const Prepared prepared = Ready(Connection, Compiled.Pivot->HeadingSql, Taken, Parameters, Compiled);
    std::vector<Value> headings;
    int step = SQLITE_ROW;
    while ((step = sqlite3_step(prepared.get())) == SQLITE_ROW)
        headings.push_back(ReadValue(prepared.get(), Compiled.Pivot->HeadingType));
    if (step != SQLITE_DONE)
        Fail(Connection);
    return std::make_shared<const jetsql::Statement>(jetsql::Spread(Compiled, headings));
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
        if (outcome.Compiled->Pivot)
            outcome.Compiled = Spread(m_connection.get(), shape, Parameters, *outcome.Compiled);
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

void CSqlBench::MakeTable(const jetsql::Statement& Made)
{
    jetsql::TableInfo table{Made.TargetTable, {}, {}};
    for (const jetsql::ResultColumn& column : Made.Columns)
        table.Fields.push_back({column.Name, column.Type, column.Size});
    AddTable(std::move(table));
}

void CSqlBench::Execute(const jetsql::Shape& Taken, const QMap<QString, Value>& Parameters, Outcome& To)
{
    const jetsql::Statement& compiled = *To.Compiled;
    if (compiled.Type == jetsql::QueryType::MakeTable)
        MakeTable(compiled);
    const Prepared prepared = Ready(m_connection.get(), compiled.Sql, Taken, Parameters, compiled);
    sqlite3_stmt* made = prepared.get();
    const bool givesRows = jetsql::ReturnsRows(compiled.Type);
    if ((sqlite3_column_count(made) != 0) != givesRows)
        throw jetsql::Error{-1, u"rows and type do not agree"_s, u"test"_s};
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
        Fail(m_connection.get());
    if (compiled.TopPercent) {
        auto count = (To.Rows.size() * compiled.Top + 99) / 100;
        while (count > 0 && compiled.HiddenKeys > 0 && count < To.Rows.size() && keys[size_t(count)] == keys[size_t(count) - 1])
            ++count;
        To.Rows.resize(count);
    }
    To.Affected = givesRows ? 0 : sqlite3_changes(m_connection.get());
    if (compiled.Steps.empty())
        return;
    const Prepared counter = Ready(m_connection.get(), compiled.Counter, Taken, Parameters, {});
    sqlite3_step(counter.get());
    To.Affected = sqlite3_column_int(counter.get(), 0);
    sqlite3_reset(counter.get());
    for (const QByteArray& next : compiled.Steps)
        if (!Raw(next))
            Fail(m_connection.get());
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

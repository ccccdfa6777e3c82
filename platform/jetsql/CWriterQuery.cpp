// platform/jetsql/CWriterQuery.cpp
// From a bound syntax tree to the text of a SQLite statement: queries and what they read from.

#include "platform/jetsql/CWriter.h"

#include "platform/jetsql/TypeRules.h"

#include <algorithm>

namespace jetsql {

namespace {

constexpr char RowIdColumn[] = "\"row.id\"";   // no field can have that name

// SQLite works "0 AND x" out while it reads, and takes the number that is left for a position.
bool MayFold(const Expr& Which)
{
    const Expr* at = &Which;
    while (at->Alias)
        at = at->Alias;
    return at->What == Expr::Kind::Chain && at->Operator == Op::And && at->IsTruth;
}

QByteArray Numbered(char Letter, qsizetype Index)
{
    return Letter + QByteArray::number(Index);
}

}

QByteArray RowIdOf(const TableRef& Table)
{
    return Table.SqlAlias + '.' + (Table.ShowsRowId ? QByteArray(RowIdColumn) : RowIdOf(*Table.Table));
}

QByteArrayList NumberedList(const QByteArray& Prefix, qsizetype Count)
{
    QByteArrayList list;
    for (qsizetype i = 0; i < Count; ++i)
        list.append(Prefix + QByteArray::number(i));
    return list;
}

QByteArray RankedRows(const QByteArray& Rows, qsizetype ColumnCount, const QByteArrayList& Keys, int Top, bool IsPercent)
{
    const QByteArray top = QByteArray::number(Top);
    QByteArrayList ranks;
    for (qsizetype i = 0; i < Keys.size(); ++i)
        ranks.append(Numbered('k', i) + Keys[i]);
    const QByteArray rank = Keys.empty() ? QByteArray("row_number() OVER ()") : "rank() OVER (ORDER BY " + ranks.join(',') + ')';
    const QByteArray limit = IsPercent ? "(n*" + top + "+99)/100" : top;
    return "SELECT " + NumberedList("c", ColumnCount).join(',') + " FROM (SELECT *," + rank + " AS r,count(*) OVER () AS n FROM ("
        + Rows + ")) WHERE r<=" + limit + " ORDER BY r";
}

bool CWriter::IsConstant(const Expr& Which)
{
    const Expr* at = &Which;
    while (at->Alias)
        at = at->Alias;
    return at->What == Expr::Kind::Literal || at->What == Expr::Kind::Constant;
}


// A query in place of a table: its columns are c0, c1, … IsSorted keeps its order, which shows where it is the only
// table; SQLite drops it where it does not count.
QByteArray CWriter::Derived(const Query& Source, bool IsSorted)
{
    return Source.IsUnion() ? DerivedUnion(Source, IsSorted) : DerivedSelect(*Source.Members.front(), IsSorted);
}

// A union that drops duplicates comes sorted, unless members with UNION ALL follow.
std::vector<CWriter::SortKey> CWriter::UnionKeys(const Query& Source)
{
    std::vector<SortKey> keys;
    const auto add = [&](size_t column, bool descending) {
        const QByteArray name = Numbered('c', qsizetype(column));
        keys.push_back({IsNumeric(Source.Columns[column].Type) ? name : "jet_sortkey(" + name + ')', descending});
    };
    for (const OrderItem& item : Source.OrderBy)
        add(size_t(item.Position) - 1, item.Descending);
    const bool isDistinct = std::find(Source.IsAll.begin(), Source.IsAll.end(), true) == Source.IsAll.end();
    for (size_t i = 0; Source.OrderBy.empty() && isDistinct && i < Source.Columns.size(); ++i)
        add(i, false);
    return keys;
}

QByteArray CWriter::DerivedUnion(const Query& Source, bool IsSorted)
{
    QByteArrayList columns;
    for (size_t i = 0; i < Source.Columns.size(); ++i) {
        const QByteArray name = Numbered('c', qsizetype(i));
        // What the first member says of a column decides how the union tells rows apart.
        columns.append(IsNumeric(Source.Columns[i].Type) ? name : name + " COLLATE JETEQUAL AS " + name);
    }
    QByteArray sql;
    for (size_t i = 0; i < Source.Members.size(); ++i) {
        if (i > 0)
            sql += Source.IsAll[i - 1] ? " UNION ALL " : " UNION ";
        sql += "SELECT " + columns.join(',') + " FROM (" + DerivedSelect(*Source.Members[i], false, &Source.Columns) + ')';
    }
    const std::vector<SortKey> keys = IsSorted ? UnionKeys(Source) : std::vector<SortKey>();
    return keys.empty() ? sql : "SELECT * FROM (" + sql + ')' + OrderBy(keys);
}

QByteArray CWriter::DerivedSelect(const Select& Source, bool IsSorted, const std::vector<ResultColumn>* Types)
{
    if (Source.Crossed)
        return DerivedCrosstab(Source);
    QByteArrayList columns;
    for (size_t i = 0; i < Source.Output.size(); ++i) {
        const FieldType type = Types ? (*Types)[i].Type : Source.Output[i].Info.Type;
        columns.append(Output(Source.Output[i], type, Source.Distinct) + " AS " + Numbered('c', qsizetype(i)));
    }
    if (Source.ShowsRowId)
        columns.append(RowIdOf(*Source.From.front()) + " AS " + RowIdColumn);
    if (Source.Top >= 0)
        return Ranked(Source, columns);
    const std::vector<SortKey> keys = IsSorted ? OrderKeys(Source) : std::vector<SortKey>();
    return (Source.Distinct ? "SELECT DISTINCT " : "SELECT ") + columns.join(',') + Tail(Source)
        + OrderBy(IsSorted && keys.empty() ? DefaultKeys(Source) : keys);
}

// TOP inside of a statement: the rank of a row is the place of the first one that ties with it.
QByteArray CWriter::Ranked(const Select& Source, const QByteArrayList& Columns)
{
    const std::vector<SortKey> keys = OrderKeys(Source);
    QByteArrayList inner = Columns, ranks;
    for (const SortKey& key : keys) {
        inner.append(key.Sql + " AS " + Numbered('k', ranks.size()));
        ranks.append(key.Descending ? " DESC" : "");
    }
    const QByteArray rows = (Source.Distinct ? "SELECT DISTINCT " : "SELECT ") + inner.join(',') + Tail(Source);
    if (keys.empty() && !Source.TopPercent)
        return rows + OrderBy(DefaultKeys(Source)) + " LIMIT " + QByteArray::number(Source.Top);
    return RankedRows(rows, Columns.size(), ranks, Source.Top, Source.TopPercent);
}

QByteArray CWriter::Tail(const Select& Source)
{
    QByteArray sql = FromList(Source.From) + Condition(Source.Where);
    QByteArrayList groups;
    for (const ExprPtr& group : Source.GroupBy)
        groups.append(IsConstant(*group) || group->IsOuter ? QByteArray("NULL") : GroupKey(*group));
    // SQLite sees an aggregate in the columns, but not one that stands in HAVING or ORDER BY alone.
    const bool showsAggregate = std::any_of(Source.Output.begin(), Source.Output.end(), [](const OutputColumn& output) {
        return output.Value && output.Value->HasAggregate;
    });
    if (Source.IsGrouped && groups.empty() && !showsAggregate)
        groups.append("NULL");
    if (!Source.RowsOf.empty())
        groups = RowKeys(Source);
    if (!groups.empty())
        sql += " GROUP BY " + groups.join(',');
    if (Source.Having)
        sql += " HAVING " + Truth(*Source.Having).Sql;
    return sql;
}

// What tells the rows of DISTINCTROW apart: a table's row by its number, a query's by all it holds.
QByteArrayList CWriter::RowKeys(const Select& Source)
{
    QByteArrayList keys;
    for (const TableRef* table : Source.RowsOf) {
        if (table->Table) {
            keys.append(RowIdOf(*table));
            continue;
        }
        for (const Column& column : table->Columns)
            keys.append(IsNumeric(column.Type) ? column.Sql : "jet_sortkey(" + column.Sql + ')');
    }
    return keys;
}

QByteArray CWriter::FromList(const std::vector<std::unique_ptr<TableRef>>& From)
{
    QByteArray sql;
    for (const auto& table : From) {
        const QByteArray reference = Reference(*table);
        if (sql.isEmpty())
            sql = " FROM " + reference;
        else
            sql += " JOIN " + (table->Join == JoinKind::None ? reference : '(' + reference + ')');
    }
    return sql;
}

QByteArray CWriter::Reference(const TableRef& Table)
{
    if (Table.Join == JoinKind::None && Table.Table && Table.ShowsRowId)
        return "(SELECT " + RowIdOf(*Table.Table) + " AS " + RowIdColumn + ",* FROM " + Quoted(Table.Table->Name) + ") AS " + Table.SqlAlias;
    if (Table.Join == JoinKind::None)
        return (Table.Table ? Quoted(Table.Table->Name) : '(' + Derived(*Table.Derived, true) + ')') + " AS " + Table.SqlAlias;
    const char* kind = Table.Join == JoinKind::Inner ? " JOIN " : Table.Join == JoinKind::Left ? " LEFT JOIN " : " RIGHT JOIN ";
    const QByteArray right = Reference(*Table.Right);
    return Reference(*Table.Left) + kind + (Table.Right->Join == JoinKind::None ? right : '(' + right + ')') + " ON "
        + Truth(*Table.On).Sql;
}

// A column as its type says: a calculated whole number that is too large must not come out cut.
QByteArray CWriter::Output(const OutputColumn& Column, FieldType Wanted, bool Distinct)
{
    QByteArray sql;
    if (Column.Value)
        sql = As(*Column.Value, Wanted).Sql;
    else
        sql = NeedsConversion(Column.Field->Type, Wanted) ? Converted(Column.Field->Sql, Column.Field->Type, Wanted).Sql : Column.Field->Sql;
    return Distinct && !IsNumeric(Wanted) ? '(' + sql + ") COLLATE JETEQUAL" : sql;
}

std::vector<CWriter::SortKey> CWriter::OrderKeys(const Select& Source)
{
    std::vector<SortKey> keys;
    for (const OrderItem& item : Source.OrderBy) {
        if (item.Position > 0)
            keys.push_back({OutputKey(Source.Output[size_t(item.Position) - 1]), item.Descending});
        else if (!IsConstant(*item.Value))   // SQLite would take a bare number for a position
            keys.push_back({ExpressionKey(*item.Value), item.Descending});
    }
    return keys;
}

// Grouped and distinct rows come sorted, as everyone is used to.
std::vector<CWriter::SortKey> CWriter::DefaultKeys(const Select& Source)
{
    std::vector<SortKey> keys;
    if (Source.Distinct) {
        for (const OutputColumn& output : Source.Output)
            if (!output.Value || !IsConstant(*output.Value))
                keys.push_back({OutputKey(output)});
    } else {
        for (const ExprPtr& group : Source.GroupBy)
            if (!IsConstant(*group))
                keys.push_back({ExpressionKey(*group)});
    }
    return keys;
}

QByteArray CWriter::OutputKey(const OutputColumn& Column)
{
    if (Column.Value)
        return IsConstant(*Column.Value) ? QByteArray("NULL") : ExpressionKey(*Column.Value);
    return IsNumeric(Column.Field->Type) ? Column.Field->Sql : "jet_sortkey(" + Column.Field->Sql + ')';
}

QByteArray CWriter::ExpressionKey(const Expr& Which)
{
    const QByteArray value = Value(Which).Sql;
    if (MayFold(Which))
        return value + "+0";
    return IsNumeric(Which.Type) ? value : "jet_sortkey(" + value + ')';
}

// Groups are put in order when they are made; to make them it is enough to know which rows go together.
QByteArray CWriter::GroupKey(const Expr& Which)
{
    return IsText(Which.Type) ? "jet_textnumber(" + Value(Which).Sql + ",0)" : ExpressionKey(Which);
}

QByteArray CWriter::OrderBy(const std::vector<SortKey>& Keys)
{
    QByteArrayList list;
    for (const SortKey& key : Keys)
        list.append(key.Descending ? key.Sql + " DESC" : key.Sql);
    return list.empty() ? QByteArray() : " ORDER BY " + list.join(',');
}

}

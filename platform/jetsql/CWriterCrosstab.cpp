// platform/jetsql/CWriterCrosstab.cpp
// From a bound syntax tree to the text of a SQLite statement: crosstabs.

#include "platform/jetsql/CWriter.h"

#include "platform/jetsql/TypeRules.h"

namespace jetsql {

namespace {

QByteArray ListWith(const QByteArrayList& Items)
{
    return Items.empty() ? QByteArray() : ',' + Items.join(',');
}

QByteArrayList Named(const QByteArrayList& Values, char Letter)
{
    QByteArrayList named;
    for (const QByteArray& value : Values)
        named.append(value + " AS " + Letter + QByteArray::number(named.size()));
    return named;
}

// The table of the values behind the columns, each with its number.
QByteArray HeadingTable(const Crosstab& Parts, const QByteArrayList& Placeholders)
{
    QByteArrayList rows;
    for (const QByteArray& value : Placeholders) {
        const QByteArray key = IsNumeric(Parts.HeadingType) ? value : "jet_sortkey(" + value + ')';
        rows.append('(' + QByteArray::number(rows.size()) + ',' + key + ')');
    }
    return rows.empty() ? QByteArray("SELECT NULL,NULL WHERE 0") : "VALUES " + rows.join(',');
}

// Where rows have aggregates of their own they are a list of their own, and the cells are found by the rows' keys.
QByteArray Sources(const Crosstab& Parts)
{
    const QByteArray headings = " LEFT JOIN \"x.headings\" AS h ON h.p IS g.p";
    if (Parts.RowSql.isEmpty())
        return " FROM \"x.cells\" AS g" + headings;
    QByteArrayList same;
    for (const QByteArray& key : NumberedList("k", Parts.KeyCount))
        same.append("g." + key + " IS r." + key);
    return " FROM \"x.rows\" AS r LEFT JOIN \"x.cells\" AS g ON " + (same.empty() ? QByteArray("1") : same.join(" AND ")) + headings;
}

}

QByteArray CrosstabSql(const Crosstab& Parts, const QByteArrayList& Placeholders, bool IsDerived)
{
    const QByteArray row = Parts.RowSql.isEmpty() ? "g." : "r.";
    QByteArrayList columns = NumberedList(row + 'c', Parts.ColumnCount);
    for (qsizetype i = 0; i < Placeholders.size(); ++i)
        columns.append("max(g.v) FILTER (WHERE h.n=" + QByteArray::number(i) + ')');
    const qsizetype count = columns.size();
    const bool isRanked = IsDerived && Parts.Top >= 0;
    if (IsDerived)
        columns = Named(columns, 'c');
    const QByteArrayList keys = NumberedList(row + 'k', Parts.KeyCount);
    QByteArrayList order = NumberedList(row + 'o', Parts.OrderKeys.size());
    if (Parts.Top >= 0)
        columns += isRanked ? Named(order, 'k') : order;
    for (qsizetype i = 0; i < order.size(); ++i)
        order[i] += Parts.OrderKeys[i];
    QByteArray sql = "WITH \"x.cells\" AS MATERIALIZED (" + Parts.CellSql + "),"
        + (Parts.RowSql.isEmpty() ? QByteArray() : "\"x.rows\" AS MATERIALIZED (" + Parts.RowSql + "),") + "\"x.headings\"(n,p) AS ("
        + HeadingTable(Parts, Placeholders) + ") SELECT " + columns.join(',') + Sources(Parts) + " GROUP BY "
        + (keys.empty() ? QByteArray("NULL") : keys.join(','));
    if (isRanked)
        return RankedRows(sql, count, Parts.OrderKeys, Parts.Top, Parts.TopPercent);
    const QByteArrayList& sorted = order.empty() ? keys : order;
    if (!sorted.empty())
        sql += " ORDER BY " + sorted.join(',');
    if (Parts.Top >= 0 && order.empty() && !Parts.TopPercent)
        sql += " LIMIT " + QByteArray::number(Parts.Top);
    return sql;
}

// One pass over the source where only the cells count; what rows add up themselves takes a second one.
Crosstab CWriter::CrosstabParts(const Select& Source)
{
    const Pivot& pivot = *Source.Crossed;
    Crosstab parts;
    parts.HeadingType = pivot.Heading->Type;
    parts.CellType = pivot.Cell->Type;
    parts.Top = Source.Top;
    parts.TopPercent = Source.TopPercent;
    parts.ColumnCount = int(Source.Output.size());
    QByteArrayList keys, own, order;
    bool isCounted = false;
    for (const ExprPtr& group : Source.GroupBy)
        if (!IsConstant(*group) && !group->IsOuter)
            keys.append(ExpressionKey(*group));
    for (const OutputColumn& output : Source.Output) {
        own.append(Output(output, output.Info.Type, false));
        isCounted |= output.Value && output.Value->HasAggregate;
    }
    for (const OrderItem& item : Source.OrderBy)
        isCounted |= item.Value && item.Value->HasAggregate;
    for (const SortKey& key : OrderKeys(Source)) {
        order.append(key.Sql);
        parts.OrderKeys.append(key.Descending ? " DESC" : "");
    }
    parts.KeyCount = int(keys.size());
    const QByteArray from = FromList(Source.From) + Condition(Source.Where);
    const QByteArray rows = Named(own, 'c').join(',') + ListWith(Named(keys, 'k')) + ListWith(Named(order, 'o'));
    const QByteArray heading = ExpressionKey(*pivot.Heading);
    const QByteArray headingGroup = IsConstant(*pivot.Heading) ? QByteArray("NULL") : heading;
    parts.HeadingSql = "SELECT " + As(*pivot.Heading, parts.HeadingType).Sql + from + " GROUP BY " + headingGroup + " ORDER BY " + headingGroup;
    parts.CellSql = "SELECT " + (isCounted ? Named(keys, 'k').join(',') : rows) + (isCounted && keys.empty() ? "" : ",") + heading + " AS p,"
        + As(*pivot.Cell, parts.CellType).Sql + " AS v" + from + " GROUP BY " + (keys + QByteArrayList{headingGroup}).join(',');
    if (isCounted)
        parts.RowSql = "SELECT " + rows + from + (keys.empty() ? QByteArray() : " GROUP BY " + keys.join(','));
    return parts;
}

QByteArray CWriter::DerivedCrosstab(const Select& Source)
{
    const Crosstab parts = CrosstabParts(Source);
    QByteArrayList placeholders;
    for (const jetsql::Value& value : Source.Crossed->Values) {
        m_constants.push_back(value);
        placeholders.append(Bound(Binding::Constant, int(m_constants.size()) - 1, FieldType::Null));
    }
    return CrosstabSql(parts, placeholders, true);
}

Statement Spread(const Statement& Variable, const std::vector<Value>& Headings)
{
    constexpr int TextSize = 255;
    Statement spread = Variable;
    const Crosstab& parts = *Variable.Pivot;
    AddHeadingColumns(spread.Columns, Headings, parts.CellType, parts.CellType == FieldType::Text ? TextSize : 0);
    QByteArrayList placeholders;
    for (const Value& heading : Headings) {
        spread.Bindings.push_back({Binding::Constant, int(spread.Constants.size()), FieldType::Null});
        spread.Constants.push_back(heading);
        placeholders.append('?' + QByteArray::number(spread.Bindings.size()));
    }
    spread.Sql = CrosstabSql(parts, placeholders, false);
    spread.Top = parts.Top;
    spread.TopPercent = parts.TopPercent;
    spread.HiddenKeys = parts.Top >= 0 ? int(parts.OrderKeys.size()) : 0;
    spread.Pivot = nullptr;
    return spread;
}

}

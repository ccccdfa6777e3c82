// platform/jetsql/CBinderQuery.cpp
// Gives the names of a syntax tree their meaning: queries, their tables and their columns.

#include "platform/jetsql/CBinder.h"
#include "platform/jetsql/CParser.h"
#include "platform/jetsql/FunctionTable.h"
#include "platform/jetsql/TypeRules.h"
#include "platform/text/Fold.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr int MaxQueries = 100;      // saved queries opened by one statement: a few that double each other are many soon
constexpr size_t MaxColumns = 1000;
constexpr int TextSize = 255;        // of an expression

// The columns that an expression reads, those behind aliases too.
void CollectFields(const Expr& Read, std::vector<const Column*>& Into)
{
    if (Read.Alias)
        return CollectFields(*Read.Alias, Into);
    if (Read.Field && !Read.IsOuter)
        Into.push_back(Read.Field);
    for (const ExprPtr& arg : Read.Args)
        CollectFields(*arg, Into);
}

}

void CollectTables(TableRef& Root, std::vector<TableRef*>& Into)
{
    if (Root.Join == JoinKind::None) {
        Into.push_back(&Root);
        return;
    }
    CollectTables(*Root.Left, Into);
    CollectTables(*Root.Right, Into);
}

void CBinder::BindQuery(Query& Which, Scope* Outer)
{
    const Clause around = std::exchange(m_clause, Clause::Items);
    for (const auto& member : Which.Members)
        BindSelect(*member, Outer);
    for (const OutputColumn& output : Which.Members.front()->Output)
        Which.Columns.push_back(output.Info);
    if (Which.Members.front()->Crossed)
        AddHeadings(Which);
    if (Which.IsUnion())
        BindUnion(Which);
    m_clause = around;
}

void CBinder::BindUnion(Query& Which)
{
    for (const auto& member : Which.Members) {
        if (member->Output.size() != Which.Columns.size())
            throw MakeError(3307, {}, OffsetOf(member->First));
        for (size_t i = 0; i < Which.Columns.size(); ++i) {
            ResultColumn& column = Which.Columns[i];
            column.Type = CommonType(column.Type, member->Output[i].Info.Type);
            column.Size = std::max(column.Size, member->Output[i].Info.Size);
            column.SourceTable.clear();
            column.SourceField.clear();
        }
    }
    BindUnionOrder(Which);
}

// A union is ordered by the names of its first member or by position.
void CBinder::BindUnionOrder(Query& Which)
{
    for (OrderItem& item : Which.OrderBy) {
        if (item.Position == 0 && item.Value->What == Expr::Kind::Name) {
            const auto column = std::find_if(Which.Columns.begin(), Which.Columns.end(), [&](const ResultColumn& known) {
                return SameName(known.Name, item.Value->Name);
            });
            if (column != Which.Columns.end())
                item.Position = int(column - Which.Columns.begin()) + 1;
        }
        if (item.Position == 0)
            Refuse(3351, *item.Value);
        if (size_t(item.Position) > Which.Columns.size())
            throw MakeError(3138, {}, OffsetOf(item.First));
    }
}

void CBinder::BindSelect(Select& Which, Scope* Outer)
{
    if (!Which.Into.isEmpty())
        throw MakeError(3141, {}, OffsetOf(Which.IntoToken));
    const size_t parameters = m_parameters.size();
    Scope scope;
    scope.Of = &Which;
    scope.Outer = Outer;
    BindTables(Which.From, scope);
    scope.ItemStates.assign(Which.Items.size(), 0);
    for (size_t i = 0; i < Which.Items.size(); ++i)
        BindItem(scope, i);
    if (Which.Where) {
        m_clause = Clause::Where;
        BindExpression(*Which.Where, &scope);
        AsTruth(*Which.Where);
    }
    m_clause = Clause::GroupBy;
    for (const ExprPtr& group : Which.GroupBy)
        BindExpression(*group, &scope);
    if (Which.Having) {
        m_clause = Clause::Having;
        BindExpression(*Which.Having, &scope);
        AsTruth(*Which.Having);
    }
    SpreadItems(Which, scope);
    m_clause = Clause::OrderBy;
    BindOrder(Which, scope);
    if (Which.Crossed)
        BindCrosstab(Which, scope, parameters);
    CheckGrouping(Which);
    CheckDistinctOrder(Which);
    FindRowTables(Which, scope);
    m_clause = Clause::Items;
}

void CBinder::BindTables(std::vector<std::unique_ptr<TableRef>>& From, Scope& Into)
{
    for (const auto& table : From)
        BindTable(*table, Into);
    for (size_t i = 0; i < Into.Tables.size(); ++i) {
        for (size_t j = 0; j < i; ++j) {
            const QString name = Into.Tables[i]->VisibleName();
            if (!name.isEmpty() && SameName(name, Into.Tables[j]->VisibleName()))
                throw MakeError(3074, {name}, OffsetOf(Into.Tables[i]->First));
        }
    }
}

void CBinder::BindTable(TableRef& Table, Scope& Into)
{
    if (Table.Join == JoinKind::None)
        return BindLeaf(Table, Into);
    BindTable(*Table.Left, Into);
    BindTable(*Table.Right, Into);
    BindOn(Table, Into);
}

// The condition of a join sees the tables that it joins, and those of the queries around.
void CBinder::BindOn(TableRef& Join, Scope& Around)
{
    Scope scope;
    scope.Outer = Around.Outer;
    CollectTables(Join, scope.Tables);
    m_clause = Clause::On;
    BindExpression(*Join.On, &scope);
    AsTruth(*Join.On);
    m_clause = Clause::Items;
}

void CBinder::BindLeaf(TableRef& Table, Scope& Into)
{
    Table.SqlAlias = 't' + QByteArray::number(m_tableCount++);
    if (Table.Derived) {
        BindDerived(Table, Into.Outer);
    } else if (const TableInfo* info = m_names.FindTable(Table.Name)) {
        BindBase(Table, *info);
    } else if (const QString* text = m_names.FindQuery(Table.Name)) {
        OpenSavedQuery(Table, *text);
    } else {
        throw MakeError(3078, {Table.Name}, OffsetOf(Table.First));
    }
    Into.Tables.push_back(&Table);
}

void CBinder::BindBase(TableRef& Table, const TableInfo& Info)
{
    Table.Table = &Info;
    for (const FieldInfo& field : Info.Fields)
        Table.Columns.push_back({field.Name, field.Type, field.Size, Table.SqlAlias + '.' + Quoted(field.Name), Info.Name, field.Name, Table.VisibleName()});
    if (std::find(m_sources.begin(), m_sources.end(), Info.Name) == m_sources.end())
        m_sources.push_back(Info.Name);
}

void CBinder::BindDerived(TableRef& Table, Scope* Outer)
{
    const int offset = OffsetOf(Table.First);
    const CTokens* around = m_tokens;
    if (Table.Tokens)
        m_tokens = Table.Tokens.get();
    m_place.push_back(Table.First);
    try {
        BindQuery(*Table.Derived, Outer);
    } catch (Error& refused) {
        if (Table.Tokens)
            refused.Offset = offset;
        throw;
    }
    m_place.pop_back();
    m_tokens = around;
    const auto& columns = Table.Derived->Columns;
    for (size_t i = 0; i < columns.size(); ++i) {
        Table.Columns.push_back({columns[i].Name, columns[i].Type, columns[i].Size,
                                 Table.SqlAlias + ".c" + QByteArray::number(i), columns[i].SourceTable, columns[i].SourceField, Table.VisibleName()});
    }
}

void CBinder::OpenSavedQuery(TableRef& Table, const QString& Text)
{
    const int offset = OffsetOf(Table.First);
    for (const QString& open : m_openQueries) {
        if (SameName(open, Table.Name))
            throw MakeError(3102, {Table.Name}, offset);
    }
    if (++m_queryCount > MaxQueries)
        throw MakeError(3360, {}, offset);
    try {
        Table.Tokens = std::make_shared<const CTokens>(TakeShape(Text));
        Tree tree = CParser(*Table.Tokens, true).Statement();
        if (!ReturnsRows(tree.Type))
            throw MakeError(3069, {Table.Name});
        if (const auto& crossed = tree.Source->Members.front()->Crossed; crossed && !crossed->IsFixed)
            throw MakeError(3637);
        Declare(tree);
        Table.Derived = std::move(tree.Source);
    } catch (Error& refused) {
        refused.Offset = offset;
        throw;
    }
    m_openQueries.push_back(Table.Name);
    BindDerived(Table, nullptr);
    m_openQueries.pop_back();
}

void CBinder::BindItem(Scope& In, size_t Index)
{
    SelectItem& item = In.Of->Items[Index];
    if (!item.Value || In.ItemStates[Index] == 2)
        return;
    if (In.ItemStates[Index] == 1)
        throw MakeError(3103, {item.Alias}, OffsetOf(item.First));
    const Clause around = std::exchange(m_clause, Clause::Items);
    In.ItemStates[Index] = 1;
    BindExpression(*item.Value, &In);
    In.ItemStates[Index] = 2;
    m_clause = around;
}

void CBinder::SpreadItems(Select& Which, Scope& In)
{
    for (SelectItem& item : Which.Items) {
        if (!item.Value) {
            SpreadStar(Which, In, item);
            continue;
        }
        OutputColumn output;
        output.Value = item.Value.get();
        output.Info.Type = item.Value->Type;
        if (const Column* field = FieldOf(*item.Value)) {
            output.Field = field;
            output.Info = {field->Name, field->Type, field->Size, field->SourceTable, field->SourceField};
        } else if (output.Info.Type == FieldType::Text) {
            output.Info.Size = TextSize;
        }
        if (!item.Alias.isEmpty())
            output.Info.Name = item.Alias;
        else if (!output.Field)
            output.Info.Name = u"Expr"_s + QString::number(1000 + (&item - Which.Items.data()));
        output.HasAlias = !item.Alias.isEmpty();
        output.First = item.First;
        Which.Output.push_back(std::move(output));
    }
    if (Which.Output.size() > MaxColumns)
        throw MakeError(3190, {}, OffsetOf(Which.First));
    NameColumns(Which);
}

void CBinder::SpreadStar(Select& Which, const Scope& In, const SelectItem& Item)
{
    if (In.Tables.empty())
        throw MakeError(3067, {}, OffsetOf(Item.First));
    bool isFound = false;
    for (const TableRef* table : In.Tables) {
        if (!Item.StarOf.isEmpty() && !SameName(Item.StarOf, table->VisibleName()))
            continue;
        isFound = true;
        for (const Column& column : table->Columns) {
            OutputColumn output;
            output.Field = &column;
            output.First = Item.First;
            output.Info = {column.Name, column.Type, column.Size, column.SourceTable, column.SourceField};
            Which.Output.push_back(std::move(output));
        }
    }
    if (!isFound)
        throw MakeError(3078, {Item.StarOf}, OffsetOf(Item.First));
}

// A name must be there once: fields of two tables get their table's name before them, copies of one field but the last
// a number. What the statement names twice itself is refused.
void CBinder::NameColumns(Select& Which)
{
    QHash<QString, std::vector<size_t>> byName;
    for (size_t i = 0; i < Which.Output.size(); ++i)
        byName[text::Fold(Which.Output[i].Info.Name)].push_back(i);
    for (const std::vector<size_t>& same : std::as_const(byName)) {
        const auto aliases = std::count_if(same.begin(), same.end(), [&](size_t i) { return Which.Output[i].HasAlias; });
        if (same.size() < 2)
            continue;
        if (aliases > 0)
            throw MakeError(aliases > 1 ? 3062 : 3063, {Which.Output[same.front()].Info.Name}, OffsetOf(Which.Output[same.back()].First));
        for (const size_t i : same) {
            OutputColumn& output = Which.Output[i];
            const bool isCopied = std::any_of(same.begin(), same.end(), [&](size_t j) { return j > i && Which.Output[j].Field == output.Field; });
            if (isCopied || !output.Field)
                output.Info.Name = u"Expr"_s + QString::number(1000 + i);
            else if (std::any_of(same.begin(), same.end(), [&](size_t j) { return Which.Output[j].Field != output.Field; }))
                output.Info.Name = output.Field->Owner + u'.' + output.Info.Name;
        }
    }
}

void CBinder::BindOrder(Select& Which, Scope& In)
{
    for (OrderItem& item : Which.OrderBy) {
        if (item.Position == 0) {
            BindExpression(*item.Value, &In);
            continue;
        }
        if (size_t(item.Position) > Which.Output.size())
            throw MakeError(3138, {}, OffsetOf(item.First));
    }
}

void CBinder::CheckDistinctOrder(const Select& Which)
{
    if (!Which.Distinct)
        return;
    for (const OrderItem& item : Which.OrderBy) {
        if (item.Position > 0)
            continue;
        const bool isListed = std::any_of(Which.Output.begin(), Which.Output.end(), [&](const OutputColumn& output) {
            const Column* field = FieldOf(*item.Value);
            return output.Value ? SameExpression(*output.Value, *item.Value) : field && field == output.Field;
        });
        if (!isListed)
            Refuse(3093, *item.Value);
    }
}

void CBinder::CheckGrouping(Select& Which)
{
    bool& isGrouped = Which.IsGrouped;
    isGrouped = !Which.GroupBy.empty() || Which.Crossed;
    for (const OutputColumn& output : Which.Output)
        isGrouped |= output.Value && output.Value->HasAggregate;
    for (const OrderItem& item : Which.OrderBy)
        isGrouped |= item.Value && item.Value->HasAggregate;
    isGrouped |= Which.Having && Which.Having->HasAggregate;
    if (Which.Having && !isGrouped)
        Refuse(3091, *Which.Having);
    if (!isGrouped)
        return;
    for (const SelectItem& item : Which.Items) {
        if (!item.Value)
            throw MakeError(Which.Crossed ? 3123 : 3120, {}, OffsetOf(item.First));
        CheckGrouped(Which, *item.Value);
    }
    for (const OrderItem& item : Which.OrderBy)
        if (item.Value)
            CheckGrouped(Which, *item.Value);
    if (Which.Having)
        CheckGrouped(Which, *Which.Having);
    if (Which.Crossed)
        CheckGrouped(Which, *Which.Crossed->Cell, Which.Crossed->Heading.get());
}

// Of a group only what all its rows share, and aggregates, can be shown.
void CBinder::CheckGrouped(const Select& Which, const Expr& Tested, const Expr* AlsoGrouped)
{
    if (Tested.Alias)
        return CheckGrouped(Which, *Tested.Alias, AlsoGrouped);
    const bool isGroupItself = (AlsoGrouped && SameExpression(*AlsoGrouped, Tested)) || std::any_of(Which.GroupBy.begin(), Which.GroupBy.end(), [&](const ExprPtr& group) {
        return SameExpression(*group, Tested);
    });
    if (isGroupItself || (Tested.Function && Tested.Function->How == FunctionInfo::Form::Aggregate))
        return;
    if (Tested.Field && !Tested.IsOuter)
        Refuse(3122, Tested);
    for (const ExprPtr& arg : Tested.Args)
        CheckGrouped(Which, *arg, AlsoGrouped);
}

// DISTINCTROW gives each combination of those rows once that the columns come from; with one table, or where every
// table has a part in the columns, that is what comes anyway.
void CBinder::FindRowTables(Select& Which, const Scope& In)
{
    if (!Which.DistinctRow || Which.Distinct || Which.IsGrouped || In.Tables.size() < 2)
        return;
    std::vector<const Column*> fields;
    for (const OutputColumn& output : Which.Output) {
        if (output.Value)
            CollectFields(*output.Value, fields);
        else
            fields.push_back(output.Field);
    }
    for (TableRef* table : In.Tables) {
        const bool hasPart = std::any_of(fields.begin(), fields.end(), [&](const Column* field) { return Owns(*table, *field); });
        if (!hasPart)
            continue;
        Which.RowsOf.push_back(table);
        table->ShowsRowId = table->Table;
    }
    if (Which.RowsOf.size() == In.Tables.size())
        Which.RowsOf.clear();
}

}

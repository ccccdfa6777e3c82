// platform/jetsql/CBinder.cpp
// Gives the names of a syntax tree their meaning: the statements.

#include "platform/jetsql/CBinder.h"

#include "platform/jetsql/TypeRules.h"
#include "platform/text/Fold.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace jetsql {

QByteArray Quoted(const QString& Name)
{
    return '"' + Name.toUtf8().replace('"', "\"\"") + '"';
}

bool SameName(QStringView Left, QStringView Right)
{
    const auto isAscii = [](QStringView text) { return std::all_of(text.cbegin(), text.cend(), [](QChar unit) { return unit < u'\x80'; }); };
    if (isAscii(Left) && isAscii(Right))
        return Left.compare(Right, Qt::CaseInsensitive) == 0;
    return text::EqualText(Left, Right);
}

CBinder::CBinder(const Catalog& Names, const CTokens& Tokens) : m_names(Names), m_tokens(&Tokens)
{
}

void CBinder::Bind(Tree& Statement)
{
    Declare(Statement);
    switch (Statement.Type) {
    case QueryType::Append: BindInsert(Statement); break;
    case QueryType::MakeTable: BindMakeTable(Statement); break;
    case QueryType::Update: BindUpdate(Statement); break;
    case QueryType::Delete: BindDelete(Statement); break;
    default: BindQuery(*Statement.Source, nullptr); break;
    }
}

void CBinder::Declare(const Tree& Statement)
{
    for (const DeclaredParameter& declared : Statement.Declared) {
        const bool isKnown = std::any_of(m_parameters.begin(), m_parameters.end(), [&](const KnownParameter& known) {
            return SameName(known.Info.Name, declared.Name);
        });
        if (!isKnown)
            m_parameters.push_back({{declared.Name, declared.Type}, true, m_place});
    }
}

std::vector<ParameterInfo> CBinder::Parameters() const
{
    std::vector<ParameterInfo> ordered(m_parameters.size());
    for (size_t i = 0; i < m_parameters.size(); ++i)
        ordered[size_t(ParameterIndex(int(i)))] = m_parameters[i].Info;
    return ordered;
}

int CBinder::ParameterIndex(int Id) const
{
    const KnownParameter& wanted = m_parameters[size_t(Id)];
    int index = 0;
    for (size_t i = 0; i < m_parameters.size(); ++i) {
        const KnownParameter& other = m_parameters[i];
        const bool isBefore = other.IsDeclared != wanted.IsDeclared ? other.IsDeclared
            : other.IsDeclared ? int(i) < Id : other.Place < wanted.Place;
        index += isBefore ? 1 : 0;
    }
    return index;
}

const TableInfo& CBinder::TargetTable(const QString& Name, int Token, int MissingNumber)
{
    if (const TableInfo* table = m_names.FindTable(Name)) {
        m_sources.push_back(table->Name);
        return *table;
    }
    if (m_names.FindQuery(Name))
        throw MakeError(3073, {}, OffsetOf(Token));
    throw MakeError(MissingNumber, {Name}, OffsetOf(Token));
}

void CBinder::BindInsert(Tree& Statement)
{
    m_target = &TargetTable(Statement.Target, Statement.TargetToken, 3192);
    BindTargetFields(Statement);
    m_clause = Clause::Values;
    for (const ExprPtr& value : Statement.Values)
        BindExpression(*value, nullptr);
    m_clause = Clause::Items;
    if (Statement.Source)
        BindQuery(*Statement.Source, nullptr);
    const bool matchesNames = Statement.Source && Statement.TargetFields.empty();
    if (matchesNames)
        return MatchByName(Statement);
    const size_t given = Statement.Source ? Statement.Source->Columns.size() : Statement.Values.size();
    if (given != m_targetFields.size())
        throw MakeError(3346, {QString::number(given), QString::number(m_targetFields.size())}, OffsetOf(Statement.TargetToken));
}

// Without a list all fields are meant, in their order.
void CBinder::BindTargetFields(const Tree& Statement)
{
    if (Statement.TargetFields.empty()) {
        m_targetFields.resize(m_target->Fields.size());
        std::iota(m_targetFields.begin(), m_targetFields.end(), 0);
        return;
    }
    for (size_t i = 0; i < Statement.TargetFields.size(); ++i) {
        const QString& name = Statement.TargetFields[i];
        const auto field = std::find_if(m_target->Fields.begin(), m_target->Fields.end(), [&](const FieldInfo& info) {
            return SameName(info.Name, name);
        });
        const int offset = OffsetOf(Statement.TargetFieldTokens[i]);
        if (field == m_target->Fields.end())
            throw MakeError(3127, {name}, offset);
        const int number = int(field - m_target->Fields.begin());
        if (std::find(m_targetFields.begin(), m_targetFields.end(), number) != m_targetFields.end())
            throw MakeError(3063, {name}, offset);
        m_targetFields.push_back(number);
    }
}

// INSERT INTO t SELECT …: the columns' names say where they go.
void CBinder::MatchByName(const Tree& Statement)
{
    m_targetFields.clear();
    for (const ResultColumn& column : Statement.Source->Columns) {
        const auto field = std::find_if(m_target->Fields.begin(), m_target->Fields.end(), [&](const FieldInfo& info) {
            return SameName(info.Name, column.Name);
        });
        if (field == m_target->Fields.end())
            throw MakeError(3127, {column.Name}, OffsetOf(Statement.TargetToken));
        m_targetFields.push_back(int(field - m_target->Fields.begin()));
    }
}

// The rows may go into a table of any name that is free when the statement runs.
void CBinder::BindMakeTable(Tree& Statement)
{
    Select& first = *Statement.Source->Members.front();
    Statement.Target = std::exchange(first.Into, {});
    Statement.TargetToken = first.IntoToken + 1;
    BindQuery(*Statement.Source, nullptr);
    const bool isSource = std::any_of(m_sources.begin(), m_sources.end(), [&](const QString& source) { return SameName(source, Statement.Target); });
    if (isSource)
        throw MakeError(3610, {}, OffsetOf(Statement.TargetToken));
}

void CBinder::BindUpdate(Tree& Statement)
{
    Scope scope;
    BindTables(Statement.From, scope);
    m_clause = Clause::Where;
    std::vector<const Column*> known;
    for (Assignment& assignment : Statement.Assignments) {
        Expr& name = *assignment.Target;
        name.Field = FindColumn(name, scope);
        if (!name.Field)
            throw MakeError(3070, {name.Name}, OffsetOf(name.First));
        if (std::find(known.begin(), known.end(), name.Field) != known.end())
            throw MakeError(3063, {name.Name}, OffsetOf(name.First));
        known.push_back(name.Field);
        const auto owner = std::find_if(scope.Tables.begin(), scope.Tables.end(), [&](const TableRef* table) { return Owns(*table, *name.Field); });
        FindBase(**owner);
        (*owner)->ShowsRowId |= scope.Tables.size() > 1;
        BindAssignment(assignment, **owner, scope);
    }
    if (Statement.Where) {
        BindExpression(*Statement.Where, &scope);
        AsTruth(*Statement.Where);
    }
}

void CBinder::BindAssignment(Assignment& Which, const TableRef& Owner, Scope& In)
{
    Expr& name = *Which.Target;
    const int field = Owner.Base ? Owner.BaseFields[size_t(name.Field - Owner.Columns.data())] : -1;
    if (field < 0)
        Refuse(3073, name);
    if (Owner.Base->Fields[size_t(field)].AutoIncrement)
        throw MakeError(3113, {name.Name}, OffsetOf(name.First));
    if (!m_target)
        m_target = Owner.Base;
    name.Type = name.Field->Type;
    m_clause = Clause::Values;
    BindExpression(*Which.Value, &In);
    m_clause = Clause::Where;
    if (IsParameter(*Which.Value))
        Infer(*Which.Value, name.Type);
}

// The rows of a query are rows of a table where it reads one table, row by row.
bool CBinder::FindBase(TableRef& Table)
{
    Table.BaseFields.assign(Table.Columns.size(), -1);
    if (Table.Table) {
        Table.Base = Table.Table;
        std::iota(Table.BaseFields.begin(), Table.BaseFields.end(), 0);
        return true;
    }
    Select& select = *Table.Derived->Members.front();
    const bool isPlain = !Table.Derived->IsUnion() && select.From.size() == 1 && select.From.front()->Join == JoinKind::None
        && !select.Distinct && !select.IsGrouped && select.Top < 0;
    if (!isPlain || !FindBase(*select.From.front()))
        return false;
    const TableRef& source = *select.From.front();
    for (size_t i = 0; i < select.Output.size(); ++i) {
        const Column* field = select.Output[i].Field;
        if (field && Owns(source, *field))
            Table.BaseFields[i] = source.BaseFields[size_t(field - source.Columns.data())];
    }
    Table.Base = source.Base;
    select.ShowsRowId = true;
    Table.ShowsRowId = true;
    return true;
}

void CBinder::BindDelete(Tree& Statement)
{
    Scope scope;
    BindTables(Statement.From, scope);
    const auto target = std::find_if(scope.Tables.begin(), scope.Tables.end(), [&](const TableRef* table) {
        return Statement.Target.isEmpty() || SameName(table->VisibleName(), Statement.Target);
    });
    if (target == scope.Tables.end())
        throw MakeError(3078, {Statement.Target}, OffsetOf(Statement.TargetToken));
    if (scope.Tables.size() > 1 && Statement.Target.isEmpty())
        throw MakeError(3128, {}, OffsetOf(Statement.TargetToken));
    if (!FindBase(**target))
        throw MakeError(3086, {}, OffsetOf((*target)->First));
    (*target)->ShowsRowId |= scope.Tables.size() > 1;
    m_target = (*target)->Base;
    m_clause = Clause::Where;
    if (Statement.Where) {
        BindExpression(*Statement.Where, &scope);
        AsTruth(*Statement.Where);
    }
}

int CBinder::OffsetOf(int Token) const
{
    return (*m_tokens)[Token].Offset;
}

void CBinder::Refuse(int Number, const Expr& Which) const
{
    throw MakeError(Number, {Shown(Which)}, OffsetOf(Which.First));
}

}

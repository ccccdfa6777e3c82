// platform/jetsql/CBinderExpression.cpp
// Gives the names of a syntax tree their meaning: expressions and their types.

#include "platform/jetsql/CBinder.h"

#include "platform/jetsql/FunctionTable.h"
#include "platform/jetsql/TypeRules.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr int MaxDepth = 1000;       // levels, aliases included: an alias may stand for an item that holds aliases again
constexpr qint64 MaxSize = 500'000;

FieldType TypeOfKind(char Kind)
{
    switch (Kind) {
    case 't': return FieldType::Text;
    case 'n': return FieldType::Double;
    case 'd': return FieldType::Date;
    default: return FieldType::Null;
    }
}

char KindOf(const FunctionInfo& Function, size_t Index)
{
    const size_t count = qstrlen(Function.Kinds);
    if (Function.Name == "Switch"_L1)   // condition and value by turns
        return Function.Kinds[Index % 2];
    return count == 0 ? 'a' : Function.Kinds[std::min(Index, count - 1)];
}

// Whether all columns in it are of enclosing queries, and there is one.
bool IsAllOuter(const Expr& Tested, bool& HasField)
{
    if (Tested.Alias)
        return IsAllOuter(*Tested.Alias, HasField);
    HasField |= Tested.Field != nullptr;
    return (!Tested.Field || Tested.IsOuter) && std::all_of(Tested.Args.begin(), Tested.Args.end(), [&](const ExprPtr& arg) {
        return IsAllOuter(*arg, HasField);
    });
}

}

void CBinder::BindExpression(Expr& Which, Scope* In)
{
    if (++m_depth > MaxDepth)
        throw MakeError(3071, {}, OffsetOf(Which.First));
    BindKind(Which, In);
    Which.Size = Which.Alias ? Which.Alias->Size : 1;
    Which.Height = Which.Alias ? Which.Alias->Height : 1;
    for (const ExprPtr& arg : Which.Args) {
        Which.HasAggregate |= arg->HasAggregate;
        Which.Size += arg->Size;
        Which.Height = std::max(Which.Height, arg->Height + 1);
    }
    if (Which.Size > MaxSize || Which.Height > MaxDepth)
        throw MakeError(3360, {}, OffsetOf(Which.First));
    --m_depth;
}

void CBinder::BindKind(Expr& Which, Scope* In)
{
    if (Which.What == Expr::Kind::Name)
        return BindName(Which, In);
    if (Which.What == Expr::Kind::Call)
        return BindCall(Which, In);
    for (const ExprPtr& arg : Which.Args)
        BindExpression(*arg, In);
    switch (Which.What) {
    case Expr::Kind::Constant: Which.IsTruth = Which.Type == FieldType::Boolean; break;
    case Expr::Kind::Unary: BindUnary(Which); break;
    case Expr::Kind::Binary: BindBinary(Which); break;
    case Expr::Kind::Chain: Which.Operator == Op::Concat ? BindConcat(Which) : BindLogic(Which); break;
    case Expr::Kind::Between:
    case Expr::Kind::InList: BindComparisons(Which); break;
    case Expr::Kind::Like: BindLike(Which); break;
    case Expr::Kind::IsNull:
        Which.Type = FieldType::Integer;
        Which.IsTruth = true;
        break;
    case Expr::Kind::InSelect:
    case Expr::Kind::Exists:
    case Expr::Kind::Scalar:
    case Expr::Kind::Quantified: BindSubquery(Which, In); break;
    default: break;
    }
}

void CBinder::BindName(Expr& Which, Scope* In)
{
    for (Scope* scope = In; scope; scope = scope->Outer) {
        Which.Field = FindColumn(Which, *scope);
        if (!Which.Field)
            continue;
        Which.Type = Which.Field->Type;
        Which.IsTruth = Which.Type == FieldType::Boolean;
        Which.IsOuter = scope != In;
        return;
    }
    if (BindAlias(Which, In) || BindBareFunction(Which))
        return;
    if (m_clause == Clause::On && !Which.Qualifier.isEmpty())
        throw MakeError(3080, {Which.Qualifier}, OffsetOf(Which.First));
    BindParameter(Which);
}

// The one column of that name; 3079 where there are two. "A.B" may also be the whole name of a column.
const Column* CBinder::FindColumn(const Expr& Name, const Scope& In) const
{
    const QString whole = Name.Qualifier.isEmpty() ? Name.Name : Name.Qualifier + u'.' + Name.Name;
    const Column* found = nullptr;
    for (const TableRef* table : In.Tables) {
        const bool isMeant = Name.Qualifier.isEmpty() || SameName(table->VisibleName(), Name.Qualifier);
        for (const Column& column : table->Columns) {
            const bool fits = (isMeant && SameName(column.Name, Name.Name))
                || (!Name.Qualifier.isEmpty() && SameName(column.Name, whole));
            if (!fits)
                continue;
            if (found)
                throw MakeError(3079, {Name.Name}, OffsetOf(Name.First));
            found = &column;
        }
    }
    return found;
}

bool CBinder::BindAlias(Expr& Which, Scope* In)
{
    if (!In || !In->Of || !Which.Qualifier.isEmpty())
        return false;
    for (size_t i = 0; i < In->Of->Items.size(); ++i) {
        SelectItem& item = In->Of->Items[i];
        if (!item.Value || item.Alias.isEmpty() || !SameName(item.Alias, Which.Name))
            continue;
        BindItem(*In, i);
        const bool isWrongPlace = item.Value->HasAggregate && m_clause != Clause::Items && m_clause != Clause::Having && m_clause != Clause::OrderBy;
        if (isWrongPlace)
            Refuse(m_clause == Clause::GroupBy ? 3098 : m_clause == Clause::Aggregate ? 3095 : 3096, Which);
        Which.Alias = item.Value.get();
        Which.Type = Which.Alias->Type;
        Which.IsTruth = Which.Alias->IsTruth;
        Which.HasAggregate = Which.Alias->HasAggregate;
        return true;
    }
    return false;
}

// Date, Now, Time without parentheses: nobody who writes these means a parameter.
bool CBinder::BindBareFunction(Expr& Which)
{
    if (!Which.Qualifier.isEmpty() || (*m_tokens)[Which.First].What != Token::Kind::Word)
        return false;
    const FunctionInfo* function = FindFunction(Which.Name);
    if (!function || function->Most > 0 || function->Type != FieldType::Date)
        return false;
    Which.What = Expr::Kind::Call;
    Which.Function = function;
    Which.Type = function->Type;
    return true;
}

void CBinder::BindParameter(Expr& Which)
{
    const QString name = Which.Qualifier.isEmpty() ? Which.Name : Which.Qualifier + u'.' + Which.Name;
    std::vector<int> place = m_place;
    place.push_back(Which.First);
    auto known = std::find_if(m_parameters.begin(), m_parameters.end(), [&](const KnownParameter& candidate) {
        return SameName(candidate.Info.Name, name);
    });
    if (known == m_parameters.end())
        known = m_parameters.insert(known, {{name, FieldType::Null}, false, place});
    known->Place = std::min(known->Place, place);
    Which.Parameter = int(known - m_parameters.begin());
    Which.Type = known->IsDeclared ? known->Info.Type : FieldType::Null;
    Which.IsTruth = Which.Type == FieldType::Boolean;
}

// A parameter takes the type of what it meets first.
void CBinder::Infer(Expr& Which, FieldType Type)
{
    if (!IsParameter(Which) || Which.Type != FieldType::Null || Type == FieldType::Null)
        return;
    Which.Type = Type;
    Which.IsTruth = Type == FieldType::Boolean;
    ParameterInfo& info = m_parameters[size_t(Which.Parameter)].Info;
    if (info.Type == FieldType::Null)
        info.Type = Type;
}

// What stands as a condition: a text field is none.
void CBinder::AsTruth(Expr& Which)
{
    Infer(Which, FieldType::Boolean);
    if (IsText(Which.Type) && FieldOf(Which))
        Refuse(3464, Which);
}

void CBinder::BindUnary(Expr& Which)
{
    Expr& operand = *Which.Args.front();
    if (Which.Operator == Op::Not) {
        AsTruth(operand);
        Which.IsTruth = operand.IsTruth;
        Which.Type = operand.IsTruth ? FieldType::Integer : FieldType::Long;
        return;
    }
    Infer(operand, FieldType::Double);
    Which.Type = IsText(operand.Type) ? FieldType::Double : ArithmeticType(Op::Subtract, FieldType::Byte, operand.Type);
}

void CBinder::BindBinary(Expr& Which)
{
    Expr& left = *Which.Args.front();
    Expr& right = *Which.Args.back();
    if (IsComparison(Which.Operator)) {
        CheckComparison(left, right, Which);
        Which.Type = FieldType::Integer;
        Which.IsTruth = true;
        return;
    }
    if (Which.Operator == Op::Xor || Which.Operator == Op::Eqv || Which.Operator == Op::Imp)
        return BindLogic(Which);
    const bool joins = Which.Operator == Op::Add && (IsText(left.Type) || IsText(right.Type));
    for (Expr* operand : {&left, &right}) {
        const Expr& other = operand == &left ? right : left;
        if (joins || IsNumeric(other.Type) || Which.Operator != Op::Add)
            Infer(*operand, joins ? FieldType::Text : FieldType::Double);
    }
    switch (Which.Operator) {
    case Op::Add: case Op::Subtract: case Op::Multiply:
        Which.Type = ArithmeticType(Which.Operator, left.Type, right.Type);
        break;
    case Op::IntDivide: case Op::Mod: Which.Type = FieldType::Long; break;
    default: Which.Type = FieldType::Double; break;
    }
}

void CBinder::BindLogic(Expr& Which)
{
    Which.IsTruth = true;
    for (const ExprPtr& arg : Which.Args) {
        AsTruth(*arg);
        Which.IsTruth &= arg->IsTruth || IsNullWord(*arg);
    }
    Which.Type = Which.IsTruth ? FieldType::Integer : FieldType::Long;
}

void CBinder::BindConcat(Expr& Which)
{
    Which.Type = FieldType::Text;
    for (const ExprPtr& arg : Which.Args) {
        Infer(*arg, FieldType::Text);
        if (arg->Type == FieldType::Memo)
            Which.Type = FieldType::Memo;
    }
}

void CBinder::CheckComparison(Expr& Left, Expr& Right, const Expr& Whole)
{
    Infer(Left, Right.Type);
    Infer(Right, Left.Type);
    if (TypesClash(Left, Right))
        Refuse(m_clause == Clause::On ? 3615 : 3464, Whole);
}

void CBinder::BindComparisons(Expr& Which)
{
    for (size_t i = 1; i < Which.Args.size(); ++i)
        CheckComparison(*Which.Args.front(), *Which.Args[i], Which);
    Which.Type = FieldType::Integer;
    Which.IsTruth = true;
}

void CBinder::BindLike(Expr& Which)
{
    for (const ExprPtr& arg : Which.Args)
        Infer(*arg, FieldType::Text);
    Which.Type = FieldType::Integer;
    Which.IsTruth = true;
}

void CBinder::BindSubquery(Expr& Which, Scope* In)
{
    BindQuery(*Which.Select, In);
    Which.Type = FieldType::Integer;
    Which.IsTruth = true;
    if (Which.What == Expr::Kind::Exists)
        return;
    const auto& columns = Which.Select->Columns;
    if (columns.size() != 1)
        throw MakeError(3306, {}, OffsetOf(Which.Select->Members.front()->First));
    const ResultColumn& column = columns.front();
    if (Which.What == Expr::Kind::Scalar) {
        Which.Type = column.Type;
        Which.IsTruth = column.Type == FieldType::Boolean;
        return;
    }
    Infer(*Which.Args.front(), column.Type);
    if (Which.What == Expr::Kind::Quantified && Which.Args.front()->HasAggregate)
        Refuse(3095, Which);   // the comparison itself is written as an aggregate over the rows
    const FieldType left = Which.Args.front()->Type;
    if (left != FieldType::Null && column.Type != FieldType::Null && IsText(left) != IsText(column.Type))
        Refuse(3464, Which);
}

void CBinder::BindCall(Expr& Which, Scope* In)
{
    Which.Function = FindFunction(Which.Name);
    if (!Which.Function)
        throw MakeError(3085, {Which.Name}, OffsetOf(Which.First));
    const FunctionInfo& function = *Which.Function;
    const int count = Which.StarArgument ? 1 : int(Which.Args.size());
    const bool isRight = count >= function.Least && count <= function.Most
        && (!Which.StarArgument || function.Name == "Count"_L1) && (function.Name != "Switch"_L1 || count % 2 == 0);
    if (!isRight)
        throw MakeError(3075, {u"引数の数が違います"_s, Shown(Which)}, OffsetOf(Which.First));
    CheckAggregate(Which);
    const bool isAggregate = function.How == FunctionInfo::Form::Aggregate;
    const Clause around = isAggregate ? std::exchange(m_clause, Clause::Aggregate) : m_clause;
    BindArguments(Which, In);
    m_clause = around;
    bool hasField = false;
    if (isAggregate && !Which.StarArgument && IsAllOuter(*Which.Args.front(), hasField) && hasField) {
        // SQLite would count the rows of the enclosing query; the dialect counts those of the query that it stands in.
        if (!In || In->Tables.empty())
            Refuse(3095, Which);
        Which.Anchor = &In->Tables.front()->Columns.front();
    }
    Which.HasAggregate = isAggregate;
    Which.Type = CallType(Which);
    Which.IsTruth = function.IsTruth || (function.What == FunctionInfo::Gives::Common && Which.Type == FieldType::Boolean);
}

void CBinder::CheckAggregate(const Expr& Which) const
{
    if (Which.Function->How != FunctionInfo::Form::Aggregate)
        return;
    switch (m_clause) {
    case Clause::Aggregate: Refuse(3095, Which);
    case Clause::GroupBy: Refuse(3098, Which);
    case Clause::On: case Clause::Where: Refuse(3096, Which);
    case Clause::Values: Refuse(3095, Which);
    default: break;
    }
}

void CBinder::BindArguments(Expr& Which, Scope* In)
{
    for (size_t i = 0; i < Which.Args.size(); ++i) {
        Expr& arg = *Which.Args[i];
        BindExpression(arg, In);
        const char kind = KindOf(*Which.Function, i);
        if (kind == 'c')
            AsTruth(arg);
        Infer(arg, TypeOfKind(kind));
        const bool sumsText = kind == 'n' && Which.Function->How == FunctionInfo::Form::Aggregate && IsText(arg.Type) && FieldOf(arg);
        if (sumsText)
            Refuse(3464, Which);
    }
}

FieldType CBinder::CallType(const Expr& Which) const
{
    const FunctionInfo& function = *Which.Function;
    switch (function.What) {
    case FunctionInfo::Gives::First: return Which.Args.front()->Type;
    case FunctionInfo::Gives::Mean:
        return Which.Args.front()->Type == FieldType::Currency ? FieldType::Currency : FieldType::Double;
    case FunctionInfo::Gives::Text:
        return Which.Args.front()->Type == FieldType::Memo ? FieldType::Memo : FieldType::Text;
    case FunctionInfo::Gives::Number: {
        const FieldType type = Which.Args.front()->Type;
        return type == FieldType::Boolean ? FieldType::Integer : IsNumeric(type) ? type : FieldType::Double;
    }
    case FunctionInfo::Gives::Common: {
        FieldType type = FieldType::Null;
        for (size_t i = 1; i < Which.Args.size(); ++i)
            if (KindOf(function, i) == 'a')
                type = CommonType(type, Which.Args[i]->Type);
        return type;
    }
    default: return function.Type;
    }
}

}

// platform/jetsql/CWriterExpression.cpp
// From a bound syntax tree to the text of a SQLite statement: expressions.

#include "platform/jetsql/CWriter.h"

#include "platform/jetsql/FunctionTable.h"
#include "platform/jetsql/TypeRules.h"

namespace jetsql {

namespace {

constexpr qsizetype MaxSql = 64 * 1024 * 1024;
constexpr size_t MaxFlat = 50;           // links of a chain written in a row; SQLite builds one level for each
constexpr size_t MaxArguments = 100;     // SQLite takes 127
constexpr size_t MaxBindings = 32000;

const char* ComparisonSign(Op Operator)
{
    switch (Operator) {
    case Op::Equal: return " = ";
    case Op::NotEqual: return " <> ";
    case Op::Less: return " < ";
    case Op::LessEqual: return " <= ";
    case Op::Greater: return " > ";
    default: return " >= ";
    }
}

const char* OperatorFunction(Op Operator)
{
    switch (Operator) {
    case Op::Power: return "pow";
    case Op::Divide: return "div";
    case Op::IntDivide: return "intdiv";
    case Op::Mod: return "mod";
    case Op::And: return "and";
    case Op::Or: return "or";
    case Op::Xor: return "xor";
    case Op::Eqv: return "eqv";
    case Op::Imp: return "imp";
    default: return "add";
    }
}

QByteArray TextConstant(const QString& Text)
{
    const QByteArray bytes = Text.toUtf8();
    if (bytes.contains('\0'))
        return "CAST(x'" + bytes.toHex() + "' AS TEXT)";
    return '\'' + QByteArray(bytes).replace('\'', "''") + '\'';
}

QByteArray RealConstant(double Number)
{
    const QByteArray digits = QByteArray::number(Number, 'g', 17);
    return digits.contains('.') || digits.contains('e') ? digits : digits + ".0";
}

QByteArray Code(FieldType Type) { return QByteArray::number(int(Type)); }

const Expr& Behind(const Expr& Which)
{
    const Expr* at = &Which;
    while (at->Alias)
        at = at->Alias;
    return *at;
}

}

QByteArray CWriter::In(const Piece& Which, Rank Lowest)
{
    return Which.How < Lowest ? '(' + Which.Sql + ')' : Which.Sql;
}

CWriter::Piece CWriter::Function(const char* Name, const QByteArrayList& Args)
{
    return {QByteArray(FunctionPrefix.data(), FunctionPrefix.size()) + Name + '(' + Args.join(',') + ')'};
}

CWriter::Piece CWriter::Negated(const Piece& Which, bool IsNegated)
{
    return IsNegated ? Piece{"NOT " + In(Which, Rank::Not), Rank::Not} : Which;
}

CWriter::Piece CWriter::Collated(const Piece& Which, bool IsText, const char* How)
{
    return IsText ? Piece{In(Which, Rank::Collate) + " COLLATE " + How, Rank::Collate} : Which;
}

QByteArray CWriter::Bound(Binding::Kind Source, int Index, FieldType As)
{
    const int index = Source == Binding::Parameter ? m_names.ParameterIndex(Index) : Index;
    const quint64 key = (quint64(Source) << 40) | (quint64(index) << 8) | quint64(As);
    int& number = m_bound[key];
    if (number == 0) {
        if (m_bindings.size() >= MaxBindings)
            throw MakeError(3360);
        m_bindings.push_back({Source, index, As});
        number = int(m_bindings.size());
    }
    return '?' + QByteArray::number(number);
}

CWriter::Piece CWriter::ConstantValue(const jetsql::Value& Constant) const
{
    switch (Constant.Type()) {
    case FieldType::Null: return {"NULL"};
    case FieldType::Boolean:
    case FieldType::Long: return {QByteArray::number(Constant.WholePart()), Constant.WholePart() < 0 ? Rank::Sign : Rank::Atom};
    case FieldType::Text: return {TextConstant(Constant.TextRef())};
    default: return {RealConstant(Constant.RealPart()), Constant.RealPart() < 0 ? Rank::Sign : Rank::Atom};
    }
}

// What the expression is worth; a comparison is worth -1 or 0.
CWriter::Piece CWriter::Value(const Expr& Which)
{
    const Expr& meant = Behind(Which);
    Piece piece = PlainValue(meant);
    m_written += piece.Sql.size();
    if (m_written > MaxSql)
        throw MakeError(3360);
    return piece;
}

CWriter::Piece CWriter::PlainValue(const Expr& Which)
{
    switch (Which.What) {
    case Expr::Kind::Literal:
        return Which.Literal >= 0 ? Piece{Bound(Binding::Literal, Which.Literal, FieldType::Null)} : ConstantValue(Which.Constant);
    case Expr::Kind::Constant: return ConstantValue(Which.Constant);
    case Expr::Kind::Name:
        return {Which.Field ? Which.Field->Sql : Bound(Binding::Parameter, Which.Parameter, Which.Type)};
    case Expr::Kind::Scalar: return Scalar(*Which.Select);
    case Expr::Kind::Call: return Call(Which);
    case Expr::Kind::Like: return Which.Negated ? Truthful(Which) : Like(Which);
    case Expr::Kind::Unary: return Which.Operator == Op::Not && Which.IsTruth ? Truthful(Which) : Unary(Which);
    case Expr::Kind::Binary: return IsComparison(Which.Operator) ? Truthful(Which) : Binary(Which);
    case Expr::Kind::Chain:
        if (Which.Operator == Op::Concat)
            return Concat(Which);
        return Which.IsTruth ? Truthful(Which) : Bitwise(Which);
    default: return Truthful(Which);
    }
}

// SQLite's 1 for true is the engine's -1.
CWriter::Piece CWriter::Truthful(const Expr& Which)
{
    return {"-(" + Truth(Which).Sql + ')', Rank::Sign};
}

// What the expression says as a condition: anything but 0 and Null is true.
CWriter::Piece CWriter::Truth(const Expr& Written)
{
    const Expr& Which = Behind(Written);
    switch (Which.What) {
    case Expr::Kind::Unary:
        if (Which.Operator == Op::Not && Which.IsTruth)
            return Negated(Truth(*Which.Args.front()), true);
        break;
    case Expr::Kind::Binary:
        if (IsComparison(Which.Operator))
            return Comparison(Which);
        break;
    case Expr::Kind::Chain:
        if (Which.Operator != Op::Concat && Which.IsTruth)
            return Logic(Which);
        break;
    case Expr::Kind::Between: return Between(Which);
    case Expr::Kind::InList: return InList(Which);
    case Expr::Kind::Like: return Negated(Like(Which), Which.Negated);
    case Expr::Kind::IsNull:
        return {In(Value(*Which.Args.front()), Rank::Order) + (Which.Negated ? " IS NOT NULL" : " IS NULL"), Rank::Equal};
    case Expr::Kind::Exists: return {"EXISTS(" + Derived(*Which.Select) + ')'};
    case Expr::Kind::InSelect: return InSelect(Which);
    case Expr::Kind::Quantified: return Quantified(Which);
    default: break;
    }
    return Number(Which);
}

bool CWriter::NeedsConversion(FieldType From, FieldType To)
{
    if (To == FieldType::Null || From == To || (IsText(From) && IsText(To)))
        return false;
    if (IsWhole(From) && IsWhole(To))
        return To != FieldType::Long && !(To == FieldType::Integer && From <= FieldType::Byte);
    if (To == FieldType::Double)
        return !IsNumeric(From);
    return !(To == FieldType::Currency && IsWhole(From));
}

// Sums and products are worked out in 64 bits, what they are used for may have 32.
bool CWriter::MayOverflow(const Expr& Written)
{
    const Expr& Which = Behind(Written);
    if (!IsWhole(Which.Type))
        return false;
    switch (Which.What) {
    case Expr::Kind::Unary: return Which.Operator == Op::Negate;
    case Expr::Kind::Binary: return Which.Operator == Op::Add || Which.Operator == Op::Subtract || Which.Operator == Op::Multiply;
    case Expr::Kind::Call: return Which.Function->What != FunctionInfo::Gives::Fixed;
    default: return false;
    }
}

CWriter::Piece CWriter::Converted(const QByteArray& Sql, FieldType From, FieldType To, const char* How)
{
    return Function(How, {Sql, Code(From), Code(To)});
}

CWriter::Piece CWriter::As(const Expr& Written, FieldType Wanted)
{
    const Expr& Which = Behind(Written);
    if (Which.Parameter >= 0)
        return {Bound(Binding::Parameter, Which.Parameter, Wanted == FieldType::Null ? Which.Type : Wanted)};
    const bool converts = !IsNullWord(Which) && NeedsConversion(Which.Type, Wanted);
    if (converts && Which.Literal >= 0 && IsText(Wanted))
        return {Bound(Binding::Literal, Which.Literal, Wanted)};
    const Piece value = Value(Which);
    return converts || (IsWhole(Wanted) && MayOverflow(Which)) ? Converted(value.Sql, Which.Type, Wanted) : value;
}

// An operand of + - * and of conditions: text is read as a number.
CWriter::Piece CWriter::Number(const Expr& Which)
{
    const bool isUnknown = Which.Type == FieldType::Null && !IsNullWord(Which) && Behind(Which).Parameter < 0;
    return IsText(Which.Type) || IsBytes(Which.Type) || isUnknown ? As(Which, FieldType::Double) : Value(Which);
}

CWriter::Piece CWriter::Unary(const Expr& Which)
{
    const Piece operand = Number(*Which.Args.front());
    if (Which.Operator == Op::Not)
        return Function("not", {operand.Sql});
    return {'-' + In(operand, Rank::Atom), Rank::Sign};   // never two "-" in a row: a comment for SQLite
}

CWriter::Piece CWriter::Binary(const Expr& Which)
{
    const Expr& left = *Which.Args.front();
    const Expr& right = *Which.Args.back();
    switch (Which.Operator) {
    case Op::Add:
        if (IsText(Which.Type))
            return {In(Value(left), Rank::Concat) + "||" + In(Value(right), Rank::Collate), Rank::Concat};
        if (Which.Type == FieldType::Null)
            return Function("add", {Value(left).Sql, Value(right).Sql});
        return {In(Number(left), Rank::Sum) + " + " + In(Number(right), Rank::Product), Rank::Sum};
    case Op::Subtract:
        return {In(Number(left), Rank::Sum) + " - " + In(Number(right), Rank::Product), Rank::Sum};
    case Op::Multiply:
        if (Which.Type == FieldType::Double)   // SQLite's own would give "infinite" where the engine has an error
            return Function("product", {Number(left).Sql, Number(right).Sql});
        return {In(Number(left), Rank::Product) + " * " + In(Number(right), Rank::Concat), Rank::Product};
    default:
        return Function(OperatorFunction(Which.Operator), {Number(left).Sql, Number(right).Sql});
    }
}

CWriter::Piece CWriter::Bitwise(const Expr& Which)
{
    std::vector<Piece> links;
    for (const ExprPtr& arg : Which.Args)
        links.push_back(Number(*arg));
    while (links.size() > 1) {   // in pairs, so that a long chain stays flat
        std::vector<Piece> pairs;
        for (size_t i = 0; i + 1 < links.size(); i += 2)
            pairs.push_back(Function(OperatorFunction(Which.Operator), {links[i].Sql, links[i + 1].Sql}));
        if (links.size() % 2)
            pairs.push_back(links.back());
        links = std::move(pairs);
    }
    return links.front();
}

CWriter::Piece CWriter::Logic(const Expr& Which)
{
    std::vector<Piece> links;
    for (const ExprPtr& arg : Which.Args)
        links.push_back(Truth(*arg));
    const bool isAnd = Which.Operator == Op::And;
    return Joined(links, 0, links.size(), isAnd ? Rank::And : Rank::Or, isAnd ? " AND " : " OR ");
}

CWriter::Piece CWriter::Joined(const std::vector<Piece>& Links, size_t First, size_t Last, Rank How, const QByteArray& Between)
{
    if (Last - First == 1)
        return Links[First];
    if (Last - First > MaxFlat) {
        const size_t middle = First + (Last - First) / 2;
        return {'(' + Joined(Links, First, middle, How, Between).Sql + ')' + Between + '('
                    + Joined(Links, middle, Last, How, Between).Sql + ')', How};
    }
    QByteArrayList parts;
    for (size_t i = First; i < Last; ++i)
        parts.append(In(Links[i], Rank(int(How) + 1)));
    return {parts.join(Between), How};
}

CWriter::Piece CWriter::Concat(const Expr& Which)
{
    QByteArrayList links;
    for (const ExprPtr& arg : Which.Args)
        links.append(Argument(*arg, 't'));
    while (size_t(links.size()) > MaxArguments) {
        QByteArrayList groups;
        for (qsizetype i = 0; i < links.size(); i += qsizetype(MaxArguments))
            groups.append(Function("concat", links.mid(i, qsizetype(MaxArguments))).Sql);
        links = groups;
    }
    return Function("concat", links);
}

// One side of a comparison whose other side is of type Other. Text made by a function reads as a number or a date
// where it meets one; where it does not read so, the comparison says nothing.
CWriter::Piece CWriter::Against(const Expr& Which, FieldType Other)
{
    if (!IsText(Which.Type) || !IsNumeric(Other))
        return Value(Which);
    return Converted(Value(Which).Sql, Which.Type, Other == FieldType::Date ? Other : FieldType::Double, "soft");
}

CWriter::Piece CWriter::Comparison(const Expr& Which)
{
    const Expr& left = *Which.Args.front();
    const Expr& right = *Which.Args.back();
    const bool isText = !IsNumeric(left.Type) && !IsNumeric(right.Type);
    const bool isEqual = Which.Operator == Op::Equal || Which.Operator == Op::NotEqual;
    const Rank lowest = isEqual ? Rank::Order : Rank::Sum;
    return {In(Against(left, right.Type), lowest) + ComparisonSign(Which.Operator)
                + In(Collated(Against(right, left.Type), isText, isEqual ? "JETEQUAL" : "JETTEXT"), lowest),
            isEqual ? Rank::Equal : Rank::Order};
}

// Both ends in either order.
CWriter::Piece CWriter::Between(const Expr& Which)
{
    const Expr& tested = *Which.Args[0];
    const bool isText = !IsNumeric(tested.Type);
    const QByteArray low = Collated(Against(*Which.Args[1], tested.Type), isText).Sql;
    const QByteArray high = Against(*Which.Args[2], tested.Type).Sql;
    const FieldType other = IsNumeric(Which.Args[1]->Type) ? Which.Args[1]->Type : Which.Args[2]->Type;
    return {In(Collated(Against(tested, other), isText), Rank::Order) + (Which.Negated ? " NOT BETWEEN" : " BETWEEN")
                + " min(" + low + ',' + high + ") AND max(" + low + ',' + high + ')',
            Rank::Equal};
}

CWriter::Piece CWriter::InList(const Expr& Which)
{
    const Expr& tested = *Which.Args.front();
    QByteArrayList list;
    for (size_t i = 1; i < Which.Args.size(); ++i)
        list.append(Against(*Which.Args[i], tested.Type).Sql);
    const FieldType other = Which.Args[1]->Type;
    return {In(Collated(Against(tested, other), !IsNumeric(tested.Type), "JETEQUAL"), Rank::Order) + (Which.Negated ? " NOT IN (" : " IN (")
                + list.join(',') + ')',
            Rank::Equal};
}

// A bad pattern that the statement itself gives is an error; one that stands in a row just matches nothing.
CWriter::Piece CWriter::Like(const Expr& Which)
{
    const Expr& pattern = Behind(*Which.Args.back());
    const bool isGiven = IsLiteral(pattern) || pattern.Parameter >= 0;
    return Function(isGiven ? "like" : "likefield", {Argument(pattern, 't'), Argument(*Which.Args.front(), 't')});
}

// At most one row, else error 3354. An aggregate over a column of the query itself needs no second level.
CWriter::Piece CWriter::Scalar(const Query& Source)
{
    const Select& select = *Source.Members.front();
    if (!Source.IsUnion() && select.IsGrouped && select.GroupBy.empty())
        return {'(' + Derived(Source) + ')'};
    const OutputColumn& column = select.Output.front();
    const bool isPlain = !Source.IsUnion() && !select.IsGrouped && !select.Distinct && select.Top < 0 && column.Field
        && !(column.Value && Behind(*column.Value).IsOuter);
    if (isPlain)
        return {"(SELECT jet_one(" + column.Field->Sql + ')' + Tail(select) + ')'};
    return {"(SELECT jet_one(c0) FROM (" + Derived(Source) + "))"};
}

CWriter::Piece CWriter::InSelect(const Expr& Which)
{
    const Expr& tested = *Which.Args.front();
    const bool isText = !IsNumeric(tested.Type) && !IsNumeric(Which.Select->Columns.front().Type);
    return {In(Collated(Value(tested), isText, "JETEQUAL"), Rank::Order) + (Which.Negated ? " NOT IN (" : " IN (") + Derived(*Which.Select) + ')',
            Rank::Equal};
}

CWriter::Piece CWriter::Quantified(const Expr& Which)
{
    const Expr& tested = *Which.Args.front();
    const bool isText = !IsNumeric(tested.Type) && !IsNumeric(Which.Select->Columns.front().Type);
    return {QByteArray(Which.IsAll ? "(SELECT jet_all(" : "(SELECT jet_any(") + In(Value(tested), Rank::Sum)
            + ComparisonSign(Which.Operator) + (isText ? "c0 COLLATE JETTEXT" : "c0") + ") FROM (" + Derived(*Which.Select) + "))"};
}

QByteArray CWriter::Argument(const Expr& Written, char Kind)
{
    const Expr& Which = Behind(Written);
    switch (Kind) {
    case 'c': return Truth(Which).Sql;
    case 'y': return Value(Which).Sql + ',' + Code(Which.Type);
    case 't': {
        // Whole numbers and doubles say what they are by themselves; a date looks like a number by then.
        const bool isPlain = IsText(Which.Type) || Which.Type == FieldType::Null || IsWhole(Which.Type) || Which.Type == FieldType::Double;
        return isPlain && Which.Literal < 0 && Which.Parameter < 0 ? Value(Which).Sql : As(Which, FieldType::Text).Sql;
    }
    default: return Value(Which).Sql;
    }
}

CWriter::Piece CWriter::Call(const Expr& Which)
{
    const FunctionInfo& function = *Which.Function;
    if (function.How == FunctionInfo::Form::Aggregate)
        return Aggregate(Which);
    if (function.How == FunctionInfo::Form::Case)
        return Case(Which);
    QByteArrayList args;
    for (size_t i = 0; i < Which.Args.size(); ++i)
        args.append(Argument(*Which.Args[i], function.Kinds[std::min(i, qstrlen(function.Kinds) - 1)]));
    if (args.isEmpty() && function.IsVolatile)   // what a call finds out can be kept beside a constant argument only
        args.append("1");
    const Piece call{SqlName(function) + '(' + args.join(',') + ')'};
    return Which.RefusesNull ? Function("notnull", {call.Sql}) : call;
}

CWriter::Piece CWriter::Aggregate(const Expr& Which)
{
    const QByteArray name = QByteArray(Which.Function->Name.data(), Which.Function->Name.size()).toLower();
    if (Which.StarArgument)
        return {"count(*)"};
    const Expr& arg = *Which.Args.front();
    const bool isOwn = name == "first" || name == "last" || name.startsWith("st") || name.startsWith("var");
    const auto called = [&](const Piece& value) {
        // SQLite takes an aggregate for one of the query whose columns it reads: a column of this one is named, too.
        const QByteArray sql = Which.Anchor ? "CASE WHEN " + Which.Anchor->Sql + " IS NULL OR 1 THEN " + value.Sql + " END" : value.Sql;
        return Piece{(isOwn ? "jet_" : "") + name + '(' + sql + ')'};
    };
    if (Which.Function->Kinds[0] == 'n')
        return called(Number(arg));
    const bool compares = (name == "min" || name == "max") && !IsNumeric(arg.Type);
    return called(Collated(Value(arg), compares));
}

CWriter::Piece CWriter::Case(const Expr& Which)
{
    const auto& args = Which.Args;
    const auto value = [&](size_t i) { return As(*args[i], Which.Type).Sql; };
    QByteArray sql = "CASE";
    if (Which.Name.compare(u"Choose", Qt::CaseInsensitive) == 0) {
        sql += ' ' + Converted(Value(*args[0]).Sql, args[0]->Type, FieldType::Long).Sql;
        for (size_t i = 1; i < args.size(); ++i)
            sql += " WHEN " + QByteArray::number(qulonglong(i)) + " THEN " + value(i);
    } else {
        size_t i = 0;
        for (; i + 1 < args.size(); i += 2)
            sql += " WHEN " + Truth(*args[i]).Sql + " THEN " + value(i + 1);
        if (i < args.size())   // IIf's last
            sql += " ELSE " + value(i);
    }
    return {sql + " END"};
}

}

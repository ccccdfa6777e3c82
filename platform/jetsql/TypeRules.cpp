// platform/jetsql/TypeRules.cpp
// Which type comes out where two types meet.

#include "platform/jetsql/TypeRules.h"

#include "platform/jetsql/CTokens.h"

#include <algorithm>
#include <limits>

namespace jetsql {

FieldType ArithmeticType(Op Operator, FieldType Left, FieldType Right)
{
    if (Left == FieldType::Null || Right == FieldType::Null)
        return Operator == Op::Add && !IsNumeric(Left) && !IsNumeric(Right) ? FieldType::Null : FieldType::Double;
    if (IsText(Left) && IsText(Right) && Operator == Op::Add)
        return Left == Right ? Left : FieldType::Memo;
    const bool hasDate = Left == FieldType::Date || Right == FieldType::Date;
    if (hasDate && Operator == Op::Add)
        return FieldType::Date;
    if (hasDate && Operator == Op::Subtract)
        return Left == Right ? FieldType::Double : FieldType::Date;
    if (IsWhole(Left) && IsWhole(Right))
        return FieldType::Long;
    const auto isExact = [](FieldType type) { return IsWhole(type) || type == FieldType::Currency; };
    return isExact(Left) && isExact(Right) ? FieldType::Currency : FieldType::Double;
}

FieldType CommonType(FieldType Left, FieldType Right)
{
    if (Left == Right || Right == FieldType::Null)
        return Left;
    if (Left == FieldType::Null)
        return Right;
    if (IsNumber(Left) && IsNumber(Right)) {
        const FieldType wider = std::max(Left, Right);
        const FieldType other = std::min(Left, Right);
        if (wider == FieldType::Single && other >= FieldType::Long)
            return FieldType::Double;   // a Single holds fewer digits than a Long or a Currency
        return wider == FieldType::Byte && other == FieldType::Boolean ? FieldType::Integer : wider;
    }
    if (Left == FieldType::Memo || Right == FieldType::Memo)
        return FieldType::Memo;
    return FieldType::Text;
}

const Column* FieldOf(const Expr& Tested)
{
    const Expr* at = &Tested;
    while (at->Alias)
        at = at->Alias;
    return at->Field;
}

bool IsLiteral(const Expr& Tested)
{
    if (Tested.What == Expr::Kind::Unary && Tested.Operator == Op::Negate)
        return IsLiteral(*Tested.Args.front());
    return Tested.What == Expr::Kind::Literal || (Tested.What == Expr::Kind::Constant && !IsNullWord(Tested));
}

Value ConstantOf(const Expr& Given, const CTokens& Tokens)
{
    if (Given.What != Expr::Kind::Unary)
        return Given.Literal >= 0 ? Tokens.LiteralValue(Given.Literal) : Given.Constant;
    const Value positive = ConstantOf(*Given.Args.front(), Tokens);
    if (IsWhole(positive.Type()) && positive.WholePart() != std::numeric_limits<qint32>::min())
        return Value::FromLong(-positive.WholePart());
    return Value::FromDouble(-positive.ToDouble());
}

bool IsNullWord(const Expr& Tested)
{
    return Tested.What == Expr::Kind::Constant && Tested.Constant.IsNull();
}

bool IsParameter(const Expr& Tested)
{
    return Tested.Parameter >= 0;
}

bool TypesClash(const Expr& Left, const Expr& Right)
{
    // A Guid is written as text.
    const auto isWritten = [](FieldType type) { return IsText(type) || type == FieldType::Guid; };
    if (Left.Type == FieldType::Null || Right.Type == FieldType::Null || isWritten(Left.Type) == isWritten(Right.Type))
        return false;
    const bool leftIsField = FieldOf(Left), rightIsField = FieldOf(Right);
    return (leftIsField && (rightIsField || IsLiteral(Right))) || (rightIsField && IsLiteral(Left));
}

bool SameExpression(const Expr& Left, const Expr& Right)
{
    if (Left.Alias)
        return SameExpression(*Left.Alias, Right);
    if (Right.Alias)
        return SameExpression(Left, *Right.Alias);
    if (Left.What != Right.What || Left.Operator != Right.Operator || Left.Negated != Right.Negated
        || Left.Field != Right.Field || Left.Function != Right.Function || Left.Parameter != Right.Parameter
        || Left.Literal != Right.Literal || !(Left.Constant == Right.Constant) || Left.Args.size() != Right.Args.size()
        || Left.Select || Right.Select || Left.StarArgument != Right.StarArgument)
        return false;
    return std::equal(Left.Args.begin(), Left.Args.end(), Right.Args.begin(),
                      [](const ExprPtr& a, const ExprPtr& b) { return SameExpression(*a, *b); });
}

}

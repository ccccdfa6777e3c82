// platform/jetsql/CParserExpression.cpp
// From tokens to the syntax tree: expressions, by climbing over the ranks of the operators.

#include "platform/jetsql/CParser.h"

#include <QLatin1StringView>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr int MaxHeight = 400;   // SQLite takes trees of 1000 levels, and one level here is up to two there
constexpr int NotRank = 5;
constexpr int ComparisonRank = 6;
constexpr int SignRank = 13;

// From the loosest to the closest; 0 is no operator.
int RankOf(Op Operator)
{
    switch (Operator) {
    case Op::Imp: return 1;
    case Op::Eqv: return 2;
    case Op::Xor: return 3;
    case Op::Or: return 4;
    case Op::And: return 5;   // Not binds closer: see Prefix
    case Op::Concat: return 7;
    case Op::Add: case Op::Subtract: return 8;
    case Op::Mod: return 9;
    case Op::IntDivide: return 10;
    case Op::Multiply: case Op::Divide: return 11;
    case Op::Power: return 14;
    default: return IsComparison(Operator) ? ComparisonRank : 0;
    }
}

bool IsChain(Op Operator) { return Operator == Op::And || Operator == Op::Or || Operator == Op::Concat; }

}

ExprPtr CParser::Make(Expr::Kind What, int First) const
{
    auto made = std::make_unique<Expr>();
    made->What = What;
    made->First = First;
    return made;
}

// To be called when all arguments are in place.
ExprPtr CParser::Closed(ExprPtr What) const
{
    What->Last = m_at - 1;
    for (const ExprPtr& arg : What->Args)
        What->Height = std::max(What->Height, arg->Height + 1);
    if (What->Height > MaxHeight)
        Refuse(3071);
    return What;
}

Op CParser::InfixOperator() const
{
    const Token& token = Peek();
    switch (token.Key) {
    case Keyword::Mod: return Op::Mod;
    case Keyword::And: return Op::And;
    case Keyword::Or: return Op::Or;
    case Keyword::Xor: return Op::Xor;
    case Keyword::Eqv: return Op::Eqv;
    case Keyword::Imp: return Op::Imp;
    default: break;
    }
    switch (token.Mark) {
    case Sign::Caret: return Op::Power;
    case Sign::Star: return Op::Multiply;
    case Sign::Slash: return Op::Divide;
    case Sign::Backslash: return Op::IntDivide;
    case Sign::Plus: return Op::Add;
    case Sign::Minus: return Op::Subtract;
    case Sign::Ampersand: return Op::Concat;
    case Sign::Equal: return Op::Equal;
    case Sign::NotEqual: return Op::NotEqual;
    case Sign::Less: return Op::Less;
    case Sign::LessEqual: return Op::LessEqual;
    case Sign::Greater: return Op::Greater;
    case Sign::GreaterEqual: return Op::GreaterEqual;
    default: return Op::None;
    }
}

bool CParser::AtPostfix() const
{
    const int ahead = At(Keyword::Not) ? 1 : 0;
    if (At(Keyword::Like, ahead) || At(Keyword::Between, ahead) || At(Keyword::In, ahead))
        return true;
    return At(Keyword::Is);
}

// Left, Right and Asc are functions as well as kinds of joins and an order.
bool CParser::AtCall() const
{
    return (At(Keyword::Left) || At(Keyword::Right) || At(Keyword::Asc)) && At(Sign::Open, 1);
}

// Whether an expression may begin here, and not the next clause.
bool CParser::AtExpression() const
{
    if (AtEnd() || At(Sign::Comma) || At(Sign::Close))
        return false;
    return !IsOperatorWord(Peek().Key) || At(Keyword::Not) || AtCall() || CanBeName();
}

// Level is the lowest rank that may be taken.
ExprPtr CParser::Expression(int Level)
{
    const CNesting nesting(*this);
    ExprPtr left = Prefix();
    for (;;) {
        if (AtPostfix() && Level <= ComparisonRank) {
            left = Postfix(std::move(left), ComparisonRank);
            continue;
        }
        const Op op = InfixOperator();
        const int rank = RankOf(op);
        if (rank == 0 || rank < Level)
            return left;
        left = IsComparison(op) ? Comparison(std::move(left), op, rank) : Infix(std::move(left), op, rank);
    }
}

// Not ranks between And and the comparisons, a sign between "*" and "^"; but as the first thing of an operand both
// are taken wherever they stand ("2 ^ -1", "1 + Not 0").
ExprPtr CParser::Prefix()
{
    const int first = m_at;
    if (Accept(Keyword::Not)) {
        ExprPtr result = Make(Expr::Kind::Unary, first);
        result->Operator = Op::Not;
        result->Args.push_back(Expression(NotRank + 1));
        return Closed(std::move(result));
    }
    if (At(Sign::Minus) || At(Sign::Plus)) {
        const bool negates = At(Sign::Minus);
        ++m_at;
        ExprPtr operand = Expression(SignRank);
        if (!negates)
            return operand;
        ExprPtr result = Make(Expr::Kind::Unary, first);
        result->Operator = Op::Negate;
        result->Args.push_back(std::move(operand));
        return Closed(std::move(result));
    }
    return Primary();
}

ExprPtr CParser::Infix(ExprPtr Left, Op Operator, int Level)
{
    const int first = Left->First;
    ++m_at;
    ExprPtr right = Expression(Level + 1);
    if (IsChain(Operator) && Left->What == Expr::Kind::Chain && Left->Operator == Operator) {
        Left->Args.push_back(std::move(right));
        return Closed(std::move(Left));
    }
    ExprPtr result = Make(IsChain(Operator) ? Expr::Kind::Chain : Expr::Kind::Binary, first);
    result->Operator = Operator;
    result->Args.push_back(std::move(Left));
    result->Args.push_back(std::move(right));
    return Closed(std::move(result));
}

ExprPtr CParser::Comparison(ExprPtr Left, Op Operator, int Level)
{
    const bool isQuantified = (At(Keyword::All, 1) || At(Keyword::Any, 1) || At(Keyword::Some, 1)) && At(Sign::Open, 2);
    if (!isQuantified)
        return Infix(std::move(Left), Operator, Level);
    ExprPtr result = Make(Expr::Kind::Quantified, Left->First);
    result->Operator = Operator;
    result->IsAll = At(Keyword::All, 1);
    result->Args.push_back(std::move(Left));
    m_at += 2;
    result->Select = Subquery();
    return Closed(std::move(result));
}

ExprPtr CParser::Postfix(ExprPtr Left, int Level)
{
    if (At(Keyword::Is))
        return IsNull(std::move(Left));
    const bool isNegated = Accept(Keyword::Not);
    ExprPtr result;
    if (Accept(Keyword::Like)) {
        result = Make(Expr::Kind::Like, Left->First);
        result->Args.push_back(std::move(Left));
        result->Args.push_back(Expression(Level + 1));
        result = Closed(std::move(result));
    } else if (Accept(Keyword::Between)) {
        result = Between(std::move(Left), Level);
    } else {
        ++m_at;
        result = In(std::move(Left));
    }
    result->Negated = isNegated;
    return result;
}

ExprPtr CParser::Between(ExprPtr Left, int Level)
{
    ExprPtr result = Make(Expr::Kind::Between, Left->First);
    result->Args.push_back(std::move(Left));
    result->Args.push_back(Expression(Level + 1));
    if (!Accept(Keyword::And))
        RefuseExpression(u"構文エラーです: Between に And がありません"_s, result->First);
    result->Args.push_back(Expression(Level + 1));
    return Closed(std::move(result));
}

ExprPtr CParser::In(ExprPtr Left)
{
    const int first = Left->First;
    if (!At(Sign::Open))
        RefuseExpression(u"構文エラーです: In に括弧がありません"_s, first);
    const bool isSelect = At(Keyword::Select, 1);
    ExprPtr result = Make(isSelect ? Expr::Kind::InSelect : Expr::Kind::InList, first);
    result->Args.push_back(std::move(Left));
    if (isSelect) {
        result->Select = Subquery();
        return Closed(std::move(result));
    }
    ++m_at;
    do
        result->Args.push_back(Expression());
    while (Accept(Sign::Comma));
    if (!Accept(Sign::Close))
        RefuseExpression(u"構文エラーです: 括弧が閉じていません"_s, first);
    return Closed(std::move(result));
}

ExprPtr CParser::IsNull(ExprPtr Left)
{
    ExprPtr result = Make(Expr::Kind::IsNull, Left->First);
    ++m_at;
    result->Negated = Accept(Keyword::Not);
    if (!Accept(Keyword::Null))
        RefuseExpression(u"構文エラーです: Is の後に Null がありません"_s, result->First);
    result->Args.push_back(std::move(Left));
    return Closed(std::move(result));
}

ExprPtr CParser::Primary()
{
    const Token& token = Peek();
    switch (token.What) {
    case Token::Kind::Literal: return LiteralValue();
    case Token::Kind::Number: return LiteralValue();
    case Token::Kind::Name: return NameOrCall();
    case Token::Kind::Word: return Word();
    case Token::Kind::Sign:
        if (At(Sign::Open))
            return Parenthesis();
        [[fallthrough]];
    default: RefuseExpression(u"構文エラーです: 値がありません"_s, m_expressionBegin);
    }
}

ExprPtr CParser::LiteralValue()
{
    const Token& token = Peek();
    ExprPtr result = Make(Expr::Kind::Literal, m_at);
    result->Type = token.Type;
    if (token.What == Token::Kind::Number) {
        bool isLong = false;
        const int number = token.Text.toInt(&isLong);
        result->What = Expr::Kind::Constant;
        result->Constant = isLong ? Value::FromLong(number) : Value::FromDouble(token.Text.toDouble());
        result->Type = result->Constant.Type();
    } else if (m_isForeign) {
        result->Constant = m_tokens.LiteralValue(token.Literal);
    } else {
        result->Literal = m_tokens.FirstEqual(token.Literal);
    }
    ++m_at;
    return Closed(std::move(result));
}

std::unique_ptr<Query> CParser::Subquery()
{
    const CNesting nesting(*this);
    const int begin = m_expressionBegin;
    Expect(Sign::Open, 3141);
    auto query = ReadQuery();
    if (!Accept(Sign::Close))
        RefuseExpression(u"構文エラーです: 括弧が閉じていません"_s, begin);
    m_expressionBegin = begin;
    return query;
}

ExprPtr CParser::Parenthesis()
{
    const int first = m_at;
    if (At(Keyword::Select, 1) && !CanBeName(1)) {
        ExprPtr result = Make(Expr::Kind::Scalar, first);
        result->Select = Subquery();
        return Closed(std::move(result));
    }
    ++m_at;
    ExprPtr result = Expression();
    if (!Accept(Sign::Close))
        RefuseExpression(AtEnd() ? u"構文エラーです: 括弧が閉じていません"_s : u"構文エラーです: 演算子がありません"_s, m_expressionBegin);
    return result;
}

ExprPtr CParser::Word()
{
    if (At(Keyword::Exists) && At(Sign::Open, 1)) {
        ExprPtr result = Make(Expr::Kind::Exists, m_at++);
        result->Select = Subquery();
        return Closed(std::move(result));
    }
    const bool isQualifier = At(Sign::Point, 1) || At(Sign::Exclamation, 1);
    ExprPtr constant = Make(Expr::Kind::Constant, m_at);
    if (!isQualifier && ConstantWord(*constant)) {
        ++m_at;
        return Closed(std::move(constant));
    }
    if (!AtCall() && !CanBeName())
        RefuseExpression(u"構文エラーです: 値がありません"_s, m_expressionBegin);
    return NameOrCall();
}

bool CParser::ConstantWord(Expr& To) const
{
    switch (Peek().Key) {
    case Keyword::Null: return true;
    case Keyword::True: case Keyword::Yes: case Keyword::On: To.Constant = Value::FromBoolean(true); break;
    case Keyword::False: case Keyword::No: case Keyword::Off: To.Constant = Value::FromBoolean(false); break;
    default: return false;
    }
    To.Type = FieldType::Boolean;
    return true;
}

// a, t.a, t!a, [t].[a], f(…)
ExprPtr CParser::NameOrCall()
{
    const int first = m_at;
    const Token& token = m_tokens[m_at++];
    if (At(Sign::Open) && (token.What == Token::Kind::Word || Peek().Touches))
        return Call(token.Text.toString(), first);
    ExprPtr result = Make(Expr::Kind::Name, first);
    result->Name = token.Text.toString();
    while (At(Sign::Point) || At(Sign::Exclamation)) {
        const Token& part = Peek(1);
        if (part.What != Token::Kind::Word && part.What != Token::Kind::Name)
            RefuseExpression(u"構文エラーです: 名前がありません"_s, first);
        result->Qualifier += (result->Qualifier.isEmpty() ? QString() : u"."_s) + result->Name;
        result->Name = part.Text.toString();
        m_at += 2;
    }
    return Closed(std::move(result));
}

ExprPtr CParser::Call(const QString& Function, int First)
{
    const CNesting nesting(*this);
    ExprPtr result = Make(Expr::Kind::Call, First);
    result->RefusesNull = Function.endsWith(u'$');
    result->Name = result->RefusesNull ? Function.chopped(1) : Function;
    ++m_at;
    if (Accept(Sign::Star)) {
        result->StarArgument = true;
    } else if (!At(Sign::Close)) {
        do
            result->Args.push_back(Expression());
        while (Accept(Sign::Comma));
    }
    if (!Accept(Sign::Close))
        RefuseExpression(AtEnd() ? u"構文エラーです: 括弧が閉じていません"_s : u"構文エラーです: 演算子がありません"_s, m_expressionBegin);
    return Closed(std::move(result));
}

}

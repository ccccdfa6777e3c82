// platform/jetsql/CParserQuery.cpp
// From tokens to the syntax tree: SELECT and what stands in its FROM.

#include "platform/jetsql/CParser.h"

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr int MaxJoins = 60;   // SQLite joins no more than 64

}

// Members joined by UNION. The last ORDER BY belongs to the union, wherever the reading of a member has put it.
std::unique_ptr<Query> CParser::ReadQuery()
{
    const CNesting nesting(*this);
    auto query = std::make_unique<Query>();
    bool isEnclosed = false;
    query->Members.push_back(Member(isEnclosed));
    while (Accept(Keyword::Union)) {
        if (!isEnclosed && !query->Members.back()->OrderBy.empty())
            Refuse(3319);
        query->IsAll.push_back(Accept(Keyword::All));
        query->Members.push_back(Member(isEnclosed));
    }
    if (!query->IsUnion())
        return query;
    if (!isEnclosed)
        query->OrderBy = std::exchange(query->Members.back()->OrderBy, {});
    else if (Accept(Keyword::Order))
        query->OrderBy = OrderList();
    return query;
}

std::unique_ptr<Select> CParser::Member(bool& IsEnclosed)
{
    IsEnclosed = At(Sign::Open);
    if (IsEnclosed)
        return EnclosedMember();
    return At(Keyword::Table) || AtNamedMember() ? TableMember() : ReadSelect();
}

// A union in parentheses is one member by itself.
std::unique_ptr<Select> CParser::EnclosedMember()
{
    const CNesting nesting(*this);
    const int first = m_at++;
    auto query = ReadQuery();
    Expect(Sign::Close, 3319);
    if (!query->IsUnion())
        return std::move(query->Members.front());
    auto select = std::make_unique<Select>();
    select->First = first;
    select->Items.push_back({nullptr, {}, {}, first});
    select->From.push_back(std::make_unique<TableRef>());
    select->From.front()->First = first;
    select->From.front()->Derived = std::move(query);
    return select;
}

// The name of a table or query alone, as a member of a union.
bool CParser::AtNamedMember() const
{
    const Token& next = Peek(1);
    return CanBeName() && (next.What == Token::Kind::End || At(Keyword::Union, 1) || At(Sign::Semicolon, 1) || At(Sign::Close, 1));
}

// TABLE x, or x alone, is SELECT * FROM x.
std::unique_ptr<Select> CParser::TableMember()
{
    auto select = std::make_unique<Select>();
    select->First = m_at;
    Accept(Keyword::Table);
    select->Items.push_back({nullptr, {}, {}, m_at});
    auto table = std::make_unique<TableRef>();
    table->First = m_at;
    table->Name = Name(3319);
    select->From.push_back(std::move(table));
    if (Accept(Keyword::Order))
        select->OrderBy = OrderList();
    return select;
}

std::unique_ptr<Select> CParser::ReadSelect()
{
    const CNesting nesting(*this);
    auto select = std::make_unique<Select>();
    select->First = m_at;
    Expect(Keyword::Select, 3141);
    Predicates(*select);
    Items(*select);
    select->IntoToken = m_at;
    if (Accept(Keyword::Into)) {
        select->Into = NewName(3141);
        RefuseOtherFile();
    }
    if (Accept(Keyword::From))
        select->From = From();
    Tail(*select);
    return select;
}

// Whether ALL, DISTINCT or TOP stands here as such and not as the name of a field.
bool CParser::AtPredicate() const
{
    switch (Peek().Key) {
    case Keyword::All: case Keyword::Distinct: case Keyword::DistinctRow: break;
    case Keyword::Top: return Peek(1).What == Token::Kind::Number || Peek(1).What == Token::Kind::Literal || At(Sign::Open, 1)
            || Peek(1).What == Token::Kind::Name || (Peek(1).What == Token::Kind::Word && !IsOperatorWord(Peek(1).Key))
            || (At(Sign::Minus, 1) && Peek(2).What == Token::Kind::Literal);
    default: return false;
    }
    const Token& next = Peek(1);
    if (next.What == Token::Kind::Sign)
        return next.Mark == Sign::Star || next.Mark == Sign::Open || next.Mark == Sign::Minus;
    return next.What != Token::Kind::End && !(next.What == Token::Kind::Word && IsOperatorWord(next.Key) && next.Key != Keyword::Not);
}

void CParser::Predicates(Select& To)
{
    while (AtPredicate()) {
        const Keyword word = m_tokens[m_at++].Key;
        To.Distinct |= word == Keyword::Distinct;
        To.DistinctRow |= word == Keyword::DistinctRow;
        if (word == Keyword::Top)
            Top(To);
    }
}

void CParser::Top(Select& To)
{
    bool isNumber = false;
    const int count = Peek().What == Token::Kind::Number ? Peek().Text.toInt(&isNumber) : 0;
    const bool isPercent = At(Keyword::Percent, 1) && !At(Sign::Comma, 2) && !At(Keyword::From, 2);
    if (!isNumber || count < 1 || (isPercent && count > 100))
        Refuse(3308);
    To.Top = count;
    To.TopPercent = isPercent;
    m_at += isPercent ? 2 : 1;
}

void CParser::Items(Select& To)
{
    do
        To.Items.push_back(Item());
    while (Accept(Sign::Comma));
}

bool CParser::StarItem(SelectItem& To)
{
    if (Accept(Sign::Star))
        return true;
    const bool isQualified = (Peek().What == Token::Kind::Word || Peek().What == Token::Kind::Name)
        && (At(Sign::Point, 1) || At(Sign::Exclamation, 1)) && At(Sign::Star, 2);
    if (!isQualified)
        return false;
    To.StarOf = Peek().Text.toString();
    m_at += 3;
    return true;
}

SelectItem CParser::Item()
{
    SelectItem item;
    item.First = m_at;
    if (StarItem(item))
        return item;
    if (!AtExpression())
        Refuse(3141);
    m_expressionBegin = m_at;
    item.Value = Expression();
    if (Accept(Keyword::As))
        item.Alias = NewName(3141);
    const bool ends = AtEnd() || At(Sign::Comma) || At(Sign::Close) || At(Keyword::From) || At(Keyword::Into)
        || At(Keyword::Where) || At(Keyword::Group) || At(Keyword::Having) || At(Keyword::Order) || At(Keyword::Union)
        || At(Keyword::With) || At(Keyword::Pivot);
    if (!ends)
        RefuseExpression(u"構文エラーです: 演算子がありません"_s, item.First);
    return item;
}

std::vector<std::unique_ptr<TableRef>> CParser::From()
{
    std::vector<std::unique_ptr<TableRef>> from;
    do
        from.push_back(Reference());
    while (Accept(Sign::Comma));
    RefuseOtherFile();
    if (At(Keyword::Join))
        Refuse(3131);   // the bare word does not join
    return from;
}

bool CParser::AtJoin() const
{
    if (At(Keyword::Inner))
        return At(Keyword::Join, 1);
    if (At(Keyword::Left) || At(Keyword::Right))
        return At(Keyword::Join, 1) || (At(Keyword::Outer, 1) && At(Keyword::Join, 2));
    return false;
}

JoinKind CParser::Join()
{
    const Keyword word = m_tokens[m_at++].Key;
    Accept(Keyword::Outer);
    Expect(Keyword::Join, 3135);
    return word == Keyword::Inner ? JoinKind::Inner : word == Keyword::Left ? JoinKind::Left : JoinKind::Right;
}

std::unique_ptr<TableRef> CParser::Reference()
{
    const CNesting nesting(*this);
    auto left = SimpleReference();
    while (AtJoin()) {
        auto join = std::make_unique<TableRef>();
        join->First = left->First;
        join->Join = Join();
        join->Right = SimpleReference();
        Expect(Keyword::On, 3135);
        join->On = Clause(3135);
        join->Height = std::max(left->Height, join->Right->Height) + 1;
        join->Left = std::move(left);
        left = std::move(join);
        if (left->Height > MaxJoins)
            Refuse(3360);
    }
    return left;
}

std::unique_ptr<TableRef> CParser::SimpleReference()
{
    if (At(Sign::Open))
        return Enclosed();
    if (Peek().What == Token::Kind::Name && At(Sign::Point, 1) && Peek().Text.trimmed().startsWith(u"SELECT", Qt::CaseInsensitive))
        return BracketedSelect();
    auto table = std::make_unique<TableRef>();
    table->First = m_at;
    table->Name = Name(3131);
    TableAlias(*table);
    return table;
}

// At "(" with a query behind it, which may be in parentheses or begin with a member that is; and not with a join whose
// first table is a query.
bool CParser::AtEnclosedQuery() const
{
    int ahead = 1;
    while (At(Sign::Open, ahead))
        ++ahead;
    if (!At(Keyword::Select, ahead) || CanBeName(ahead))
        return false;
    int depth = 0, open = ahead - 1;   // parentheses around the select, the outermost one aside
    for (; open > 0 && Peek(ahead).What != Token::Kind::End; ++ahead) {
        depth += At(Sign::Open, ahead) ? 1 : At(Sign::Close, ahead) ? -1 : 0;
        if (depth >= 0)
            continue;
        depth = 0;
        --open;
        const bool goesOn = At(Keyword::Union, ahead + 1) || At(Keyword::Order, ahead + 1) || At(Sign::Close, ahead + 1);
        if (!goesOn)
            return false;
        if (!At(Sign::Close, ahead + 1))
            return true;
    }
    return true;
}

std::unique_ptr<TableRef> CParser::Enclosed()
{
    const CNesting nesting(*this);
    const bool isQuery = AtEnclosedQuery();
    const int first = m_at++;
    std::unique_ptr<TableRef> table;
    if (isQuery) {
        table = std::make_unique<TableRef>();
        table->First = first;
        table->Derived = ReadQuery();
    } else {
        table = Reference();
    }
    Expect(Sign::Close, 3131);
    if (table->Join == JoinKind::None && table->Alias.isEmpty())
        TableAlias(*table);
    return table;
}

// [SELECT …]. AS a: the old way to write a select in FROM. The text stands in the key as it is, constants included.
std::unique_ptr<TableRef> CParser::BracketedSelect()
{
    auto table = std::make_unique<TableRef>();
    table->First = m_at;
    const CNesting nesting(*this);
    try {
        table->Tokens = std::make_shared<const CTokens>(TakeShape(Peek().Text));
        CParser inner(*table->Tokens, true);
        inner.m_depth = m_depth;
        Tree tree = inner.Statement();
        if (!tree.Source || !tree.Declared.empty())
            throw MakeError(3131);
        table->Derived = std::move(tree.Source);
    } catch (Error& refused) {
        refused.Offset = Peek().Offset + 1 + std::max(refused.Offset, 0);
        throw;
    }
    m_at += 2;
    TableAlias(*table);
    return table;
}

void CParser::TableAlias(TableRef& To)
{
    if (Accept(Keyword::As)) {
        To.Alias = NewName(3131);
        return;
    }
    const Token& token = Peek();
    const bool isAlias = token.What == Token::Kind::Name
        || (token.What == Token::Kind::Word && !IsOperatorWord(token.Key));
    if (isAlias)
        To.Alias = NewName(3131);
}

// An expression that a clause consists of, up to where the clause ends.
ExprPtr CParser::Clause(int ErrorNumber)
{
    const bool isEmpty = AtEnd() || At(Sign::Close) || At(Sign::Comma);
    if (isEmpty || (!AtExpression() && ErrorNumber != 3145))
        Refuse(ErrorNumber);
    m_expressionBegin = m_at;
    const int first = m_at;
    ExprPtr expression = Expression();
    const Token& token = Peek();
    const bool goesOn = token.What == Token::Kind::Literal || token.What == Token::Kind::Number
        || token.What == Token::Kind::Name || (token.What == Token::Kind::Word && !IsOperatorWord(token.Key))
        || (token.What == Token::Kind::Sign && !AtEnd() && !At(Sign::Comma) && !At(Sign::Close));
    if (goesOn)
        RefuseExpression(u"構文エラーです: 演算子がありません"_s, first);
    return expression;
}

void CParser::Tail(Select& To)
{
    if (Accept(Keyword::Where))
        To.Where = Clause(3145);
    if (Accept(Keyword::Group)) {
        Expect(Keyword::By, 3132);
        do
            To.GroupBy.push_back(Clause(3132));
        while (Accept(Sign::Comma));
    }
    if (Accept(Keyword::Having))
        To.Having = Clause(3133);
    if (Accept(Keyword::Order))
        To.OrderBy = OrderList();
    OwnerAccess();
    if (AtEnd() || At(Sign::Close) || At(Keyword::Union) || At(Keyword::Pivot))
        return;
    if (To.OrderBy.empty() && !To.Having && To.GroupBy.empty() && !To.Where)
        Refuse(To.From.empty() ? 3141 : 3131);
    Refuse(!To.OrderBy.empty() ? 3138 : To.Having ? 3133 : !To.GroupBy.empty() ? 3132 : 3145);
}

// Says who may run a saved query; here everybody may.
void CParser::OwnerAccess()
{
    if (!Accept(Keyword::With))
        return;
    Expect(Keyword::OwnerAccess, 3141);
    Expect(Keyword::Option, 3141);
}

// IN 'file' after a table's name.
void CParser::RefuseOtherFile() const
{
    if (At(Keyword::In))
        RefuseExpression(u"他のデータベースのテーブルは使えません"_s, m_at);
}

std::vector<OrderItem> CParser::OrderList()
{
    Expect(Keyword::By, 3138);
    std::vector<OrderItem> list;
    do
        list.push_back(Order());
    while (Accept(Sign::Comma));
    return list;
}

OrderItem CParser::Order()
{
    OrderItem item;
    item.First = m_at;
    const Token& next = Peek(1);
    const bool isPosition = Peek().What == Token::Kind::Number
        && (next.What == Token::Kind::End || next.What == Token::Kind::Word || next.Mark == Sign::Comma
            || next.Mark == Sign::Semicolon || next.Mark == Sign::Close);
    if (isPosition) {
        item.Position = std::max(Peek().Text.toInt(), -1);
        if (item.Position < 1)
            Refuse(3138);
        ++m_at;
    } else {
        item.Value = Clause(3138);
    }
    item.Descending = At(Keyword::Desc);
    if (item.Descending || At(Keyword::Asc))
        ++m_at;
    return item;
}

}

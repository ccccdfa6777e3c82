// platform/jetsql/CParserCrosstab.cpp
// From tokens to the syntax tree: TRANSFORM … SELECT … PIVOT.

#include "platform/jetsql/CParser.h"

namespace jetsql {

std::unique_ptr<Query> CParser::ReadCrosstab()
{
    ++m_at;
    auto pivot = std::make_unique<Pivot>();
    pivot->Cell = Clause(3143);
    if (Accept(Keyword::As))
        NewName(3143);   // names nothing: the columns have the names of their values
    if (!At(Keyword::Select))
        Refuse(3143);
    auto select = ReadSelect();
    Expect(Keyword::Pivot, 3143);
    PivotColumns(*pivot);
    OwnerAccess();
    select->Crossed = std::move(pivot);
    auto query = std::make_unique<Query>();
    query->Members.push_back(std::move(select));
    return query;
}

// PIVOT e IN (…) reads like a condition; the parentheses of PIVOT (e IN (…)) make it one.
void CParser::PivotColumns(Pivot& To)
{
    To.Heading = Clause(3143);
    const bool isList = To.Heading->What == Expr::Kind::InList && !To.Heading->Negated && To.Heading->Last == m_at - 1;
    if (!isList)
        return;
    To.IsFixed = true;
    auto args = std::move(To.Heading->Args);
    To.Heading = std::move(args.front());
    args.erase(args.begin());
    To.Fixed = std::move(args);
}

}

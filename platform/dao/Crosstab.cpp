// platform/dao/Crosstab.cpp
// Finding the columns of a crosstab.

#include "platform/dao/Crosstab.h"

namespace dao::mdlCrosstab
{

namespace
{

/// No result is nearly that wide: beyond it the values are only counted.
constexpr qsizetype HeadingsKept = 2000;

} // namespace

jetsql::Statement Spread(CSession& Session, const CSession::Filled& Query)
{
    const jetsql::Crosstab& pivot = *Query.Statement.Pivot;
    const std::vector<Value> values = CSession::BoundValues(Query, true);
    std::vector<Value> headings;
    qsizetype count = 0;
    CRun run(Session.Connection(), pivot.HeadingSql);
    CSession::Bind(run, values);
    while (run.Step()) {
        if (++count <= HeadingsKept)
            headings.push_back(run.Column(0, pivot.HeadingType));
    }
    if (count > HeadingsKept)
        throw jetsql::MakeError(3205, {QString::number(count)});
    return jetsql::Spread(Query.Statement, headings);
}

} // namespace dao::mdlCrosstab

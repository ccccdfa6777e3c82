// viewer/mdlStatements.cpp
// The statements that the query dialog begins with.

#include "viewer/mdlStatements.h"

#include "board/SqlText.h"

using namespace Qt::StringLiterals;

namespace
{

QString Messages(qint32 BBS_ID, const QString& Condition)
{
    return u"SELECT *\r\n  FROM Message\r\n WHERE BBS_ID = "_s + QString::number(BBS_ID) + u"\r\n"_s + Condition + u";"_s;
}

} // namespace

QString mdlStatements::AllMessages(qint32 BBS_ID) { return Messages(BBS_ID, {}); }

QString mdlStatements::MessagesWith(qint32 BBS_ID, const QString& Text)
{
    return Messages(BBS_ID, u"   AND Body Like '*"_s + mdlSqlText::InsideLike(Text) + u"*'\r\n"_s);
}

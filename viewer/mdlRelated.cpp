// viewer/mdlRelated.cpp
// Which message a text like "#123" or "質問板45" means, and the statements that find its thread.

#include "viewer/mdlRelated.h"

#include "board/SqlText.h"
#include "platform/text/Number.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool IsSign(QChar C) { return C == u'#' || C == u'＃'; }

bool IsBlank(QChar C) { return C.isSpace(); } // a selected text may go over a line end

bool IsDigit(QChar C) { return (C >= u'0' && C <= u'9') || (C >= u'０' && C <= u'９'); }

template<class Test> qsizetype FirstOf(const QString& Text, Test Is)
{
    const auto found = std::find_if(Text.begin(), Text.end(), Is);
    return found == Text.end() ? -1 : found - Text.begin();
}

} // namespace

std::optional<mdlRelated::Reference> mdlRelated::Parse(const QString& Text)
{
    const QString text = Text.trimmed();
    qsizetype end = FirstOf(text, IsSign);
    qsizetype next = end + 1;
    if (end < 0) {
        end = FirstOf(text, IsBlank);
        next = end + 1;
    }
    if (end < 0)
        next = end = FirstOf(text, IsDigit);
    if (end < 0)
        return std::nullopt;
    const auto number = text::TextToLong(QStringView(text).mid(next).trimmed());
    if (!number)
        return std::nullopt;
    return Reference{text.left(end).trimmed(), *number};
}

QString mdlRelated::BoardsNamed(const QString& Name)
{
    const QString like = u" Like '*"_s + mdlSqlText::InsideLike(Name) + u"*'"_s;
    return u"SELECT *  FROM BBS WHERE BBS_Name"_s + like + u"    OR ShortName"_s + like;
}

QString mdlRelated::ThreadOf(qint32 BBS_ID, qint32 Number)
{
    return u"SELECT *  FROM Message WHERE RootThread =   (SELECT RootThread     FROM Message    WHERE BBS_ID = "_s +
           QString::number(BBS_ID) + u"     AND ID     = "_s + QString::number(Number) + u"  )"_s;
}

// boardd/Faults.cpp
// The faults that tests and the command line can order.

#include "boardd/Faults.h"

#include "boardd/MessageHtml.h"
#include "boardd/SitePages.h"

#include "platform/text/Codepage932.h"

#include <array>

using namespace Qt::StringLiterals;

namespace
{

struct CFaultName
{
    QLatin1StringView Name;
    FaultKind Kind;
};

constexpr std::array<CFaultName, 8> FaultNames = {{{"status404"_L1, FaultKind::Status404},
                                                   {"error-page"_L1, FaultKind::ErrorPage},
                                                   {"cut"_L1, FaultKind::Cut},
                                                   {"silent"_L1, FaultKind::Silent},
                                                   {"bad-record"_L1, FaultKind::BadRecord},
                                                   {"wrong-encoding"_L1, FaultKind::WrongEncoding},
                                                   {"close"_L1, FaultKind::Close},
                                                   {"empty"_L1, FaultKind::Empty}}};

CReply NotFoundInstead()
{
    CReply reply;
    reply.Status = 404;
    reply.Body = mdlSitePages::NotFound();
    return reply;
}

CReply ErrorInstead()
{
    CReply reply;
    reply.Body = mdlMessageHtml::ErrorPage(u"ただいま混み合っています"_s, u"しばらくしてからお試しください。"_s);
    return reply;
}

/// The first record keeps its number line's label only, and its date becomes words.
QByteArray BreakFirstRecord(QByteArray Page)
{
    const qsizetype posted = Page.indexOf("Posted:");
    if (posted >= 0)
        Page.replace(posted + 7, 10, "yesterday ");
    const qsizetype numberEnd = Page.indexOf("\r\n");
    return numberEnd >= 7 ? Page.replace(7, numberEnd - 7, "") : Page;
}

} // namespace

std::optional<std::pair<FaultKind, int>> mdlFaults::Parse(const QString& Text)
{
    const qsizetype colon = Text.indexOf(u':');
    bool isNumber = true;
    const int from = colon < 0 ? 1 : Text.mid(colon + 1).toInt(&isNumber);
    for (const CFaultName& fault : FaultNames) {
        if (Text.left(colon) == fault.Name && isNumber && from >= 1)
            return std::pair(fault.Kind, from);
    }
    return std::nullopt;
}

QStringList mdlFaults::Names()
{
    QStringList names;
    for (const CFaultName& fault : FaultNames)
        names += fault.Name;
    return names;
}

CReply mdlFaults::Spoil(FaultKind Kind, CReply Reply)
{
    switch (Kind) {
    case FaultKind::Status404:
        return NotFoundInstead();
    case FaultKind::ErrorPage:
        return ErrorInstead();
    case FaultKind::Cut:
        Reply.CutInHalf = true;
        break;
    case FaultKind::BadRecord:
        Reply.Body = BreakFirstRecord(std::move(Reply.Body));
        break;
    case FaultKind::WrongEncoding:
        Reply.Body = text::From932(Reply.Body).toUtf8();
        break;
    case FaultKind::Empty:
        Reply.Body.clear();
        break;
    case FaultKind::None:
    case FaultKind::Silent:
    case FaultKind::Close:
        break;
    }
    return Reply;
}

void CFaultPlan::Set(FaultKind Kind, int From)
{
    const std::lock_guard lock(m_mutex);
    m_kind = Kind;
    m_from = From;
    m_requests = 0;
}

FaultKind CFaultPlan::Next()
{
    const std::lock_guard lock(m_mutex);
    ++m_requests;
    return m_requests >= m_from ? m_kind : FaultKind::None;
}

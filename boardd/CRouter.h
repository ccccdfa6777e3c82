// boardd/CRouter.h
// From a request to its answer: which page, which form, which error.

#ifndef BOARDD_CROUTER_H
#define BOARDD_CROUTER_H

#include "boardd/CCommunity.h"
#include "boardd/CReply.h"
#include "boardd/CVisitor.h"

/// Knows no HTTP library. Safe to use from many threads.
class CRouter
{
public:
    /// Community stays the caller's and must outlive this object.
    explicit CRouter(CCommunity& Community);

    CReply Answer(const CSiteRequest& Request);

    /// Whether the request asks for a log page: the kind that delays and faults are for.
    static bool IsLogRequest(QByteArrayView Path, const CFields& Query);

private:
    /// What a request to a board's script is about.
    struct CTarget;

    CReply AnswerBoard(const CSiteRequest& Request, const QString& Script);
    CReply AnswerPost(const CSiteRequest& Request, const CTarget& Target);
    CReply LogPage(const CSiteRequest& Request, const CTarget& Target) const;
    CReply BoardPage(const CSiteRequest& Request, const CTarget& Target, const QString& Script) const;
    CReply PostForm(const CSiteRequest& Request, const CTarget& Target, bool Reply) const;
    CReply ThreadPage(const CSiteRequest& Request, const CTarget& Target) const;
    CReply TakePost(const CFields& Form, const CTarget& Target, const QByteArray& CookieName);
    CReply TakeDeletion(const CFields& Form, const CTarget& Target);
    CReply TakeSettings(const CFields& Form, const CTarget& Target, const QByteArray& CookieName) const;
    CReply AnswerFile(const QString& Path) const;
    CReply AnswerPastLog(const QString& FileName) const;

    CCommunity& m_community;
};

#endif

// boardd/CReply.h
// What goes between the HTTP layer and the boards: one request as far as the boards care, and the answer.

#ifndef BOARDD_CREPLY_H
#define BOARDD_CREPLY_H

#include "boardd/CBoardServer.h"
#include "boardd/CFields.h"

/// A request whose header has been read and, where it has one, its body too.
struct CSiteRequest
{
    bool IsPost = false;
    QByteArray Path;            ///< percent-decoded, without the query
    CFields Query;
    std::optional<CFields> Form; ///< empty where the posted body is no form
    QByteArray Host;            ///< name and port as the visitor wrote them; only harmless characters
    QByteArray Cookie;          ///< the Cookie header's value
    FaultKind Fault = FaultKind::None; ///< to be played on this request
};

/// The answer to it.
struct CReply
{
    int Status = 200;
    QByteArray ContentType = QByteArrayLiteral("text/html; charset=Shift_JIS");
    QByteArray Body;
    QByteArray SetCookie;   ///< empty: none
    bool CutInHalf = false; ///< announce the whole length, send half, hang up
    bool MayKeep = false;   ///< the same for everybody and for ever: a browser need not ask again
};

#endif

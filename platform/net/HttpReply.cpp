// platform/net/HttpReply.cpp
// Rules about replies of a web server that need no connection to be told.

#include "platform/net/HttpReply.h"

#include "platform/net/CTransfer.h"

using namespace Qt::StringLiterals;

namespace mdlHttpReply
{
int StatusOf(const QNetworkReply& Reply) { return Reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); }

QByteArray HeaderBlock(const QNetworkReply& Reply)
{
    const int status = StatusOf(Reply);
    if (status == 0)
        return {};
    // The library does not tell whether the server said 1.0 or 1.1; the request was made with 1.1.
    QByteArray block = "HTTP/1.1 " + QByteArray::number(status);
    const QByteArray reason = Reply.attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString().toLatin1();
    if (!reason.isEmpty())
        block += ' ' + reason;
    block += "\r\n";
    for (const auto& [name, value] : Reply.rawHeaderPairs()) {
        const QByteArrayList lines = value.split('\n'); // several Set-Cookie lines come as one value
        for (const QByteArray& line : lines)
            block += name + ": " + line + "\r\n";
    }
    return block + "\r\n";
}

std::optional<qint64> PromisedLength(const QNetworkReply& Reply)
{
    if (!Reply.hasRawHeader("Content-Length") || Reply.hasRawHeader("Transfer-Encoding"))
        return std::nullopt;
    bool isNumber = false;
    const qint64 length = Reply.rawHeader("Content-Length").trimmed().toLongLong(&isNumber);
    return isNumber && length >= 0 ? length : -1;
}

bool IsEncoded(const QNetworkReply& Reply)
{
    const QByteArray encoding = Reply.rawHeader("Content-Encoding").trimmed().toLower();
    return !encoding.isEmpty() && encoding != "identity";
}

std::optional<QUrl> RedirectTarget(const QNetworkReply& Reply)
{
    switch (StatusOf(Reply)) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
        break;
    default:
        return std::nullopt;
    }
    if (!Reply.hasRawHeader("Location"))
        return std::nullopt;
    return Reply.url().resolved(QUrl::fromEncoded(Reply.rawHeader("Location").trimmed()));
}

bool HasNoBody(const QByteArray& Method, int Status)
{
    return Method == "HEAD" || Status == 204 || Status == 304 || (Status >= 100 && Status < 200);
}

bool IsConnectionFault(QNetworkReply::NetworkError Error)
{
    const bool answered =
        Error == QNetworkReply::NoError ||
        (Error >= QNetworkReply::ContentAccessDenied && Error <= QNetworkReply::UnknownContentError) ||
        Error >= QNetworkReply::InternalServerError || Error == QNetworkReply::ProxyAuthenticationRequiredError;
    return !answered;
}

int CodeOf(QNetworkReply::NetworkError Error)
{
    switch (Error) {
    case QNetworkReply::HostNotFoundError:
        return CTransfer::NameNotResolved;
    case QNetworkReply::TimeoutError:
        return CTransfer::TimedOut;
    case QNetworkReply::RemoteHostClosedError:
        return CTransfer::ConnectionAborted;
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::UnknownContentError:
        return CTransfer::BadResponse;
    default:
        return CTransfer::CannotConnect;
    }
}

QString TextOf(int Code)
{
    switch (Code) {
    case CTransfer::TimedOut:
        return u"制限時間内に応答がありませんでした。"_s;
    case CTransfer::BadUrl:
        return u"アドレスが正しくありません。"_s;
    case CTransfer::NameNotResolved:
        return u"サーバーの名前が見つかりません。"_s;
    case CTransfer::Cancelled:
        return u"キャンセルしました。"_s;
    case CTransfer::CannotConnect:
        return u"サーバーに接続できません。"_s;
    case CTransfer::ConnectionAborted:
        return u"サーバーとの接続が途中で切れました。"_s;
    case CTransfer::BadResponse:
        return u"サーバーの応答が正しくありません。"_s;
    default:
        return {};
    }
}
} // namespace mdlHttpReply

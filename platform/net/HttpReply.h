// platform/net/HttpReply.h
// Rules about replies of a web server that need no connection to be told.

#ifndef NET_HTTPREPLY_H
#define NET_HTTPREPLY_H

#include <QByteArray>
#include <QNetworkReply>
#include <QString>

#include <optional>

namespace mdlHttpReply
{
/// Status line and header lines of a reply, each closed by CR LF, then an empty line. Empty while there is no status.
QByteArray HeaderBlock(const QNetworkReply& Reply);

/// 0 while the reply has no status line.
int StatusOf(const QNetworkReply& Reply);

/// Bytes that the header promises; nothing when it does not say, -1 when what it says is no number.
std::optional<qint64> PromisedLength(const QNetworkReply& Reply);

/// True when the body came in a form that was not asked for and cannot be read (packed, for one).
bool IsEncoded(const QNetworkReply& Reply);

/// Where the reply sends its reader instead; nothing when it is an answer in itself.
std::optional<QUrl> RedirectTarget(const QNetworkReply& Reply);

/// True for what has no body whatever its header says.
bool HasNoBody(const QByteArray& Method, int Status);

/// True when the connection failed, false when the server answered, if only with an error of its own.
bool IsConnectionFault(QNetworkReply::NetworkError Error);

/// The transfer's code for a failure of the connection.
int CodeOf(QNetworkReply::NetworkError Error);

/// The sentence for a transfer's code.
QString TextOf(int Code);
} // namespace mdlHttpReply

#endif

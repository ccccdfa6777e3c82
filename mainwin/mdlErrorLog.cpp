// mainwin/mdlErrorLog.cpp
// Keeps the records that could not be read: each board has a file for them.

#include "mainwin/mdlErrorLog.h"

#include "app/Path.h"
#include "board/CBBSProperty.h"
#include "board/CLogParser.h"
#include "platform/dao/Error.h"
#include "platform/text/Codepage932.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace mdlErrorLog
{

namespace
{

// Numbers of the engine's language for what a file can refuse.
constexpr int NoAccess = 75;
constexpr int DiskFull = 61;
constexpr int UnknownBoard = 3021;

CResult Refused(int Number, const QString& Description)
{
    return CResult::Failed(u"Error("_s + QString::number(Number) + u"):"_s + Description +
                           u"\r\nエラーログに書き込めませんでした。"_s);
}

CResult WriteRecord(const QString& FileName, const QString& LogText)
{
    const QString path = mdlPath::DiskPath(FileName); // empty for a drive where there are none
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::WriteOnly | QIODevice::Append))
        return Refused(NoAccess, u"ファイル「"_s + FileName + u"」を開けません。"_s);
    // Closed like any record, so that the file can be read as a log again.
    const QByteArray record = text::To932(LogText + u"\r\n"_s + CRecordCutter::SeparatorLine().toString() + u"\r\n"_s);
    if (file.write(record) != record.size() || !file.flush())
        return Refused(DiskFull, u"ファイル「"_s + FileName + u"」に書き込めません。"_s);
    return CResult::Ok();
}

} // namespace

CResult Append(Application& App, qint32 BBS_ID, const QString& LogText)
{
    try {
        CBBSProperty board(App);
        if (!board.GetProperty(BBS_ID))
            return Refused(UnknownBoard, u"掲示板が見つかりません。"_s);
        return WriteRecord(board.GetErrorLogFileName(), LogText);
    } catch (const dao::Error& error) {
        return Refused(error.Number, error.Description);
    }
}

} // namespace mdlErrorLog

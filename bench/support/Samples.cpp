// bench/support/Samples.cpp
// The made-up messages.

#include "bench/support/Samples.h"

#include "platform/dao/Database.h"
#include "platform/text/DateTime.h"
#include "platform/text/Format.h"
#include "store/Store.h"

#include <QDateTime>
#include <QFile>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{
const QString& Sentence(int Number)
{
    static const QStringList sentences{
        u"プリンタの設定を変えたら、表の罫線がずれるようになってしまいました。"_s,
        u"> 一度ドライバを入れ直してみてはいかがでしょうか。"_s,
        u"くわしくは http://www.example.com/~sora/faq.html をごらんください。"_s,
        u"メモリを増やすと起動が早くなると聞いたのですが、本当でしょうか？"_s,
        u"# 昨日の続きです。ﾒｰﾙの設定は①の手順でうまくいきました。"_s,
        u"ソフトの表示が～のようになるときは、文字コードを確かめてください。"_s,
        u"ありがとうございます。おかげさまで、It's | all 解決しました。"_s,
    };
    return sentences.at(Number % sentences.size());
}

QString MakeBody(qint32 ID)
{
    QString body;
    body.reserve(360);
    for (int line = 0; body.size() < 280; ++line)
        body += Sentence(int(ID) + line) + u"\r\n"_s;
    return body;
}

QString PostedText(double PostDate)
{
    return text::FormatDate(PostDate, u"yyyy/mm/dd") + u"（火） "_s + text::FormatDate(PostDate, u"hh:nn");
}
} // namespace

namespace mdlSamples
{
CMessage MakeMessage(qint32 BBS_ID, qint32 ID)
{
    CMessage msg;
    msg.BBS_ID = BBS_ID;
    msg.ID = ID;
    msg.Subject = u"Re: 印刷がうまくできません その%1"_s.arg(ID % 97);
    msg.HomePage = ID % 3 == 0 ? u"http://www.example.com/~user%1/"_s.arg(ID % 50) : QString();
    msg.Mail = ID % 2 == 0 ? u"user%1@example.com"_s.arg(ID % 50) : QString();
    msg.PostName = u"投稿者%1"_s.arg(ID % 50);
    // From 2001-01-01 on, a message every five minutes.
    msg.PostDate = text::ToSerial(QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC).addSecs(qint64(ID) * 300));
    msg.InReplyTo = ID % 4 == 1 || ID < 5 ? 0 : ID - 1 - ID % 7;
    msg.Body = MakeBody(ID);
    return msg;
}

QString MakeRecord(const CMessage& Msg)
{
    return u"Number:%1\r\nTitle:%2\r\nHome Page:%3\r\nE-mail:%4\r\nAuthor:%5\r\nPosted:"_s
               .arg(QString::number(Msg.ID), Msg.Subject, Msg.HomePage, Msg.Mail, Msg.PostName)
        + PostedText(Msg.PostDate) + u"\r\nReplyTo:"_s + (Msg.InReplyTo > 0 ? QString::number(Msg.InReplyTo) : QString())
        + u"\r\nMessage:\r\n"_s + Msg.Body + u"\r\n===--+--+--+--+--+--+--+--+--+--+--+--+--===\r\n"_s;
}

std::vector<QString> MakeBlocks(qint32 BBS_ID, int Count, int PerBlock)
{
    std::vector<QString> blocks;
    for (int id = 1; id <= Count; ++id) {
        if ((id - 1) % PerBlock == 0)
            blocks.emplace_back();
        blocks.back() += MakeRecord(MakeMessage(BBS_ID, id));
    }
    return blocks;
}

bool MakeDatabase(const QString& FileName, qint32 BBS_ID, int Count)
{
    const auto db = mdlStore::CreateNewDatabase(FileName);
    if (!db)
        return false;
    db->BeginTrans();
    const auto rows = db->OpenRecordset(u"Message"_s, dao::RecordsetType::Table);
    for (int id = 1; id <= Count; ++id) {
        const CMessage msg = MakeMessage(BBS_ID, id);
        rows->AddNew();
        rows->Set(u"BBS_ID", dao::Value::FromLong(msg.BBS_ID));
        rows->Set(u"ID", dao::Value::FromLong(msg.ID));
        rows->Set(u"Read", dao::Value::FromBoolean(id % 5 != 0));
        rows->Set(u"Subject", dao::Value::FromText(msg.Subject));
        rows->Set(u"HomePage", dao::Value::FromText(msg.HomePage));
        rows->Set(u"Mail", dao::Value::FromText(msg.Mail));
        rows->Set(u"PostName", dao::Value::FromText(msg.PostName));
        rows->Set(u"PostDate", dao::Value::FromDate(msg.PostDate));
        rows->Set(u"InReplyTo", dao::Value::FromLong(msg.InReplyTo));
        rows->Set(u"Body", dao::Value::FromText(msg.Body));
        rows->Set(u"RootThread", dao::Value::FromLong(msg.InReplyTo > 0 ? msg.InReplyTo : msg.ID));
        rows->Set(u"Mark", dao::Value::FromLong(id % 50 == 0 ? 1 + id % 4 : 0));
        rows->Update();
    }
    db->CommitTrans();
    db->Close();
    return true;
}

bool CopyBoard(const QString& FileName, qint32 BBS_ID, int Boards)
{
    sqlite3* handle = nullptr;
    sqlite3_open(QFile::encodeName(FileName).constData(), &handle);
    const QString fields = u"ID, Read, Subject, HomePage, Mail, PostName, PostDate, InReplyTo, Body, RootThread, Mark"_s;
    const QString sql = u"INSERT INTO Message (BBS_ID, %1) SELECT Number, %1 FROM generate_series, Message"
                        " WHERE BBS_ID = %2"_s.arg(fields).arg(BBS_ID);
    const QString numbers = u"WITH RECURSIVE generate_series(Number) AS (VALUES(101) UNION ALL"
                            " SELECT Number + 1 FROM generate_series WHERE Number < %1) "_s.arg(100 + Boards);
    const bool isDone =
        sqlite3_exec(handle, (numbers + sql).toUtf8().constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(handle);
    return isDone;
}
} // namespace mdlSamples

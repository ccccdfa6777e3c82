// tests/board/Records.h
// Records of the log format, written out the way a board sends them.

#ifndef TESTS_BOARD_RECORDS_H
#define TESTS_BOARD_RECORDS_H

#include "platform/text/Codepage932.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// One record as its lines; every text can be made wrong.
struct CRecordText
{
    QString ID = QStringLiteral("1");
    QString Subject = QStringLiteral("題名");
    QString HomePage = {};
    QString Mail = {};
    QString PostName = QStringLiteral("そら");
    QString PostDate = QStringLiteral("2002/01/15（火） 12:34");
    QString InReplyTo = {};
    QString Body = QStringLiteral("本文");

    QString Text() const
    {
        return QStringList{QStringLiteral("Number:") + ID,         QStringLiteral("Title:") + Subject,
                           QStringLiteral("Home Page:") + HomePage, QStringLiteral("E-mail:") + Mail,
                           QStringLiteral("Author:") + PostName,   QStringLiteral("Posted:") + PostDate,
                           QStringLiteral("ReplyTo:") + InReplyTo, QStringLiteral("Message:"),
                           Body}
            .join(QStringLiteral("\r\n"));
    }

    /// Without the subject line, as the two-sided board sends it.
    QString TwoSidedText() const { return Text().remove(QStringLiteral("Title:") + Subject + QStringLiteral("\r\n")); }
};

namespace mdlRecords
{
inline QString Separator() { return QStringLiteral("\r\n===--+--+--+--+--+--+--+--+--+--+--+--+--===\r\n"); }

/// The records, each closed by a separator.
inline QString Block(const QStringList& Records)
{
    QString text;
    for (const QString& record : Records)
        text += record + Separator();
    return text;
}

/// Records First to Last, none answering another; subject "s<number>".
inline QString Plain(int First, int Last)
{
    QStringList records;
    for (int id = First; id <= Last; ++id)
        records << CRecordText{.ID = QString::number(id), .Subject = QStringLiteral("s%1").arg(id)}.Text();
    return Block(records);
}

inline QByteArray Bytes(const QString& Text) { return text::To932(Text); }
} // namespace mdlRecords

#endif // TESTS_BOARD_RECORDS_H

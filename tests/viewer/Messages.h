// tests/viewer/Messages.h
// Short ways to write messages and to read lists in tests.

#ifndef TESTS_VIEWER_MESSAGES_H
#define TESTS_VIEWER_MESSAGES_H

#include "viewer/CMessageList.h"

#include <QStringList>

#include <initializer_list>

inline CMessage MakeMessage(qint32 BBS_ID, qint32 ID, const QString& Subject = {}, qint32 InReplyTo = 0)
{
    CMessage message;
    message.BBS_ID = BBS_ID;
    message.ID = ID;
    message.Subject = Subject;
    message.InReplyTo = InReplyTo;
    return message;
}

inline CMessageItem MakeItem(const CMessage& Msg)
{
    CMessageItem item;
    item.Message = Msg;
    return item;
}

inline std::vector<CMessageItem> MakeItems(std::initializer_list<CMessage> Messages)
{
    std::vector<CMessageItem> items;
    for (const CMessage& message : Messages)
        items.push_back(MakeItem(message));
    return items;
}

/// The cells of one column, from the top.
inline QStringList ColumnTexts(const CMessageList& List, int Column)
{
    QStringList texts;
    for (int row = 0; row < List.Count(); ++row)
        texts.append(List.Text(row, Column));
    return texts;
}

/// "3/12 3/11": board and number of every row, from the top.
inline QString Ids(const CMessageList& List)
{
    QStringList ids;
    for (int row = 0; row < List.Count(); ++row) {
        const CMessageId id = List.Item(row).Id();
        ids.append(QString::number(id.BBS_ID) + u'/' + QString::number(id.ID));
    }
    return ids.join(u' ');
}

#endif // TESTS_VIEWER_MESSAGES_H

// board/CMessage.h
// One message of a board, as it is read from a log, stored and shown.

#ifndef BOARD_CMESSAGE_H
#define BOARD_CMESSAGE_H

#include <QMetaType>
#include <QString>

/// One message. Its identity is the board together with the number that the board gave it.
struct CMessage
{
    qint32 BBS_ID = 0;
    qint32 ID = 0;         ///< number within the board, from 1
    QString Subject = {};
    QString HomePage = {};
    QString Mail = {};
    QString PostName = {};
    double PostDate = 0;   ///< days since 1899-12-30, local time of the board; stored to the minute
    qint32 InReplyTo = 0;  ///< number of the message answered; 0 answers none
    QString Body = {};          ///< lines end in CR LF
    qint32 RootThread = 0; ///< number of the thread's first message; 0 until the threads have been linked
    qint32 Mark = 0;       ///< number of a mark; 0 is none
    bool Read = false;

    /// "#" + board as "000" + number as "000000": the key in lists and in the history.
    QString Key() const { return MakeKey(BBS_ID, ID); }
    /// The key of the message answered; it ends in six zeros when there is none.
    QString ReplyKey() const { return MakeKey(BBS_ID, InReplyTo); }

    /// Numbers wider than their place are written whole.
    static QString MakeKey(qint32 BBS_ID, qint32 ID);

    friend bool operator==(const CMessage&, const CMessage&) = default;
};

Q_DECLARE_METATYPE(CMessage)

#endif // BOARD_CMESSAGE_H

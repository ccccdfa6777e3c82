// boardd/CBoardMessage.h
// One message as a board holds it.

#ifndef BOARDD_CBOARDMESSAGE_H
#define BOARDD_CBOARDMESSAGE_H

#include <QDateTime>
#include <QString>

/// Texts hold no control characters but the "\n" between the lines of Body; every one of them fits code page 932.
struct CBoardMessage
{
    qint32 Number = 0;  ///< 1 and up, given by the board side that holds the message
    qint32 ReplyTo = 0; ///< number of the message answered on the same side; 0 answers none
    QDateTime Posted;   ///< wall clock of the community, to the minute
    QString Title;      ///< always empty on the two-sided board
    QString HomePage;
    QString Mail;
    QString Author;
    QString Body; ///< lines parted by "\n", no line break at the end

    bool operator==(const CBoardMessage&) const = default;
};

#endif

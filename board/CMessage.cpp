// board/CMessage.cpp
// One message of a board: its key.

#include "board/CMessage.h"

using namespace Qt::StringLiterals;

QString CMessage::MakeKey(qint32 BBS_ID, qint32 ID)
{
    return u'#' + QString::number(BBS_ID).rightJustified(3, u'0') + QString::number(ID).rightJustified(6, u'0');
}

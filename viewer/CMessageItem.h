// viewer/CMessageItem.h
// One row of a message list, and the number pair by which messages are found.

#ifndef VIEWER_CMESSAGEITEM_H
#define VIEWER_CMESSAGEITEM_H

#include "board/CMessage.h"

#include <optional>

/// Board and number of a message: what statements are made from. The ten-character key is its text form.
struct CMessageId
{
    qint32 BBS_ID = 0;
    qint32 ID = 0;

    QString Key() const { return CMessage::MakeKey(BBS_ID, ID); }
    /// Reads "#003001234": three digits of the board, the rest is the number. Empty for anything else.
    static std::optional<CMessageId> FromKey(const QString& Key);

    /// Both numbers in one, for look-ups.
    quint64 Packed() const { return quint64{static_cast<quint32>(BBS_ID)} << 32 | static_cast<quint32>(ID); }

    bool operator==(const CMessageId& Other) const = default;
};

/// One row: a message, or a row of a raw table, which has no message and never reaches the database.
struct CMessageItem
{
    /// Text colour of a message without a mark: the system's window text.
    static constexpr quint32 NormalColor = 0x80000008U;

    CMessage Message;
    int Indent = 0;                  ///< full-width blanks before the subject (thread view)
    int RawRow = -1;                 ///< row of the raw table, -1 for a message
    quint32 ForeColor = NormalColor; ///< red + 256 x green + 65536 x blue, or 0x80000000 + a system colour

    bool IsMessage() const { return RawRow < 0; }
    CMessageId Id() const { return {Message.BBS_ID, Message.ID}; }
};

#endif // VIEWER_CMESSAGEITEM_H

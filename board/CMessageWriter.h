// board/CMessageWriter.h
// Puts one message into the database.

#ifndef BOARD_CMESSAGEWRITER_H
#define BOARD_CMESSAGEWRITER_H

#include "board/CMessage.h"
#include "platform/dao/Types.h"

#include <QString>

namespace dao
{
class Database;
}

/// What became of a message.
enum class SaveOutcome { Stored = 0, AlreadyStored = 1, Failed = 2 };

/// Stores messages one at a time; a message that the board's table already holds is known by its key.
class CMessageWriter
{
public:
    /// Stores Message into Database, which stays as it was unless the outcome is Stored. Never throws a refusal.
    SaveOutcome Save(dao::Database& Database, const CMessage& Message);

    /// Why the last outcome was Failed.
    const dao::Error& LastError() const { return m_error; }

    /// Whether Error speaks of the file or the disk, so that every further message would fail as well, and not of the
    /// one message.
    static bool ConcernsAll(const dao::Error& Error);

    /// Writes the statement that stores Message over Statement. Seconds are dropped; an empty body becomes Null, since
    /// the field takes no empty text.
    static void MakeStatement(QString& Statement, const CMessage& Message);

private:
    QString m_statement; // keeps its room from message to message
    dao::Error m_error;
};

#endif // BOARD_CMESSAGEWRITER_H

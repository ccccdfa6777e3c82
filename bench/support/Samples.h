// bench/support/Samples.h
// Made-up messages in the amounts that benchmarks need: as log text, as rows, as a database file.

#ifndef BENCH_SUPPORT_SAMPLES_H
#define BENCH_SUPPORT_SAMPLES_H

#include "board/CMessage.h"

#include <QString>

#include <vector>

/// The samples are the same in every run.
namespace mdlSamples
{
/// Message number ID of a board: a subject of some twenty characters, a body of about three hundred, an answer to an
/// earlier message three times out of four.
CMessage MakeMessage(qint32 BBS_ID, qint32 ID);

/// One record of an ordinary board's log, with its separator.
QString MakeRecord(const CMessage& Msg);

/// Blocks of log text as pages bring them: Count messages from number 1 on, PerBlock to a block.
std::vector<QString> MakeBlocks(qint32 BBS_ID, int Count, int PerBlock);

/// Makes a new message database at FileName whose board BBS_ID holds Count messages. False when it cannot be made.
bool MakeDatabase(const QString& FileName, qint32 BBS_ID, int Count);

/// Gives Boards more boards, from number 101 on, the messages of board BBS_ID. False when they cannot be written.
bool CopyBoard(const QString& FileName, qint32 BBS_ID, int Boards);
} // namespace mdlSamples

#endif

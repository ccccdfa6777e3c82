// board/CRunState.h
// What a receive keeps count of while it runs.

#ifndef BOARD_CRUNSTATE_H
#define BOARD_CRUNSTATE_H

#include <QtGlobal>

/// Flags and counts of one receive; shared by the parts of CBBS and reset when a receive begins.
struct CRunState
{
    bool IsLoad = false;
    bool IsImport = false;
    bool IsError = false;
    bool IsCancel = false;
    bool AnalyseError = false; ///< of the last block
    qint32 AnalyseCount = 0;   ///< records read into a message
    qint32 SaveCount = 0;      ///< messages newly stored
    qint64 RecordCount = 0;    ///< records met, broken ones too: tells whether a page was full
    qint32 PageIndex = 0;      ///< of the log page being asked for
    qint32 HighestNumber = 0;  ///< highest message number met, stored before or not
};

#endif // BOARD_CRUNSTATE_H

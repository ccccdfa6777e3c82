// board/CRunState.h
// What a receive or an import keeps count of while it runs.

#ifndef BOARD_CRUNSTATE_H
#define BOARD_CRUNSTATE_H

#include <QtGlobal>

/// Flags and counts of one board or file; shared by the parts of CBBS and reset when the next one begins.
struct CRunState
{
    bool IsLoad = false;
    bool IsImport = false;
    bool IsError = false;
    bool IsCancel = false;
    bool AnalyseError = false; ///< of the last block
    qint32 AnalyseCount = 0;   ///< records read into a message
    qint32 SaveCount = 0;      ///< messages newly stored
    bool IsEndMissing = false; ///< behind the last separator of the last block there was more than blank space
    qint64 RecordCount = 0;    ///< records met, broken ones too: tells whether a page was full
    qint32 RefusedCount = 0;   ///< records that were broken, or that the database did not take
    qint32 PageIndex = 0;      ///< of the log page being asked for
    qint32 HighestNumber = 0;  ///< highest message number met, stored before or not
};

#endif // BOARD_CRUNSTATE_H

// tests/viewer/CBreakingWatch.h
// A user who breaks long work off after a while.

#ifndef TESTS_VIEWER_CBREAKINGWATCH_H
#define TESTS_VIEWER_CBREAKINGWATCH_H

#include "board/work_watch.h"

class CBreakingWatch : public WorkWatch
{
public:
    void WorkBegins(Work What) override
    {
        Seen = What;
        ++Open;
    }
    bool WorkGoesOn() override { return Patience < 0 || Patience-- > 0; }
    void WorkEnds() override { --Open; }

    int Patience = -1; ///< how often the question is answered with yes; below 0: always
    int Open = 0;
    Work Seen = Work::Query;
};

#endif // TESTS_VIEWER_CBREAKINGWATCH_H

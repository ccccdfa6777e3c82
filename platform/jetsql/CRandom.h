// platform/jetsql/CRandom.h
// The numbers that Rnd draws.

#ifndef JETSQL_CRANDOM_H
#define JETSQL_CRANDOM_H

#include <QtGlobal>

namespace jetsql {

/// A row of numbers from 0 up to, not including, 1. Every new object begins at another place of it; a place can be named,
/// so that a draw can be done again.
class CRandom
{
public:
    CRandom();

    /// The next number for an Argument above 0, the last one again for 0; a negative one names the place to go to first.
    float Next(double Argument);

private:
    void Step();

    quint32 m_state;   ///< 24 bits
};

}

#endif

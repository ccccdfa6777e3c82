// platform/jetsql/CRandom.cpp
// The numbers that Rnd draws.

#include "platform/jetsql/CRandom.h"

#include <QRandomGenerator>

#include <bit>

namespace jetsql {

namespace {

constexpr quint32 Mask = 0xFFFFFF;   // as many bits as a Single holds

}

CRandom::CRandom() : m_state(QRandomGenerator::global()->generate() & Mask) {}

// A linear congruential row of full length: the factor is 1 more than a multiple of 4, the summand odd.
void CRandom::Step() { m_state = (m_state * 0xFD43FDu + 0xC39EC3u) & Mask; }

float CRandom::Next(double Argument)
{
    if (Argument < 0) {
        const quint32 bits = std::bit_cast<quint32>(float(Argument));
        m_state = (bits + (bits >> 24)) & Mask;
    }
    if (Argument != 0)
        Step();
    return float(m_state) / float(Mask + 1);
}

}

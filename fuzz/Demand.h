// fuzz/Demand.h
// What all fuzz targets share.

#ifndef FUZZ_DEMAND_H
#define FUZZ_DEMAND_H

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// The entry of every target, called by libFuzzer or by the replay driver; always returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size);

/// Ends the program, as a crash would, where what must always hold does not.
inline void Demand(bool Holds, const char* What)
{
    if (Holds)
        return;
    std::fprintf(stderr, "demand failed: %s\n", What);
    std::abort();
}

inline QByteArray BytesOf(const std::uint8_t* Data, std::size_t Size)
{
    return QByteArray(reinterpret_cast<const char*>(Data), static_cast<qsizetype>(Size));
}

/// The input as UTF-8; broken bytes become U+FFFD.
inline QString TextOf(const std::uint8_t* Data, std::size_t Size) { return QString::fromUtf8(BytesOf(Data, Size)); }

#endif // FUZZ_DEMAND_H

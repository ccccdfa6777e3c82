// boardd/BoardIcon.cpp
// Painting a leaf by formula and packing it as PNG, so that the server needs no picture files and no window system.

#include "boardd/BoardIcon.h"

#include <QtEndian>

#include <array>
#include <cmath>

namespace
{

constexpr int Side = 32;

struct CColour
{
    int Red, Green, Blue;
};

quint32 Crc(const QByteArray& Bytes)
{
    quint32 crc = 0xFFFFFFFFu;
    for (const char byte : Bytes) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1u) != 0 ? 0xEDB88320u : 0u);
    }
    return ~crc;
}

QByteArray BigEndian(quint32 Number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(Number, bytes.data());
    return bytes;
}

QByteArray Chunk(QByteArrayView Name, const QByteArray& Data)
{
    const QByteArray named = Name.toByteArray() + Data;
    return BigEndian(static_cast<quint32>(Data.size())) + named + BigEndian(Crc(named));
}

CColour LeafColour(int Index)
{
    static constexpr std::array<CColour, 8> colours = {{{58, 125, 52},
                                                        {196, 84, 36},
                                                        {38, 110, 96},
                                                        {150, 130, 30},
                                                        {88, 140, 70},
                                                        {170, 60, 70},
                                                        {110, 90, 50},
                                                        {70, 110, 150}}};
    return colours[static_cast<std::size_t>(Index) % colours.size()];
}

/// How much of the pixel the leaf covers, 0 to 1. Across is the distance from the middle rib, Along runs from stalk to tip.
double Coverage(double Along, double Across, double Width)
{
    if (Along < 0.0 || Along > 1.0)
        return 0.0;
    const double edge = Width * std::sin(Along * 3.14159265) * (1.0 - 0.35 * Along);
    return std::clamp((edge - std::abs(Across)) * Side * 0.7 + 0.5, 0.0, 1.0);
}

void AppendPixel(QByteArray& Row, int X, int Y, CColour Colour, double Width)
{
    // The leaf lies on the diagonal, its stalk in the lower left corner.
    const double x = (X + 0.5) / Side;
    const double y = (Side - Y - 0.5) / Side;
    const double along = (x + y) / 2.0 * 1.25 - 0.125;
    const double across = (x - y) / 1.414;
    const bool stalk = along < 0.06 && along > -0.08 && std::abs(across) < 0.03;
    const bool rib = std::abs(across) < 0.022 && along > 0.0 && along < 0.9;
    const double cover = stalk ? 1.0 : Coverage(along, across, Width);
    const double light = rib || stalk ? 0.65 : 0.9 + 0.25 * along;
    const auto channel = [&](int value) { return static_cast<char>(std::min(255, static_cast<int>(value * light))); };
    Row.append(channel(Colour.Red)).append(channel(Colour.Green)).append(channel(Colour.Blue));
    Row.append(static_cast<char>(static_cast<int>(cover * 255.0)));
}

QByteArray Pixels(int Index)
{
    const double width = 0.2 + 0.05 * (Index % 3);
    QByteArray rows;
    for (int y = 0; y < Side; ++y) {
        rows.append('\0'); // each row says first that it is not filtered
        for (int x = 0; x < Side; ++x)
            AppendPixel(rows, x, y, LeafColour(Index), width);
    }
    return rows;
}

} // namespace

QByteArray mdlBoardIcon::Png(int Index)
{
    const QByteArray size = BigEndian(Side) + BigEndian(Side);
    // 8 bits a channel, colour with transparency, the usual compression and filter, not interlaced.
    const QByteArray format("\x08\x06\x00\x00\x00", 5);
    const QByteArray packed = qCompress(Pixels(Index)).sliced(4); // without Qt's own length in front
    return QByteArrayLiteral("\x89PNG\r\n\x1a\n") + Chunk("IHDR", size + format) + Chunk("IDAT", packed) + Chunk("IEND", {});
}

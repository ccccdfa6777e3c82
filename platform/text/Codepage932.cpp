// platform/text/Codepage932.cpp
// Code page 932 by two tables, filled once from ICU's converter with its faults mended.

#include "platform/text/Codepage932.h"

#include <QStringDecoder>

#include <array>
#include <vector>

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

namespace text
{

namespace
{

constexpr char16_t NoCharacter = 0xFFFF; // a noncharacter, so no code can mean it
constexpr char16_t KatakanaDot = 0x30FB; // what Windows shows for a pair that has no character
constexpr quint16 NoCode = 0;            // code 0 is only that of U+0000, which is handled as ASCII

constexpr bool IsLead(uchar Byte) { return (Byte >= 0x81 && Byte <= 0x9F) || (Byte >= 0xE0 && Byte <= 0xFC); }

struct CConverterCloser
{
    void operator()(UConverter* Converter) const { ucnv_close(Converter); }
};
using CConverter = std::unique_ptr<UConverter, CConverterCloser>;

/// Stops at what has no mapping and maps nothing approximately; null when ICU has no data.
CConverter OpenConverter()
{
    UErrorCode status = U_ZERO_ERROR;
    CConverter converter(ucnv_open("windows-31j", &status));
    if (U_FAILURE(status))
        return nullptr;
    ucnv_setFallback(converter.get(), false);
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    // Not UCNV_FROM_U_CALLBACK_STOP: for invisible characters that one goes on as if they were not there.
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    return U_SUCCESS(status) ? std::move(converter) : nullptr;
}

class CTables
{
public:
    CTables();

    static const CTables& Get()
    {
        static const CTables tables;
        return tables;
    }

    char16_t Single(uchar Byte) const { return m_singles[Byte]; }
    char16_t Pair(uchar Lead, uchar Trail) const { return m_pairs[Lead * 256u + Trail]; }
    quint16 Code(char16_t Unit) const { return m_codes[Unit]; }

private:
    void ReadSingles(UConverter* Converter);
    void ReadPairs(UConverter* Converter);
    void ReadCodes(UConverter* Converter);
    void MendSingle(uchar Byte, char16_t Unit);

    std::array<char16_t, 256> m_singles;
    std::vector<char16_t> m_pairs = std::vector<char16_t>(0x10000, NoCharacter);
    std::vector<quint16> m_codes = std::vector<quint16>(0x10000, NoCode);
};

/// The one character of Bytes; NoCharacter when they are not exactly one of the Basic Multilingual Plane.
char16_t Decode(UConverter* Converter, const char* Bytes, qint32 Size)
{
    char16_t units[4];
    UErrorCode status = U_ZERO_ERROR;
    ucnv_resetToUnicode(Converter);
    const qint32 length = ucnv_toUChars(Converter, units, 4, Bytes, Size, &status);
    return U_SUCCESS(status) && length == 1 ? units[0] : NoCharacter;
}

CTables::CTables()
{
    for (std::size_t i = 0; i < m_singles.size(); ++i)
        m_singles[i] = i < 0x80 ? static_cast<char16_t>(i) : NoCharacter;
    if (const CConverter converter = OpenConverter()) {
        ReadSingles(converter.get());
        ReadPairs(converter.get());
        ReadCodes(converter.get());
    }
    // The converter rotates three control bytes, as an old mainframe did, and does not know five bytes that Windows
    // lets through.
    for (uchar byte : {uchar(0x1A), uchar(0x1C), uchar(0x7F), uchar(0x80)})
        MendSingle(byte, byte);
    MendSingle(0xA0, 0xF8F0);
    MendSingle(0xFD, 0xF8F1);
    MendSingle(0xFE, 0xF8F2);
    MendSingle(0xFF, 0xF8F3);
    m_codes[0xF86F] = NoCode; // the converter's own substitute
}

void CTables::MendSingle(uchar Byte, char16_t Unit)
{
    m_singles[Byte] = Unit;
    m_codes[Unit] = Byte;
}

void CTables::ReadSingles(UConverter* Converter)
{
    for (int byte = 0x80; byte < 0x100; ++byte) {
        const char code = static_cast<char>(byte);
        if (!IsLead(static_cast<uchar>(byte)))
            m_singles[static_cast<std::size_t>(byte)] = Decode(Converter, &code, 1);
    }
}

void CTables::ReadPairs(UConverter* Converter)
{
    for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
        for (unsigned trail = 0x40; IsLead(static_cast<uchar>(lead)) && trail <= 0xFC; ++trail) {
            const char code[2] = {static_cast<char>(lead), static_cast<char>(trail)};
            m_pairs[lead * 256 + trail] = Decode(Converter, code, 2);
        }
    }
}

void CTables::ReadCodes(UConverter* Converter)
{
    for (unsigned unit = 1; unit < 0xFFFE; ++unit) {
        const char16_t text = static_cast<char16_t>(unit);
        char bytes[8];
        UErrorCode status = U_ZERO_ERROR;
        ucnv_resetFromUnicode(Converter);
        const qint32 length = ucnv_fromUChars(Converter, bytes, 8, &text, 1, &status);
        if (U_FAILURE(status) || length < 1 || length > 2) // nothing at all is what an invisible character gives
            continue;
        const auto first = static_cast<uchar>(bytes[0]);
        m_codes[unit] = length == 1 ? first : static_cast<quint16>(first * 256u + static_cast<uchar>(bytes[1]));
    }
}

} // namespace

QByteArray To932(QStringView Text)
{
    const CTables& tables = CTables::Get();
    QByteArray bytes(Text.size() * 2, Qt::Uninitialized);
    char* to = bytes.data();
    for (const QChar unit : Text) {
        const quint16 code = tables.Code(unit.unicode());
        if (code > 0xFF)
            *to++ = static_cast<char>(code >> 8);
        *to++ = code != NoCode || unit.isNull() ? static_cast<char>(code & 0xFF) : '?';
    }
    bytes.truncate(to - bytes.constData());
    return bytes;
}

QString From932(QByteArrayView Bytes)
{
    const CTables& tables = CTables::Get();
    QString result(Bytes.size(), Qt::Uninitialized);
    auto* const start = reinterpret_cast<char16_t*>(result.data());
    char16_t* to = start;
    const auto* from = reinterpret_cast<const uchar*>(Bytes.data());
    const uchar* const end = from + Bytes.size();
    while (from != end) {
        const uchar byte = *from++;
        if (!IsLead(byte)) {
            *to++ = tables.Single(byte);
        } else if (from == end || *from < 0x20) {
            *to++ = KatakanaDot;
        } else {
            const char16_t unit = tables.Pair(byte, *from++);
            *to++ = unit != NoCharacter ? unit : KatakanaDot;
        }
    }
    result.truncate(to - start);
    return result;
}

bool IsValid932(QByteArrayView Bytes)
{
    const CTables& tables = CTables::Get();
    const auto* from = reinterpret_cast<const uchar*>(Bytes.data());
    const uchar* const end = from + Bytes.size();
    while (from != end) {
        const uchar byte = *from++;
        if (byte == 0x80 || byte == 0xA0 || byte > 0xFC)
            return false;
        if (IsLead(byte) && (from == end || tables.Pair(byte, *from++) == NoCharacter))
            return false;
    }
    return true;
}

bool IsValidUtf8(QByteArrayView Bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(Bytes);
    return !decoder.hasError();
}

QString WithWindowsForms(const QString& Text)
{
    static constexpr char16_t twins[][2] = {{0x301C, 0xFF5E}, {0x2212, 0xFF0D}, {0x2016, 0x2225}, {0x2014, 0x2015},
                                            {0x00A2, 0xFFE0}, {0x00A3, 0xFFE1}, {0x00AC, 0xFFE2}};
    QString result = Text;
    for (const auto& twin : twins)
        result.replace(QChar(twin[0]), QChar(twin[1]));
    return result;
}

QString UrlEncode932(QStringView Text)
{
    return QString::fromLatin1(To932(WithWindowsForms(Text.toString())).toPercentEncoding({}, "-._~"));
}

} // namespace text

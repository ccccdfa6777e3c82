// platform/text/Fold.cpp
// The fold by one table over the 16-bit units, and ICU's Japanese order over folded text.

#include "platform/text/Fold.h"

#include "platform/text/CFoldReader.h"

#include <QVarLengthArray>
#include <QtEndian>

#include <algorithm>
#include <memory>

#include <unicode/ucol.h>

namespace text
{

namespace
{

/// Bytes; enough for the keys of names and subjects, and for most of those of a paragraph.
constexpr qint32 UsualKeySize = 2048;

using CUnits = QVarLengthArray<char16_t, 512>;

/// The codes that other tables give to characters of code page 932.
char16_t TwinOf(char16_t Unit)
{
    switch (Unit) {
    case 0x301C:
        return 0xFF5E;
    case 0x2212:
        return 0xFF0D;
    case 0x2016:
        return 0x2225;
    case 0x2014:
        return 0x2015;
    default:
        return Unit;
    }
}

char16_t WidthOf(char16_t Unit)
{
    if (Unit == HalfVoiced)
        return 0x309B;
    if (Unit == HalfSemiVoiced)
        return 0x309C;
    const QChar unit(Unit);
    const QChar::Decomposition tag = unit.decompositionTag();
    const QString other = tag == QChar::Wide || tag == QChar::Narrow ? unit.decomposition() : QString();
    return other.size() == 1 ? other.front().unicode() : Unit;
}

char16_t KatakanaOf(char16_t Unit)
{
    const bool isHiragana = (Unit >= 0x3041 && Unit <= 0x3096) || Unit == 0x309D || Unit == 0x309E;
    return isHiragana ? static_cast<char16_t>(Unit + 0x60) : Unit;
}

/// Where every unit goes; a unit may take several of the steps (Ａ is wide and a capital).
std::vector<char16_t> MakeTable()
{
    std::vector<char16_t> table(0x10000);
    for (std::size_t i = 0; i < table.size(); ++i) {
        const QChar unit(KatakanaOf(WidthOf(TwinOf(static_cast<char16_t>(i)))));
        table[i] = unit.isSurrogate() ? unit.unicode() : unit.toCaseFolded().unicode();
    }
    return table;
}

/// Text itself when it is folded already, otherwise its fold, kept in Room.
QStringView FoldInto(QStringView Text, CUnits& Room)
{
    if (IsFolded(Text))
        return Text;
    Room.resize(Text.size());
    char16_t* to = Room.data();
    for (CFoldReader reader(Text); !reader.AtEnd();)
        *to++ = reader.Next();
    return QStringView(Room.data(), to - Room.data());
}

struct CCollatorCloser
{
    void operator()(UCollator* Collator) const { ucol_close(Collator); }
};

/// Null when ICU has no data; the order is then that of the codes.
const UCollator* Collator()
{
    static const std::unique_ptr<UCollator, CCollatorCloser> collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<UCollator, CCollatorCloser> opened(ucol_open("ja", &status));
        if (U_FAILURE(status))
            opened.reset();
        return opened;
    }();
    return collator.get();
}

constexpr int Sign(int Value) { return (Value > 0) - (Value < 0); }

int CompareUnits(QStringView Left, QStringView Right)
{
    const auto [left, right] = std::mismatch(Left.begin(), Left.end(), Right.begin(), Right.end());
    if (left == Left.end() || right == Right.end())
        return (right == Right.end()) - (left == Left.end());
    return left->unicode() < right->unicode() ? -1 : 1;
}

} // namespace

const char16_t* FoldTable()
{
    static const std::vector<char16_t> table = MakeTable();
    return table.data();
}

char16_t ComposedKana(char16_t Unit, char16_t Mark)
{
    const bool isFromKaToTo = QStringView(u"カキクケコサシスセソタチツテト").contains(QChar(Unit));
    const bool isHaRow = QStringView(u"ハヒフヘホ").contains(QChar(Unit));
    if (Mark == HalfSemiVoiced)
        return isHaRow ? static_cast<char16_t>(Unit + 2) : char16_t(0);
    if (isFromKaToTo || isHaRow)
        return static_cast<char16_t>(Unit + 1);
    return Unit == 0x30A6 ? char16_t(0x30F4) : char16_t(0); // ウ with its mark is ヴ
}

bool IsFolded(QStringView Text)
{
    const char16_t* const table = FoldTable();
    const char16_t* const end = Text.utf16() + Text.size();
    return std::find_if(Text.utf16(), end, [table](char16_t Unit) { return table[Unit] != Unit; }) == end;
}

QString Fold(QStringView Text)
{
    QString result(Text.size(), Qt::Uninitialized);
    auto* const start = reinterpret_cast<char16_t*>(result.data());
    char16_t* to = start;
    for (CFoldReader reader(Text); !reader.AtEnd();)
        *to++ = reader.Next();
    result.truncate(to - start);
    return result;
}

QString Fold(const QString& Text) { return IsFolded(Text) ? Text : Fold(QStringView(Text)); }

CFoldedText FoldWithOffsets(QStringView Text)
{
    CFoldedText result;
    result.Text.reserve(Text.size());
    result.Offsets.reserve(static_cast<std::size_t>(Text.size()) + 1);
    CFoldReader reader(Text);
    while (!reader.AtEnd()) {
        result.Offsets.push_back(reader.Place() - Text.utf16());
        result.Text.append(QChar(reader.Next()));
    }
    result.Offsets.push_back(Text.size());
    return result;
}

bool EqualText(QStringView Left, QStringView Right) { return CompareFolds(Left, Right) == 0; }

int CompareFolds(QStringView Left, QStringView Right)
{
    CFoldReader left(Left);
    CFoldReader right(Right);
    while (!left.AtEnd() && !right.AtEnd()) {
        const char16_t leftUnit = left.Next();
        const char16_t rightUnit = right.Next();
        if (leftUnit != rightUnit)
            return leftUnit < rightUnit ? -1 : 1;
    }
    return int(right.AtEnd()) - int(left.AtEnd());
}

int CompareText(QStringView Left, QStringView Right)
{
    CUnits leftRoom;
    CUnits rightRoom;
    const QStringView left = FoldInto(Left, leftRoom);
    const QStringView right = FoldInto(Right, rightRoom);
    if (left == right)
        return 0;
    int order = 0;
    if (const UCollator* collator = Collator()) {
        order = ucol_strcoll(collator, left.utf16(), static_cast<qint32>(left.size()), right.utf16(),
                             static_cast<qint32>(right.size()));
    }
    // ICU passes over control characters; texts that differ in those only are still two texts.
    return order != 0 ? Sign(order) : CompareUnits(left, right);
}

QByteArray SortKey(QStringView Text)
{
    CUnits units;
    const QStringView folded = FoldInto(Text, units);
    const auto size = static_cast<qint32>(folded.size());
    const UCollator* collator = Collator();
    quint8 room[UsualKeySize];
    // Asking for the size alone would take as long as making the key.
    const qint32 ordered = collator ? ucol_getSortKey(collator, folded.utf16(), size, room, UsualKeySize) : 0;
    QByteArray key(ordered + folded.size() * 2, Qt::Uninitialized);
    auto* const start = reinterpret_cast<quint8*>(key.data());
    if (ordered > UsualKeySize)
        ucol_getSortKey(collator, folded.utf16(), size, start, ordered);
    else
        std::copy_n(room, ordered, start);
    qToBigEndian<char16_t>(folded.utf16(), folded.size(), start + ordered);
    return key;
}

} // namespace text

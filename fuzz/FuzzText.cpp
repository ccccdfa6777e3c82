// fuzz/FuzzText.cpp
// Patterns and values: the first line of the input is a pattern, the rest a text.

#include "fuzz/Demand.h"
#include "platform/text/Codepage932.h"
#include "platform/text/DateTime.h"
#include "platform/text/Fold.h"
#include "platform/text/Format.h"
#include "platform/text/Like.h"
#include "platform/text/Number.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace
{

/// No pattern makes more of a value than this: 257 units, none of which gives more than a date's or a number's text.
constexpr qsizetype LongestFormat = 257 * 400;

void CheckDate(const QString& Text, const QString& Pattern)
{
    const std::optional<double> date = text::TextToDate(Text, QDate(2002, 1, 15));
    if (!date)
        return;
    Demand(*date >= double(text::MinDay) && *date < double(text::MaxDay) + 1, "a date lies in the calendar");
    const QString general = text::GeneralDate(*date);
    const std::optional<double> again = text::TextToDate(general);
    Demand(again && text::FromSerial(*again) == text::FromSerial(*date), "a date's text reads as that date");
    Demand(text::FormatDate(*date, Pattern).size() <= LongestFormat, "a date's text is bounded");
}

void CheckNumber(const QString& Text, const QString& Pattern)
{
    const std::optional<double> number = text::TextToDouble(Text);
    Demand(number.has_value() == text::IsNumeric(Text), "both ways of asking for a number agree");
    Demand(!number || text::HasNumberForm(Text), "a number has its form");
    Demand(!number || std::isfinite(*number), "a number is finite");
    Demand(!text::TextToLong(Text) || number, "a whole number is a number");
    Demand(!text::TextToInteger(Text) || text::TextToLong(Text), "a short whole number is a long one");
    text::TextToSingle(Text);
    text::TextToBoolean(Text);
    for (const double value : {number.value_or(0), text::Val(Text), -1.5, 37271.53125, 1e300}) {
        Demand(text::FormatNumber(value, Pattern).size() <= LongestFormat, "a number's text is bounded");
        text::FormatDate(value, Pattern);
        const QString plain = text::NumberToText(value);
        const std::optional<double> again = text::TextToDouble(plain);
        Demand(!std::isfinite(value) || std::fabs(value) > 1e308 ||
                   (again && std::fabs(*again - value) <= std::fabs(value) * 1e-14),
               "a number's text reads as that number");
    }
}

void CheckLike(const QString& Text, const QString& Pattern)
{
    for (const text::Compare mode : {text::Compare::Binary, text::Compare::Text}) {
        const auto compiled = text::CLikePattern::Compile(Pattern, mode);
        Demand(text::Like(Text, Pattern, mode) == (compiled && compiled->Matches(Text)), "one pattern, one answer");
        Demand(text::Like(Text, text::EscapeLike(Text), mode), "an escaped text is like itself");
        Demand(text::Like(Pattern + Text, u'*' + text::EscapeLike(Text), mode) || mode == text::Compare::Text,
               "a text ends in its end");
    }
}

void CheckFold(const QString& Left, const QString& Right)
{
    const text::CFoldedText folded = text::FoldWithOffsets(Left);
    Demand(folded.Text == text::Fold(Left), "both folds agree");
    Demand(folded.Offsets.size() == static_cast<std::size_t>(folded.Text.size()) + 1 &&
               folded.Offsets.back() == Left.size(),
           "the way back is complete");
    Demand(text::Fold(folded.Text) == folded.Text, "a fold is folded");
    const int order = text::CompareText(Left, Right);
    Demand(order == -text::CompareText(Right, Left), "the order is the same from both sides");
    Demand((order == 0) == text::EqualText(Left, Right), "equal texts have no order");
    const QByteArray left = text::SortKey(Left);
    const QByteArray right = text::SortKey(Right);
    Demand(order == (right < left) - (left < right), "keys are in the order of the texts");
}

void CheckCodes(const QByteArray& Bytes)
{
    const QString decoded = text::From932(Bytes);
    const QByteArray encoded = text::To932(decoded);
    Demand(text::From932(encoded) == decoded || !text::IsValid932(Bytes), "a valid text survives its code");
    text::IsValidUtf8(Bytes);
    text::UrlEncode932(decoded);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
    const QString input = TextOf(Data, Size);
    const qsizetype end = input.indexOf(u'\n');
    const QString pattern = input.left(end);
    const QString value = end < 0 ? QString() : input.mid(end + 1);
    text::FormatText(value, pattern);
    CheckDate(value, pattern);
    CheckNumber(value, pattern);
    CheckLike(value, pattern);
    CheckFold(value, pattern);
    CheckCodes(BytesOf(Data, Size));
    return 0;
}

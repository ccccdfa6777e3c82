// platform/text/Words.cpp
// Where words begin and end, also in Japanese, which puts no blanks between them.

#include "platform/text/Words.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>

namespace text
{
namespace
{
/// Longer than any word; what is cut in two at that distance is not in the word asked for.
constexpr qsizetype Reach = 500;

/// Empty when ICU's data are not there.
icu::BreakIterator* Iterator()
{
    UErrorCode status = U_ZERO_ERROR;
    static const std::unique_ptr<icu::BreakIterator> words(
        icu::BreakIterator::createWordInstance(icu::Locale::getJapan(), status));
    return words.get();
}

struct CCloseText
{
    void operator()(UText* Text) const { utext_close(Text); }
};
} // namespace

WordPlace WordAt(QStringView Text, qsizetype Position)
{
    if (Position < 0 || Position >= Text.size() || !Iterator())
        return {};
    const qsizetype from = std::max<qsizetype>(Position - Reach, 0);
    const QStringView part = Text.mid(from, std::min(2 * Reach, Text.size() - from));
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UText, CCloseText> source(utext_openUChars(nullptr, part.utf16(), part.size(), &status));
    Iterator()->setText(source.get(), status);
    if (U_FAILURE(status))
        return {};
    const auto at = static_cast<int32_t>(Position - from);
    const int32_t end = Iterator()->following(at);
    const int32_t start = Iterator()->preceding(end);
    return {from + start, end - start};
}
} // namespace text

// fuzz/FuzzRegExp.cpp
// Expressions and texts: the first line of the input is an expression, the rest the text that it is looked for in.

#include "fuzz/Demand.h"
#include "platform/regexp/CEngine.h"
#include "platform/regexp/CScan.h"

#include <QElapsedTimer>

#include <algorithm>
#include <tuple>

using namespace regexp;

namespace
{

/// Far above the quarter of a second that a scan may take, as sanitizers and a busy machine take their share.
constexpr qint64 LongestScanMs = 5'000;

/// What is written must compile by itself: only its size may be too much for PCRE2.
void CheckWritten(const CEcmaPattern& Read)
{
    for (qsizetype i = Read.Pcre.indexOf(u'\\'); i >= 0; i = Read.Pcre.indexOf(u'\\', i + 1))
        Demand(QStringView(u"xNbBzg").contains(Read.Pcre[i + 1]), "only plain escapes are written");
    int error = 0;
    PCRE2_SIZE offset = 0;
    const CPcreOwner<pcre2_code> code(pcre2_compile(UnitsOf(Read.Pcre), static_cast<PCRE2_SIZE>(Read.Pcre.size()),
                                                    PCRE2_DOTALL | PCRE2_MATCH_UNSET_BACKREF, &error, &offset,
                                                    nullptr));
    Demand(code || error == PCRE2_ERROR_PATTERN_TOO_LARGE || error == PCRE2_ERROR_PATTERN_TOO_COMPLICATED,
           "what is written is a pattern");
}

/// The first match with callouts and without, where both may be had.
void CheckUncounted(const CEcmaPattern& Read, bool IgnoreCase, QStringView Text)
{
    const auto engine = CEngine::Make(Read, IgnoreCase);
    if (!engine || engine->CodeFor(Text.size()) == engine->Code.get())
        return;
    const auto find = [&](const pcre2_code* Code) {
        const CPcreOwner<pcre2_match_data> data(pcre2_match_data_create_from_pattern(Code, nullptr));
        const int found = pcre2_match(Code, UnitsOf(Text), static_cast<PCRE2_SIZE>(Text.size()), 0, 0, data.get(),
                                      engine->Context.get());
        const PCRE2_SIZE* const ends = pcre2_get_ovector_pointer(data.get());
        return std::tuple(found, found > 0 ? ends[0] : 0, found > 0 ? ends[1] : 0);
    };
    const auto counted = find(engine->Code.get());
    const auto uncounted = find(engine->CodeFor(Text.size()));
    const bool areSure = std::min(std::get<0>(counted), std::get<0>(uncounted)) >= PCRE2_ERROR_NOMATCH;
    Demand(!areSure || counted == uncounted, "counting changes no match");
}

void CheckMatches(const CExpression& Expression, QStringView Text)
{
    CScan scan(Expression, Text);
    qsizetype from = 0;
    while (scan.Next() == Outcome::Found) {
        const CSpan match = scan.Match();
        Demand(match.Index >= from && match.Length >= 0 && match.Index + match.Length <= Text.size(),
               "matches lie within the text and do not overlap");
        from = match.Index + match.Length + (match.Length == 0 ? 1 : 0);
        for (int group = 1; group <= std::min(Expression.GroupCount(), 20); ++group) {
            const CSpan span = scan.Group(group);
            Demand(span.Index == -1 || (span.Length >= 0 && span.Index + span.Length <= Text.size()),
                   "groups lie within the text");
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
    const QString input = TextOf(Data, Size);
    const qsizetype end = input.indexOf(u'\n');
    const QString pattern = input.left(end);
    for (const COptions& options : {COptions{false, false}, COptions{true, true}}) {
        const CEcmaPattern read = CEcmaPattern::Read(pattern, options);
        Demand(read.What == Fault::None || (read.Offset >= 0 && read.Offset <= pattern.size()), "a fault has a place");
        if (read.What == Fault::None)
            CheckWritten(read);
        const CExpression expression(pattern, options);
        Demand(expression.IsValid() == expression.ErrorText().isEmpty(), "a fault has a text");
        QElapsedTimer timer;
        timer.start();
        CheckMatches(expression, QStringView(input).mid(end + 1));
        if (read.What == Fault::None)
            CheckUncounted(read, options.IgnoreCase, QStringView(input).mid(end + 1));
        Demand(timer.elapsed() < LongestScanMs, "a scan ends in time");
    }
    return 0;
}

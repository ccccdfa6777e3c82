// platform/regexp/CScan.cpp
// Running the compiled matcher, and counting what it does.

#include "platform/regexp/CScan.h"

#include "platform/regexp/CEngine.h"

#include <algorithm>
#include <new>

namespace regexp
{

namespace
{

/// Steps for one text: about a quarter of a second. An honest search of a long message takes some ten thousand.
constexpr qint64 Allowance = 10'000'000;
/// Units that are passed over in the time of a step.
constexpr qint64 UnitsPerStep = 16;
constexpr quint32 LastCalloutNumber = 255;

qint64 Distance(std::size_t A, std::size_t B) { return static_cast<qint64>(A > B ? A - B : B - A); }

} // namespace

/// The matcher's working memory, and how much of its allowance it has used.
struct CMatchData
{
    CPcreOwner<pcre2_match_data> Pcre;
    qint64 Left = Allowance;
    std::size_t LastStart = 0;
    std::size_t LastPlace = 0;

    void Restart()
    {
        Left = Allowance;
        LastStart = LastPlace = 0;
    }

    /// Called where a match may come by in more than one way. The matcher's own limit sees neither groups without a
    /// loop nor the way that a repeated unit or a back reference goes over the text.
    int Count(const pcre2_callout_block& At)
    {
        const std::size_t since = At.start_match == LastStart ? LastPlace : At.start_match;
        qint64 units = Distance(At.current_position, since);
        if (At.callout_number == LastCalloutNumber)
            units += static_cast<qint64>(At.subject_length);
        else if (const quint32 group = At.callout_number; group > 0 && group < At.capture_top)
            units += Distance(At.offset_vector[2 * group], At.offset_vector[2 * group + 1]);
        LastStart = At.start_match;
        LastPlace = At.current_position;
        Left -= 1 + (units + At.capture_top) / UnitsPerStep;
        return Left < 0 ? PCRE2_ERROR_MATCHLIMIT : 0;
    }
};

CScan::CScan(const CExpression& Expression, QStringView Text, qsizetype From)
    : m_expression(Expression)
    , m_text(Text)
    , m_next(std::max<qsizetype>(From, 0))
{
    if (!Expression.IsValid())
        return;
    m_data = std::make_unique<CMatchData>();
    m_data->Pcre.reset(pcre2_match_data_create_from_pattern(Expression.m_engine->Code.get(), nullptr));
    if (!m_data->Pcre)
        throw std::bad_alloc();
}

CScan::~CScan() = default;

void CScan::Restart(QStringView Text, qsizetype From)
{
    m_text = Text;
    m_next = std::max<qsizetype>(From, 0);
    m_outcome = Outcome::NotFound;
    if (m_data)
        m_data->Restart();
}

Outcome CScan::Next()
{
    if (!m_data || m_outcome == Outcome::GaveUp || m_next > m_text.size())
        return m_outcome = m_outcome == Outcome::GaveUp ? Outcome::GaveUp : Outcome::NotFound;
    const CEngine& engine = *m_expression.m_engine;
    const auto count = [](pcre2_callout_block* At, void* Data) { return static_cast<CMatchData*>(Data)->Count(*At); };
    pcre2_set_callout(engine.Context.get(), count, m_data.get());
    const int result =
        pcre2_match(engine.CodeFor(m_text.size()), UnitsOf(m_text), static_cast<PCRE2_SIZE>(m_text.size()),
                    static_cast<PCRE2_SIZE>(m_next), 0, m_data->Pcre.get(), engine.Context.get());
    m_outcome = result > 0 ? Outcome::Found : result == PCRE2_ERROR_NOMATCH ? Outcome::NotFound : Outcome::GaveUp;
    if (m_outcome == Outcome::Found)
        m_next = Match().Index + Match().Length + (Match().Length == 0 ? 1 : 0);
    else
        m_next = m_text.size() + 1;
    return m_outcome;
}

CSpan CScan::Group(int Number) const
{
    if (m_outcome != Outcome::Found || Number < 0 || Number > m_expression.GroupCount())
        return {};
    const PCRE2_SIZE* const ends = pcre2_get_ovector_pointer(m_data->Pcre.get());
    const PCRE2_SIZE start = ends[2 * Number];
    if (start == PCRE2_UNSET)
        return {};
    return {static_cast<qsizetype>(start), static_cast<qsizetype>(ends[2 * Number + 1] - start)};
}

} // namespace regexp

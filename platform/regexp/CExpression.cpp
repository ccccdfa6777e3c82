// platform/regexp/CExpression.cpp
// Compiling: read, write anew, hand over.

#include "platform/regexp/CExpression.h"

#include "platform/regexp/CEngine.h"

#include <new>

using namespace Qt::StringLiterals;

namespace regexp
{

namespace
{

CPcreOwner<pcre2_code> Compile(const QString& Pattern, bool IgnoreCase)
{
    const CPcreOwner<pcre2_compile_context> context(pcre2_compile_context_create(nullptr));
    if (!context)
        throw std::bad_alloc();
    pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
    const quint32 options = PCRE2_DOTALL | PCRE2_MATCH_UNSET_BACKREF | PCRE2_NEVER_UTF | PCRE2_NEVER_UCP;
    int error = 0;
    PCRE2_SIZE offset = 0;
    return CPcreOwner<pcre2_code>(pcre2_compile(UnitsOf(Pattern), static_cast<PCRE2_SIZE>(Pattern.size()),
                                                options | (IgnoreCase ? PCRE2_CASELESS : 0), &error, &offset,
                                                context.get()));
}

} // namespace

std::unique_ptr<CEngine> CEngine::Make(const CEcmaPattern& Pattern, bool IgnoreCase)
{
    auto engine = std::make_unique<CEngine>();
    engine->Code = Compile(Pattern.Pcre, IgnoreCase);
    if (!engine->Code)
        return nullptr;
    engine->Context.reset(pcre2_match_context_create(nullptr));
    if (!engine->Context)
        throw std::bad_alloc();
    pcre2_set_match_limit(engine->Context.get(), MatchLimit);
    pcre2_set_heap_limit(engine->Context.get(), HeapLimitKib);
    // Where the processor or the expression is beyond the just-in-time compiler, PCRE2 interprets.
    if (pcre2_jit_compile(engine->Code.get(), PCRE2_JIT_COMPLETE) == 0) {
        engine->Stack.reset(pcre2_jit_stack_create(FirstStackBytes, StackBytes, nullptr));
        pcre2_jit_stack_assign(engine->Context.get(), nullptr, engine->Stack.get());
        engine->MakeUncounted(Pattern, IgnoreCase);
    }
    return engine;
}

void CEngine::MakeUncounted(const CEcmaPattern& Pattern, bool IgnoreCase)
{
    Effort = Pattern.Effort;
    if (Effort.IsBounded)
        Uncounted = Compile(Pattern.Uncounted(), IgnoreCase);
    if (Uncounted && pcre2_jit_compile(Uncounted.get(), PCRE2_JIT_COMPLETE) != 0)
        Uncounted.reset(); // the interpreter is too slow for that many compares
}

CExpression::CExpression(QStringView Pattern, const COptions& Options)
{
    const CEcmaPattern read = CEcmaPattern::Read(Pattern, Options);
    m_fault = read.What;
    m_faultOffset = read.Offset;
    m_groupCount = read.GroupCount;
    if (m_fault != Fault::None)
        return;
    m_engine = CEngine::Make(read, Options.IgnoreCase);
    if (!m_engine)
        m_fault = Fault::TooLarge;
}

CExpression::~CExpression() = default;
CExpression::CExpression(CExpression&& Other) noexcept = default;
CExpression& CExpression::operator=(CExpression&& Other) noexcept = default;

QString CExpression::ErrorText() const
{
    if (IsValid())
        return {};
    if (m_faultOffset < 0)
        return FaultText(m_fault);
    return u"正規表現の %1 文字目: %2"_s.arg(m_faultOffset + 1).arg(FaultText(m_fault));
}

} // namespace regexp

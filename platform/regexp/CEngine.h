// platform/regexp/CEngine.h
// The matcher's own objects behind a CExpression; the only header of this room that knows PCRE2.

#ifndef REGEXP_CENGINE_H
#define REGEXP_CENGINE_H

#include "platform/regexp/EcmaPattern.h"

#include <QString>

#include <memory>

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

namespace regexp
{

struct CCodeFree
{
    void operator()(pcre2_code* Code) const { pcre2_code_free(Code); }
    void operator()(pcre2_compile_context* Context) const { pcre2_compile_context_free(Context); }
    void operator()(pcre2_match_context* Context) const { pcre2_match_context_free(Context); }
    void operator()(pcre2_match_data* Data) const { pcre2_match_data_free(Data); }
    void operator()(pcre2_jit_stack* Stack) const { pcre2_jit_stack_free(Stack); }
};

template<typename T> using CPcreOwner = std::unique_ptr<T, CCodeFree>;

struct CEngine
{
    /// Steps of one attempt that the matcher counts by itself; a hopeless one ends in some hundredths of a second.
    static constexpr quint32 MatchLimit = 1'000'000;
    /// What an attempt may take for going back, in KiB: the interpreter's heap and the compiled matcher's stack.
    static constexpr quint32 HeapLimitKib = 16 * 1024;
    static constexpr std::size_t FirstStackBytes = 32 * 1024;
    static constexpr std::size_t StackBytes = 1024 * 1024;

    /// Compares that are made without counting: about a tenth of a second for the compiled matcher.
    static constexpr double UncountedCompares = 100'000'000;

    /// Null when PCRE2 cannot hold Pattern.
    static std::unique_ptr<CEngine> Make(const CEcmaPattern& Pattern, bool IgnoreCase);

    /// What to match a text of so many units with. Being asked at each choice costs most of a search's time, so a text
    /// on which the expression cannot take long is searched without.
    const pcre2_code* CodeFor(qsizetype Units) const
    {
        return Uncounted && Effort.Compares(Units) <= UncountedCompares ? Uncounted.get() : Code.get();
    }

    CPcreOwner<pcre2_jit_stack> Stack; // outlives the context that was told of it
    CPcreOwner<pcre2_code> Code;
    CPcreOwner<pcre2_code> Uncounted; // without callouts; null where nothing is known of the effort
    CPcreOwner<pcre2_match_context> Context;
    CEffort Effort;

private:
    void MakeUncounted(const CEcmaPattern& Pattern, bool IgnoreCase);
};

/// PCRE2 refuses a null pointer, which a null text has, even for no units.
inline PCRE2_SPTR UnitsOf(QStringView Text) { return reinterpret_cast<PCRE2_SPTR>(Text.isNull() ? u"" : Text.utf16()); }

} // namespace regexp

#endif // REGEXP_CENGINE_H

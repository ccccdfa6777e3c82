// platform/regexp/CaseVariants.h
// Letters beyond ASCII that differ by their case only.

#ifndef REGEXP_CASEVARIANTS_H
#define REGEXP_CASEVARIANTS_H

#include <span>

namespace regexp
{

/// All units, Unit among them, that have the same capital as Unit; empty where Unit is ASCII or has no other case.
/// One unit maps to one unit (ß stays alone), and none beyond ASCII to one within.
std::span<const char16_t> CaseVariants(char16_t Unit);

/// The units from First to Last that have case variants, ascending.
std::span<const char16_t> CasedUnits(char16_t First, char16_t Last);

} // namespace regexp

#endif // REGEXP_CASEVARIANTS_H

// platform/jetsql/Characters.h
// Which characters make blanks, names and operators of the dialect.

#ifndef JETSQL_CHARACTERS_H
#define JETSQL_CHARACTERS_H

#include <QChar>

#include <array>

namespace jetsql {

enum class CharClass : quint8 { Other, Blank, Letter, Digit, Point, Quote, Hash, Bracket, BackQuote, Ampersand, Symbol };

namespace detail {

constexpr std::array<CharClass, 128> MakeClasses()
{
    std::array<CharClass, 128> classes{};
    for (const char c : {' ', '\t', '\r', '\n', '\v', '\f'})
        classes[static_cast<size_t>(c)] = CharClass::Blank;
    for (size_t c = 'a'; c <= 'z'; ++c)
        classes[c] = classes[c - 'a' + 'A'] = CharClass::Letter;
    classes['_'] = CharClass::Letter;
    for (size_t c = '0'; c <= '9'; ++c)
        classes[c] = CharClass::Digit;
    for (const char c : {'(', ')', ',', ';', '!', '*', '+', '-', '/', '\\', '^', '<', '=', '>'})
        classes[static_cast<size_t>(c)] = CharClass::Symbol;
    classes['.'] = CharClass::Point;
    classes['\''] = classes['"'] = CharClass::Quote;
    classes['#'] = CharClass::Hash;
    classes['['] = CharClass::Bracket;
    classes['`'] = CharClass::BackQuote;
    classes['&'] = CharClass::Ampersand;
    return classes;
}

inline constexpr std::array<CharClass, 128> Classes = MakeClasses();

/// Kana, kanji, full-width letters and the middle dot are letters of a name; a surrogate half belongs to a kanji.
inline CharClass WideClass(char16_t Unit)
{
    if (Unit == u'\u3000')   // typed between words with the input method on
        return CharClass::Blank;
    const QChar unit(Unit);
    const bool isLetter = unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate()
        || Unit == u'\u30FB' || Unit == u'\uFF65' || Unit == u'\uFF3F';
    return isLetter ? CharClass::Letter : CharClass::Other;
}

}

inline CharClass ClassOf(char16_t Unit) { return Unit < 128 ? detail::Classes[Unit] : detail::WideClass(Unit); }

inline bool IsBlank(char16_t Unit) { return ClassOf(Unit) == CharClass::Blank; }

inline bool IsDigit(char16_t Unit) { return Unit >= u'0' && Unit <= u'9'; }

/// A unit inside a bare name; the first one is a Letter. "$" ends function names, "@" occurs in old field names.
inline bool IsNameUnit(char16_t Unit)
{
    const CharClass unitClass = ClassOf(Unit);
    return unitClass == CharClass::Letter || unitClass == CharClass::Digit || Unit == u'$' || Unit == u'@';
}

/// What stands in the key for a literal, and what parts the key from the list of equal literals. These units are
/// refused in a statement outside of quotes and brackets, so that no statement can pretend to hold one.
namespace Placeholder {
inline constexpr char16_t Text = 1;
inline constexpr char16_t Long = 2;
inline constexpr char16_t Double = 3;
inline constexpr char16_t Date = 4;
inline constexpr char16_t Equals = 5;
}

}

#endif

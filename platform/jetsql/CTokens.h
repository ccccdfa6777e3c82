// platform/jetsql/CTokens.h
// The words and signs of a statement's key, each with its place in the statement.

#ifndef JETSQL_CTOKENS_H
#define JETSQL_CTOKENS_H

#include "platform/jetsql/Compile.h"
#include "platform/jetsql/Keyword.h"

#include <QString>

#include <vector>

namespace jetsql {

/// Signs are their own character; those of two characters have numbers that no character of the key has.
enum class Sign : char16_t {
    None = 0, NotEqual = 1, LessEqual = 2, GreaterEqual = 3,
    Exclamation = u'!', Ampersand = u'&', Open = u'(', Close = u')', Star = u'*', Plus = u'+', Comma = u',', Minus = u'-',
    Point = u'.', Slash = u'/', Semicolon = u';', Less = u'<', Equal = u'=', Greater = u'>', Backslash = u'\\', Caret = u'^'
};

struct Token
{
    enum class Kind : quint8 { End, Word, Name, Number, Literal, Sign };

    Kind What = Kind::End;
    Keyword Key = Keyword::None;    ///< of a Word
    Sign Mark = Sign::None;         ///< of a Sign
    FieldType Type = FieldType::Null;   ///< of a Literal
    QStringView Text;               ///< of a Word, a Number, and of a Name what stands between its brackets
    int Literal = -1;               ///< number of the literal
    int Begin = 0;                  ///< place in the key
    int End = 0;
    int Offset = 0;                 ///< place in the statement, UTF-16 units
    bool Touches = false;           ///< no blank before it
};

/// The tokens of one shape, the last one being End. Keeps a copy of what it needs of the shape.
class CTokens
{
public:
    explicit CTokens(const Shape& Taken);

    const Token& operator[](int Index) const { return m_tokens[size_t(Index)]; }
    int Count() const { return int(m_tokens.size()); }

    /// The number of the first literal that equals this one; the literal itself where that was not looked for.
    int FirstEqual(int Literal) const;
    /// The constant itself.
    const Value& LiteralValue(int Literal) const { return m_literals[size_t(Literal)]; }

    /// The statement's text from token First to token Last, as it may be shown: at most some sixty units.
    QString Shown(int First, int Last) const;

private:
    void Add(int& At);
    void AddEnclosed(Token& What, int& At);
    void AddSign(Token& What, int& At);
    QString ShownLiteral(int Literal) const;

    QString m_key;
    std::vector<Value> m_literals;
    std::vector<int> m_offsets;
    std::vector<Token> m_tokens;
    QString m_equals;
    int m_shift = 0;         // place in the statement minus place in the key
    int m_literalCount = 0;
};

}

#endif

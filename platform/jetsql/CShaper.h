// platform/jetsql/CShaper.h
// The one pass over a statement that parts its constants from its form.

#ifndef JETSQL_CSHAPER_H
#define JETSQL_CSHAPER_H

#include "platform/jetsql/Compile.h"

#include <QStringView>

namespace jetsql {

/// Takes the shape of one statement: what is no literal is copied in runs, each literal leaves a placeholder.
/// This runs for every statement sent to the engine, also for the thousands of one receive; hence no token list.
class CShaper
{
public:
    explicit CShaper(QStringView Sql);

    /// Throws Error 3075 for an unclosed text, bracket or date and for characters that mean nothing, 6 for a number
    /// beyond the range of Double.
    Shape Take();

private:
    enum class Last { Nothing, Word, Operand, Arithmetic, Comma, Other };

    bool AtEnd() const { return m_at == m_end; }
    char16_t Peek(qsizetype Ahead = 0) const { return m_end - m_at > Ahead ? m_at[Ahead] : u'\0'; }
    void SkipBlanks();
    void Token();
    void Word();
    bool NoteWord(QStringView Text);
    bool ChrCall(const char16_t* Begin);
    bool ReadChr(QString& To);
    void Enclosed();
    void Text();
    void ReadQuoted(QString& To);
    bool ExtendChain(QString& To);
    bool ArithmeticFollows();
    void Number();
    void Decimal(const char16_t* Begin);
    bool IsRadix() const;
    void Radix();
    void Date();
    void Point();
    void Ampersand();
    void Symbol();
    void Put(const char16_t* Begin, char16_t Placeholder, Value&& Literal);
    void PutEquals();
    void PutValues();
    int Offset(const char16_t* Place) const { return int(Place - m_begin); }
    [[noreturn]] void Refuse(const QString& Reason, const char16_t* Place) const;

    const char16_t* m_begin;
    const char16_t* m_end;
    const char16_t* m_at;
    const char16_t* m_run;               // begin of what is not yet copied into the key
    Last m_last = Last::Nothing;
    QStringView m_word;                  // the last token when it was a word
    bool m_afterOrder = false;
    bool m_afterTop = false;
    bool m_keepsNumbers = false;         // definitions: sizes belong to the form of the statement
    bool m_wantsEquals = false;
    bool m_wantsValues = false;          // the constants give columns their names: they belong to the form
    int m_depth = 0;
    int m_orderDepth = -1;               // parentheses around the ORDER BY list in reading, -1 outside
    Shape m_shape;
};

/// How long what stands in brackets or back-quotes at the begin of Text is, both of them included; -1 where it is not
/// closed. A select in brackets may hold names in brackets.
qsizetype EnclosedSize(QStringView Text);

}

#endif

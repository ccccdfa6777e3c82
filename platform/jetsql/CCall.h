// platform/jetsql/CCall.h
// One call of a function of ours by SQLite: its arguments and its result.

#ifndef JETSQL_CCALL_H
#define JETSQL_CCALL_H

#include "platform/jetsql/Value.h"

#include <QString>

struct sqlite3_context;
struct sqlite3_value;

namespace jetsql {

/// Arguments are read as the function wants them. What does not convert throws Error 13, what does not fit Error 6;
/// whoever made this object turns that into an error of the SQLite statement.
class CCall
{
public:
    /// Characters that one call may give; beyond that it is error 6. A message of a board has some thousands.
    static constexpr qsizetype MaxText = 16 * 1024 * 1024;

    CCall(sqlite3_context* Context, int Count, sqlite3_value** Args) : m_context(Context), m_args(Args), m_count(Count) {}

    int Count() const { return m_count; }
    bool IsNull(int Index) const;
    bool IsText(int Index) const;
    bool IsWhole(int Index) const;

    /// Null is empty; numbers are written plainly.
    QString Text(int Index) const;
    /// As Text, without a copy where SQLite holds a text; valid until the call is done. Buffer holds what is no text.
    QStringView View(int Index, QString& Buffer) const;
    double Number(int Index) const;
    /// Rounded half to even.
    qint32 Long(int Index) const;
    /// As Long, or Otherwise where there is no such argument.
    qint32 LongOr(int Index, qint32 Otherwise) const { return Index < m_count ? Long(Index) : Otherwise; }
    /// As it is stored: 64 bits.
    qint64 Whole(int Index) const;
    /// Days since 1899-12-30; text is read as a date.
    double Date(int Index) const;
    /// The argument as a value of type Type; Null: the type that SQLite says.
    Value Any(int Index, FieldType Type) const;
    /// The type that the writer has put behind a value of unknown kind.
    FieldType TypeAt(int Index) const { return FieldType(Long(Index)); }

    void SetNull();
    /// Error 6 for more than MaxText characters.
    void SetText(const QString& Data);
    void SetBytes(const QByteArray& Data);
    void SetWhole(qint64 Data);
    /// Error 6 for what does not fit into 32 bits.
    void SetLong(qint64 Data);
    void SetTruth(bool Data) { SetWhole(Data ? -1 : 0); }
    /// Error 6 for what is no finite number.
    void SetNumber(double Data);
    void SetValue(const Value& Data);
    void SetArgument(int Index);
    /// Ends the statement; Number comes out of FunctionError again.
    void SetError(int Number);

    sqlite3_context* Context() const { return m_context; }

private:
    Value Bytes(int Index) const;

    sqlite3_context* m_context;
    sqlite3_value** m_args;
    int m_count;
};

/// Throws Error 5 for an argument that the function has no answer to.
void Require(bool IsRight);

}

#endif

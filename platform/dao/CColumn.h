// platform/dao/CColumn.h
// The values of one column for many rows, stored by their type.

#ifndef DAO_CCOLUMN_H
#define DAO_CCOLUMN_H

#include "platform/dao/Types.h"

#include <variant>
#include <vector>

struct sqlite3_stmt;

namespace dao
{

/// Numbers lie side by side without a type each; texts are QStrings that whoever reads them shares.
///
/// SQLite lets a file hold anything anywhere. With the first value that does not fit its type the column turns into
/// one of plain Values, so nothing is lost or bent.
class CColumn
{
public:
    explicit CColumn(FieldType Type);

    /// Adds the column of the statement's current row. About how many bytes of memory that took.
    qint64 Append(sqlite3_stmt* Statement, int Column, bool IsUtf16);

    Value At(qsizetype Row) const;
    /// Null reads as 0 or empty; other types convert as Value does it.
    qint32 Long(qsizetype Row) const;
    double Double(qsizetype Row) const;
    QString Text(qsizetype Row) const;
    bool IsNull(qsizetype Row) const;

private:
    using Longs = std::vector<qint32>;
    using Doubles = std::vector<double>;
    using Texts = std::vector<QString>; ///< Null is a QString that isNull
    using Mixed = std::vector<Value>;

    bool AppendTyped(sqlite3_stmt* Statement, int Column, bool IsUtf16);
    bool AppendNull();
    qint64 LastSize() const;
    size_t Count() const;
    Value FromLong(qint32 Data) const;
    Value FromDouble(double Data) const;
    bool IsNullNumber(qsizetype Row) const { return !m_nulls.empty() && m_nulls[size_t(Row)]; }
    void Mix();

    FieldType m_type;
    std::variant<Longs, Doubles, Texts, Mixed> m_data;
    std::vector<bool> m_nulls; ///< numbers only; empty until the first Null
};

} // namespace dao

#endif

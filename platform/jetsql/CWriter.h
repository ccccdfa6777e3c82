// platform/jetsql/CWriter.h
// From a bound syntax tree to the text of a SQLite statement.

#ifndef JETSQL_CWRITER_H
#define JETSQL_CWRITER_H

#include "platform/jetsql/CBinder.h"
#include "platform/jetsql/Tree.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>

namespace jetsql {

/// Writes one statement. Tables go by t0, t1, … and columns of inner queries by c0, c1, …, so that no name of the user's
/// can collide; a table's own name stands quoted. Numbers and dates compare as SQLite compares them, so that its
/// indexes serve; text compares by JETEQUAL or JETTEXT, is sorted by its sort key and grouped by
/// its number.
class CWriter
{
public:
    explicit CWriter(const CBinder& Names) : m_names(Names) {}

    Statement Write(const Tree& Bound);

    /// For an object of its own: the rows of an action and the names of the fields that get their values; see Statement.
    std::shared_ptr<const Statement> WriteActionRows(const Tree& Bound, std::vector<QString>& Fields);

private:
    /// How close the outermost operation of a piece of SQL binds, in SQLite's ranks.
    enum class Rank : quint8 { Or, And, Not, Equal, Order, Sum, Product, Concat, Collate, Sign, Atom };

    struct Piece
    {
        QByteArray Sql;
        Rank How = Rank::Atom;
    };

    struct SortKey
    {
        QByteArray Sql;
        bool Descending = false;
    };

    // Statements (CWriter.cpp)
    void WriteRows(const Query& Source, Statement& To);
    void WriteCrosstab(const Query& Source, Statement& To);
    void WriteMakeTable(const Tree& Bound, Statement& To);
    void WriteTopSelect(const Select& Source, Statement& To);
    void WriteInsert(const Tree& Bound, Statement& To);
    QByteArray InsertColumns(QByteArrayList& Defaults) const;
    void WriteUpdate(const Tree& Bound, Statement& To);
    void WriteJoinedUpdate(const Tree& Bound, const TableRef& Target, Statement& To);
    void WriteManyUpdates(const Tree& Bound, const std::vector<const TableRef*>& Targets, Statement& To);
    void WriteDelete(const Tree& Bound, Statement& To);
    QByteArray Stored(const Expr& Value, const FieldInfo& Field);
    QByteArray Condition(const ExprPtr& Where);

    // Rows of action statements (CWriterRows.cpp)
    void WriteAppendRows(const Tree& Bound, Statement& To, std::vector<QString>& Fields);
    void WriteChangedRows(const Tree& Bound, Statement& To, std::vector<QString>& Fields);
    static const TableRef& ChangedTable(const Tree& Bound, const std::vector<TableRef*>& Tables);

    // Queries (CWriterQuery.cpp)
    QByteArray Derived(const Query& Source, bool IsSorted = false);
    QByteArray DerivedUnion(const Query& Source, bool IsSorted);
    QByteArray DerivedSelect(const Select& Source, bool IsSorted, const std::vector<ResultColumn>* Types = nullptr);
    QByteArray Ranked(const Select& Source, const QByteArrayList& Columns);
    QByteArray DerivedCrosstab(const Select& Source);
    Crosstab CrosstabParts(const Select& Source);
    QByteArray Tail(const Select& Source);
    static QByteArrayList RowKeys(const Select& Source);
    QByteArray FromList(const std::vector<std::unique_ptr<TableRef>>& From);
    QByteArray Reference(const TableRef& Table);
    QByteArray Output(const OutputColumn& Column, FieldType Wanted, bool Distinct);
    static std::vector<SortKey> UnionKeys(const Query& Source);
    std::vector<SortKey> OrderKeys(const Select& Source);
    std::vector<SortKey> DefaultKeys(const Select& Source);
    QByteArray OutputKey(const OutputColumn& Column);
    QByteArray ExpressionKey(const Expr& Which);
    QByteArray GroupKey(const Expr& Which);
    static QByteArray OrderBy(const std::vector<SortKey>& Keys);

    // Expressions (CWriterExpression.cpp)
    Piece Value(const Expr& Which);
    Piece PlainValue(const Expr& Which);
    Piece Truthful(const Expr& Which);
    Piece Truth(const Expr& Written);
    Piece As(const Expr& Written, FieldType Wanted);
    Piece Number(const Expr& Which);
    Piece Against(const Expr& Which, FieldType Other);
    Piece ConstantValue(const jetsql::Value& Constant) const;
    Piece Unary(const Expr& Which);
    Piece Binary(const Expr& Which);
    Piece Bitwise(const Expr& Which);
    Piece Logic(const Expr& Which);
    static Piece Joined(const std::vector<Piece>& Links, size_t First, size_t Last, Rank How, const QByteArray& Between);
    Piece Concat(const Expr& Which);
    Piece Comparison(const Expr& Which);
    Piece Between(const Expr& Which);
    Piece InList(const Expr& Which);
    Piece Like(const Expr& Which);
    Piece Scalar(const Query& Source);
    Piece InSelect(const Expr& Which);
    Piece Quantified(const Expr& Which);
    Piece Call(const Expr& Which);
    Piece Aggregate(const Expr& Which);
    Piece Case(const Expr& Which);
    QByteArray Argument(const Expr& Written, char Kind);
    QByteArray Bound(Binding::Kind Source, int Index, FieldType As);
    static Piece Function(const char* Name, const QByteArrayList& Args);
    static Piece Converted(const QByteArray& Sql, FieldType From, FieldType To, const char* How = "as");
    static bool NeedsConversion(FieldType From, FieldType To);
    static bool MayOverflow(const Expr& Written);
    static QByteArray In(const Piece& Which, Rank Lowest);
    static Piece Negated(const Piece& Which, bool IsNegated);
    static Piece Collated(const Piece& Which, bool IsText, const char* How = "JETTEXT");
    static bool IsConstant(const Expr& Which);

    const CBinder& m_names;
    std::vector<Binding> m_bindings;
    std::vector<jetsql::Value> m_constants;
    QHash<quint64, int> m_bound;
    qsizetype m_written = 0;    // bytes of all pieces so far: aliases of aliases grow fast
};

/// The rows of a crosstab. Placeholders are the SQLite parameters of the values behind the columns. IsDerived: it stands
/// in place of a table, with c0, c1, … for all columns; otherwise the sort keys that TOP wants follow the columns.
QByteArray CrosstabSql(const Crosstab& Parts, const QByteArrayList& Placeholders, bool IsDerived);

/// The rows of Rows, which have the columns c0, c1, … and the sort keys k0, k1, …, down to row number Top and what ties
/// with it. Keys: nothing or " DESC" for each.
QByteArray RankedRows(const QByteArray& Rows, qsizetype ColumnCount, const QByteArrayList& Keys, int Top, bool IsPercent);

/// "c0,c1,…", each with Prefix before it.
QByteArrayList NumberedList(const QByteArray& Prefix, qsizetype Count);

/// The row number of a table's or an updatable query's rows.
QByteArray RowIdOf(const TableRef& Table);

/// A word for the table's hidden row number that none of its fields has taken.
QByteArray RowIdOf(const TableInfo& Table);

}

#endif

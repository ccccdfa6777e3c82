// platform/jetsql/Tree.h
// The syntax tree of a statement. The parser makes it, the binder adds names and types, the writer reads it.

#ifndef JETSQL_TREE_H
#define JETSQL_TREE_H

#include "platform/jetsql/Catalog.h"
#include "platform/jetsql/Compile.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

namespace jetsql {

class CTokens;
struct FunctionInfo;
struct Query;
struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

enum class Op : quint8 {
    None, Negate, Power, Multiply, Divide, IntDivide, Mod, Add, Subtract, Concat,
    Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual, Not, And, Or, Xor, Eqv, Imp
};

constexpr bool IsComparison(Op Operator) { return Operator >= Op::Equal && Operator <= Op::GreaterEqual; }

/// A column that a source offers.
struct Column
{
    QString Name;
    FieldType Type = FieldType::Null;
    int Size = 0;
    QByteArray Sql;             ///< how the SQLite text names it
    QString SourceTable;        ///< empty: made by an expression
    QString SourceField;
    QString Owner;              ///< the name that the table or query goes by in this statement
};

struct Expr
{
    enum class Kind : quint8 {
        Literal,        ///< a placeholder, or a Constant from a saved query
        Constant,       ///< True, False, Null, a number that is part of the form
        Name,
        Unary, Binary,
        Chain,          ///< two or more joined by the same And, Or or &
        Between, InList, InSelect, Like, IsNull, Exists, Scalar,
        Quantified,     ///< comparison with ANY or ALL rows
        Call
    };

    Kind What = Kind::Constant;
    Op Operator = Op::None;
    bool Negated = false;       ///< Not Between, Not In, Not Like, Is Not Null
    bool IsAll = false;         ///< Quantified: ALL, else ANY
    bool StarArgument = false;  ///< Count(*)
    bool RefusesNull = false;   ///< Left$: Null is an error
    int First = 0;              ///< first and last token
    int Last = 0;
    int Height = 1;             ///< levels of expressions below and with this one
    int Literal = -1;           ///< number among the statement's literals; -1: Constant is the value
    Value Constant;
    QString Qualifier;
    QString Name;
    std::vector<ExprPtr> Args;
    std::unique_ptr<Query> Select;

    // What the binder finds out.
    FieldType Type = FieldType::Null;   ///< Null: not known, or always Null
    bool IsTruth = false;       ///< never anything but -1, 0 and Null
    bool HasAggregate = false;
    qint64 Size = 1;            ///< number of expressions in it, aliases spelled out
    const FunctionInfo* Function = nullptr;
    const Column* Field = nullptr;      ///< a Name that is a column
    Expr* Alias = nullptr;      ///< a Name that stands for another item of the select list
    int Parameter = -1;         ///< a Name that is nothing else
    bool IsOuter = false;       ///< a column of an enclosing query
    const Column* Anchor = nullptr;     ///< an aggregate of outer columns alone: a column of the query that it counts in
};

struct SelectItem
{
    ExprPtr Value;              ///< empty for * and t.*
    QString StarOf;             ///< t of t.*
    QString Alias;
    int First = 0;
};

struct OrderItem
{
    ExprPtr Value;
    int Position = 0;           ///< 1-based column instead of an expression
    int First = 0;              ///< token
    bool Descending = false;
    const Expr* Target = nullptr;   ///< binder: what the position means
};

enum class JoinKind : quint8 { None, Inner, Left, Right };

/// A table, a query, a select in place of one, or a join of two such.
struct TableRef
{
    JoinKind Join = JoinKind::None;
    QString Name;
    QString Alias;
    std::unique_ptr<Query> Derived;     ///< written out here, or by the binder from a saved query
    std::shared_ptr<const CTokens> Tokens;   ///< of Derived where it has a text of its own
    std::unique_ptr<TableRef> Left;
    std::unique_ptr<TableRef> Right;
    ExprPtr On;
    int First = 0;                      ///< token
    int Height = 1;                     ///< levels of joins

    // What the binder finds out.
    const TableInfo* Table = nullptr;
    const TableInfo* Base = nullptr;    ///< the table whose rows these are; only looked for where they are changed
    std::vector<int> BaseFields;        ///< for each column the field of Base, -1 for what is none
    bool ShowsRowId = false;            ///< the row number is a column, so that joins in parentheses pass it on
    QByteArray SqlAlias;
    std::vector<Column> Columns;
    QString VisibleName() const { return Alias.isEmpty() ? Name : Alias; }
};

/// Whether Tested is one of the table's columns.
inline bool Owns(const TableRef& Table, const Column& Tested)
{
    return Table.Columns.data() <= &Tested && &Tested < Table.Columns.data() + Table.Columns.size();
}

/// One column of a select after * has been spread.
struct OutputColumn
{
    ResultColumn Info;
    const Expr* Value = nullptr;        ///< either an expression
    const Column* Field = nullptr;      ///< or a column that * stands for; also the column that Value is
    bool HasAlias = false;
    int First = 0;                      ///< token
};

/// What makes a select a crosstab.
struct Pivot
{
    ExprPtr Cell;
    ExprPtr Heading;
    std::vector<ExprPtr> Fixed;         ///< the IN list: constants
    bool IsFixed = false;
    std::vector<Value> Values;          ///< binder: those of Fixed, as Heading's type has them
};

struct Select
{
    bool Distinct = false;
    bool DistinctRow = false;
    int Top = -1;
    bool TopPercent = false;
    std::vector<SelectItem> Items;
    std::vector<std::unique_ptr<TableRef>> From;
    ExprPtr Where;
    std::vector<ExprPtr> GroupBy;
    ExprPtr Having;
    std::vector<OrderItem> OrderBy;
    QString Into;
    int IntoToken = 0;
    std::unique_ptr<Pivot> Crossed;     ///< TRANSFORM … PIVOT
    int First = 0;

    // What the binder finds out.
    bool IsGrouped = false;             ///< GROUP BY or an aggregate
    bool ShowsRowId = false;            ///< a change of its one table's rows wants their numbers
    std::vector<OutputColumn> Output;   ///< of a crosstab the rows' own columns only
    std::vector<const TableRef*> RowsOf;    ///< DISTINCTROW: the tables whose rows come once each; empty: all rows
};

/// One select, or several joined by UNION.
struct Query
{
    std::vector<std::unique_ptr<Select>> Members;
    std::vector<bool> IsAll;            ///< for each member but the first: UNION ALL
    std::vector<OrderItem> OrderBy;     ///< of a union
    std::vector<ResultColumn> Columns;  ///< binder: the types that hold all members
    bool IsUnion() const { return Members.size() > 1; }
};

struct Assignment
{
    ExprPtr Target;
    ExprPtr Value;
};

struct DeclaredParameter
{
    QString Name;
    FieldType Type = FieldType::Null;
};

/// A whole statement.
struct Tree
{
    QueryType Type = QueryType::Select;
    std::vector<DeclaredParameter> Declared;
    std::unique_ptr<Query> Source;                  ///< of a select, a union, an INSERT … SELECT
    QString Target;                                 ///< of an INSERT; of DELETE t.* the t
    int TargetToken = 0;
    std::vector<QString> TargetFields;
    std::vector<int> TargetFieldTokens;
    std::vector<ExprPtr> Values;
    std::vector<std::unique_ptr<TableRef>> From;    ///< of an UPDATE, a DELETE
    std::vector<Assignment> Assignments;
    ExprPtr Where;
};

}

#endif

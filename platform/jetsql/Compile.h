// platform/jetsql/Compile.h
// From a statement of the engine's dialect to SQLite text with typed columns and ordered parameters.

#ifndef JETSQL_COMPILE_H
#define JETSQL_COMPILE_H

#include "platform/jetsql/Catalog.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/Value.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringView>

#include <memory>
#include <vector>

struct sqlite3;

namespace jetsql {

struct Definition;

/// What a statement does; the numbers are the engine's own.
enum class QueryType { Select = 0, Crosstab = 16, Delete = 32, Update = 48, Append = 64, MakeTable = 80, Ddl = 96, Union = 128, Compound = 160, Procedure = 224 };

/// True where the statement gives rows (and changes nothing).
constexpr bool ReturnsRows(QueryType Type)
{
    return Type == QueryType::Select || Type == QueryType::Crosstab || Type == QueryType::Union;
}

/// One column of a result.
struct ResultColumn
{
    QString Name;
    FieldType Type = FieldType::Null;   ///< Null only where nothing is known (a bare parameter, a bare Null)
    int Size = 0;                       ///< characters of a Text field; 0 otherwise
    QString SourceTable;                ///< both empty for an expression
    QString SourceField;
};

/// A parameter in order: declared ones first, then unknown names as they appear.
struct ParameterInfo
{
    QString Name;
    FieldType Type = FieldType::Null;   ///< Null: takes any value
};

/// Where the k-th parameter of the SQLite statement (?1, ?2, …) takes its value from.
struct Binding
{
    enum Kind { Literal, Parameter, Constant };
    Kind Source = Literal;
    int Index = 0;                      ///< into Shape::Literals, Statement::Parameters or Statement::Constants
    FieldType As = FieldType::Null;     ///< type to convert to before binding; Null: bind the value as it is
};

/// The parts of a crosstab as SQLite text; Spread puts them together once the values behind the columns are known.
/// Its tables are named so that no table of a file can have the name.
struct Crosstab
{
    QByteArray HeadingSql;              ///< one column: the values behind the columns, in their order
    FieldType HeadingType = FieldType::Null;
    FieldType CellType = FieldType::Null;
    QByteArray CellSql;                 ///< one row for each row and column of the result: k0, k1, …, p, v
    QByteArray RowSql;                  ///< the rows' own columns c0, c1, …, k0, k1, …, o0, o1, …; empty: they are in CellSql, too
    int ColumnCount = 0;                ///< of c0, c1, …
    int KeyCount = 0;                   ///< of k0, k1, …: what makes a row
    QByteArrayList OrderKeys;           ///< for each of o0, o1, … nothing or " DESC"; empty: by k0, k1, …
    int Top = -1;
    bool TopPercent = false;
};

/// A compiled statement. Immutable; shared by everybody who runs a statement of the same shape.
///
/// Rows of a query are Columns, then HiddenKeys extra columns, then the rowid where EditableTable is not empty.
/// The hidden keys are there with Top only: the ORDER BY keys, folded so that equal keys are equal SQLite values. Who
/// reads the rows goes on past Top rows as long as all hidden keys equal those of row number Top.
struct Statement
{
    QueryType Type = QueryType::Select;
    QByteArray Sql;                         ///< UTF-8, for sqlite3_prepare
    /// What is to be run after Sql, in this order and without parameters; all of it is one change. Counter then tells
    /// how many rows that is, asked right after Sql.
    std::vector<QByteArray> Steps;
    QByteArray Counter;
    std::vector<ResultColumn> Columns;      ///< of the rows; of a MakeTable the fields; else empty
    std::vector<Binding> Bindings;          ///< k-th entry: parameter ?k+1
    std::vector<ParameterInfo> Parameters;
    std::vector<Value> Constants;           ///< what else is bound
    std::shared_ptr<const Crosstab> Pivot;  ///< of a Crosstab whose columns are not known yet: no Sql; see Spread
    int Top = -1;                           ///< -1: all rows
    bool TopPercent = false;                ///< Top is a percentage: ceil(Top * rows / 100) rows
    int HiddenKeys = 0;
    QString EditableTable;                  ///< the one table whose rows these are; empty: rows cannot be edited
    QString TargetTable;                    ///< the table that an Append, Update or Delete changes; a MakeTable's new one, which Sql fills
    std::shared_ptr<const Definition> Ddl;  ///< of a Ddl: what is to be made or dropped; there is no Sql then
    std::vector<QString> Sources;           ///< every table read or written, each once
    bool UsesQueries = false;               ///< a saved query's text is part of it: stale when that query changes
    int LiteralCount = 0;
    /// Of an Append, Update or Delete of one table: what it changes, for whoever takes the rows one by one. A row is the
    /// new values as they are before they are converted to TargetFields, after the row's number where it is there already.
    std::shared_ptr<const Statement> Rows;
    std::vector<QString> TargetFields;
};

/// What makes two statements the same but for their constants.
struct Shape
{
    QString Key;                    ///< the statement with a typed placeholder in place of each literal
    std::vector<Value> Literals;
    std::vector<int> Offsets;       ///< two for each literal: where it begins and ends in the statement, UTF-16 units
};

/// One pass over the text. A chain of text constants joined by & (also with Chr(n) for a constant n) is one literal;
/// the counts of TOP and the positions of ORDER BY stay in the key. Throws Error (3075) for a broken literal.
Shape TakeShape(QStringView Sql);

/// Compiles a statement, or a table's or saved query's name in place of one. Throws Error with the place where it is wrong.
std::shared_ptr<const Statement> Compile(const Shape& Taken, const Catalog& Names);

/// The statement that gives the rows of a crosstab: one column more for each of the values that HeadingSql gave.
/// Error 3205 where they are too many.
Statement Spread(const Statement& Variable, const std::vector<Value>& Headings);

/// What the statement does, without a look at the database. Throws Error 3129 where that cannot be told.
QueryType TypeOf(QStringView Sql);

/// Gives a connection what compiled statements use: the collations JETTEXT (the order of texts) and JETEQUAL (the same
/// equality without a reader's order, many times cheaper), all functions and a bound for the size of a row.
/// To be called once for each connection before anything else; errors of the functions come back as SQLite errors whose
/// message is read by FunctionError.
void RegisterFunctions(sqlite3* Connection);

/// Where a statement failed inside one of our functions, the engine error it stands for (11, 13, 5, 94, …);
/// Number is 0 where Message is not one of ours. Message is what sqlite3_errmsg says.
Error FunctionError(QStringView Message);

}

#endif

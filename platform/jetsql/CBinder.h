// platform/jetsql/CBinder.h
// Gives the names of a syntax tree their meaning and its expressions their types.

#ifndef JETSQL_CBINDER_H
#define JETSQL_CBINDER_H

#include "platform/jetsql/CTokens.h"
#include "platform/jetsql/Tree.h"

#include <vector>

namespace jetsql {

/// Binds one statement. A name is a column of a table in FROM, then a column of an enclosing query, then the alias of an
/// item of the select list, then a function without arguments (Date), and else a parameter.
class CBinder
{
public:
    CBinder(const Catalog& Names, const CTokens& Tokens);

    /// Throws Error with the place in the statement; for what is wrong inside a saved query that is the query's name.
    void Bind(Tree& Statement);

    /// In their order: declared ones, then by their place in the text.
    std::vector<ParameterInfo> Parameters() const;
    /// Where the parameter stands in Parameters() that expressions know as Id.
    int ParameterIndex(int Id) const;
    const std::vector<QString>& Sources() const { return m_sources; }
    bool UsesQueries() const { return m_queryCount > 0; }

    /// The table that an INSERT adds to, and for each value the number of its field.
    const TableInfo* Target() const { return m_target; }
    const std::vector<int>& TargetFields() const { return m_targetFields; }

private:
    enum class Clause : quint8 { Items, On, Where, GroupBy, Having, OrderBy, Aggregate, Values };

    struct Scope
    {
        Select* Of = nullptr;
        std::vector<TableRef*> Tables;
        Scope* Outer = nullptr;
        std::vector<int> ItemStates;    // 0 not bound yet, 1 being bound, 2 bound
    };

    struct KnownParameter
    {
        ParameterInfo Info;
        bool IsDeclared = false;
        std::vector<int> Place;         // token, preceded by the tokens of the saved queries around it
    };

    // Statements (CBinder.cpp)
    void BindInsert(Tree& Statement);
    void BindMakeTable(Tree& Statement);
    void BindTargetFields(const Tree& Statement);
    void MatchByName(const Tree& Statement);
    void BindUpdate(Tree& Statement);
    void BindAssignment(Assignment& Which, const TableRef& Owner, Scope& In);
    static bool FindBase(TableRef& Table);
    void BindDelete(Tree& Statement);
    void Declare(const Tree& Statement);
    const TableInfo& TargetTable(const QString& Name, int Token, int MissingNumber);

    // Queries (CBinderQuery.cpp)
    void BindQuery(Query& Which, Scope* Outer);
    void BindUnion(Query& Which);
    void BindUnionOrder(Query& Which);
    void BindSelect(Select& Which, Scope* Outer);
    void BindTables(std::vector<std::unique_ptr<TableRef>>& From, Scope& Into);
    void BindTable(TableRef& Table, Scope& Into);
    void BindLeaf(TableRef& Table, Scope& Into);
    void BindBase(TableRef& Table, const TableInfo& Info);
    void BindDerived(TableRef& Table, Scope* Outer);
    void OpenSavedQuery(TableRef& Table, const QString& Text);
    void BindOn(TableRef& Join, Scope& Around);
    void BindItem(Scope& In, size_t Index);
    void SpreadItems(Select& Which, Scope& In);
    void SpreadStar(Select& Which, const Scope& In, const SelectItem& Item);
    void NameColumns(Select& Which);
    void BindOrder(Select& Which, Scope& In);
    void CheckDistinctOrder(const Select& Which);
    void CheckGrouping(Select& Which);
    void CheckGrouped(const Select& Which, const Expr& Tested, const Expr* AlsoGrouped = nullptr);
    static void FindRowTables(Select& Which, const Scope& In);

    // Crosstabs (CBinderCrosstab.cpp)
    void BindCrosstab(Select& Which, Scope& In, size_t KnownParameters);
    void BindFixedHeadings(Pivot& Which);
    void AddHeadings(Query& Which);

    // Expressions (CBinderExpression.cpp)
    void BindExpression(Expr& Which, Scope* In);
    void BindKind(Expr& Which, Scope* In);
    void BindName(Expr& Which, Scope* In);
    const Column* FindColumn(const Expr& Name, const Scope& In) const;
    bool BindAlias(Expr& Which, Scope* In);
    bool BindBareFunction(Expr& Which);
    void BindParameter(Expr& Which);
    void BindUnary(Expr& Which);
    void BindBinary(Expr& Which);
    void BindLogic(Expr& Which);
    void BindConcat(Expr& Which);
    void BindComparisons(Expr& Which);
    void BindLike(Expr& Which);
    void BindSubquery(Expr& Which, Scope* In);
    void BindCall(Expr& Which, Scope* In);
    void BindArguments(Expr& Which, Scope* In);
    void CheckAggregate(const Expr& Which) const;
    FieldType CallType(const Expr& Which) const;
    void CheckComparison(Expr& Left, Expr& Right, const Expr& Whole);
    void Infer(Expr& Which, FieldType Type);
    void AsTruth(Expr& Which);

    int OffsetOf(int Token) const;
    QString Shown(const Expr& Which) const { return m_tokens->Shown(Which.First, Which.Last); }
    [[noreturn]] void Refuse(int Number, const Expr& Which) const;

    const Catalog& m_names;
    const CTokens* m_tokens;
    Clause m_clause = Clause::Items;
    std::vector<KnownParameter> m_parameters;
    std::vector<int> m_place;
    std::vector<QString> m_openQueries;
    std::vector<QString> m_sources;
    int m_queryCount = 0;
    int m_tableCount = 0;
    int m_depth = 0;
    const TableInfo* m_target = nullptr;
    std::vector<int> m_targetFields;
};

/// Whether two names are the same: as texts, neither letter case nor width nor kana count.
bool SameName(QStringView Left, QStringView Right);

/// The columns of a crosstab behind those that are there: one for each of Headings, named after it.
/// Error 3205 where they are too many.
void AddHeadingColumns(std::vector<ResultColumn>& To, const std::vector<Value>& Headings, FieldType Type, int Size);

/// All leaves below Root, from left to right.
void CollectTables(TableRef& Root, std::vector<TableRef*>& Into);

/// Name in double quotes as SQLite wants it.
QByteArray Quoted(const QString& Name);

}

#endif

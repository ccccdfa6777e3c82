// platform/jetsql/CParser.h
// From tokens to the syntax tree: statements in CParser.cpp, queries, crosstabs and expressions in the files beside it.

#ifndef JETSQL_CPARSER_H
#define JETSQL_CPARSER_H

#include "platform/jetsql/CTokens.h"
#include "platform/jetsql/Tree.h"

#include <initializer_list>

namespace jetsql {

/// Reads one statement. Every function either takes what it reads or throws Error with the place where it is wrong.
/// Words of the dialect are names wherever nothing else could stand.
class CParser
{
public:
    /// IsForeign: the tokens are a saved query's own; its constants go into the tree as values.
    explicit CParser(const CTokens& Tokens, bool IsForeign = false);

    Tree Statement();

    /// What the statement does, by its words alone.
    QueryType Type();

private:
    class CNesting;

    // Tokens (CParser.cpp)
    const Token& Peek(int Ahead = 0) const;
    bool At(Keyword Word, int Ahead = 0) const { return Peek(Ahead).Key == Word; }
    bool At(Sign Mark, int Ahead = 0) const { return Peek(Ahead).Mark == Mark; }
    bool AtEnd() const { return Peek().What == Token::Kind::End || At(Sign::Semicolon); }
    bool Accept(Keyword Word);
    bool Accept(Sign Mark);
    void Expect(Keyword Word, int ErrorNumber);
    void Expect(Sign Mark, int ErrorNumber);
    bool AtName() const;
    bool CanBeName(int Ahead = 0) const;
    QString Name(int ErrorNumber);
    QString NewName(int ErrorNumber);
    [[noreturn]] void Refuse(int Number) const;
    [[noreturn]] void RefuseExpression(const QString& Reason, int First) const;

    // Statements (CParser.cpp)
    void Header(Tree& To);
    void Parameters(Tree& To, int ErrorNumber);
    FieldType ParameterType(int ErrorNumber);
    QueryType BodyType();
    void Body(Tree& To);
    void Insert(Tree& To);
    void InsertFields(Tree& To);
    void InsertValues(Tree& To);
    void Update(Tree& To);
    void Assign(Tree& To);
    void Delete(Tree& To);
    void DeleteTarget(Tree& To);
    void Execute(Tree& To);
    void Finish();

    // Queries (CParserQuery.cpp)
    std::unique_ptr<Query> ReadQuery();
    std::unique_ptr<Select> Member(bool& IsEnclosed);
    std::unique_ptr<Select> ReadSelect();
    std::unique_ptr<Select> TableMember();
    std::unique_ptr<Select> EnclosedMember();
    bool AtNamedMember() const;
    std::unique_ptr<Query> ReadCrosstab();
    void PivotColumns(Pivot& To);
    void Predicates(Select& To);
    bool AtPredicate() const;
    void Top(Select& To);
    void Items(Select& To);
    SelectItem Item();
    bool StarItem(SelectItem& To);
    std::vector<std::unique_ptr<TableRef>> From();
    std::unique_ptr<TableRef> Reference();
    std::unique_ptr<TableRef> SimpleReference();
    std::unique_ptr<TableRef> Enclosed();
    bool AtEnclosedQuery() const;
    std::unique_ptr<TableRef> BracketedSelect();
    bool AtJoin() const;
    JoinKind Join();
    void TableAlias(TableRef& To);
    void Tail(Select& To);
    void OwnerAccess();
    void RefuseOtherFile() const;
    std::vector<OrderItem> OrderList();
    OrderItem Order();
    ExprPtr Clause(int ErrorNumber);

    // Expressions (CParserExpression.cpp)
    bool AtExpression() const;
    bool AtCall() const;
    ExprPtr Expression(int Level = 0);
    ExprPtr Prefix();
    ExprPtr Infix(ExprPtr Left, Op Operator, int Level);
    ExprPtr Comparison(ExprPtr Left, Op Operator, int Level);
    ExprPtr Postfix(ExprPtr Left, int Level);
    bool AtPostfix() const;
    ExprPtr Between(ExprPtr Left, int Level);
    ExprPtr In(ExprPtr Left);
    ExprPtr IsNull(ExprPtr Left);
    Op InfixOperator() const;
    ExprPtr Primary();
    ExprPtr Parenthesis();
    ExprPtr LiteralValue();
    ExprPtr Word();
    ExprPtr NameOrCall();
    ExprPtr Call(const QString& Function, int First);
    bool ConstantWord(Expr& To) const;
    std::unique_ptr<Query> Subquery();
    ExprPtr Make(Expr::Kind What, int First) const;
    ExprPtr Closed(ExprPtr What) const;

    const CTokens& m_tokens;
    bool m_isForeign;
    int m_at = 0;
    int m_depth = 0;
    int m_expressionBegin = 0;   // for messages: where the expression in reading began
};

/// Counts how deep the reading is nested, so that a hostile statement ends in an error and not on the stack.
class CParser::CNesting
{
public:
    explicit CNesting(CParser& Parser);
    ~CNesting() { --m_parser.m_depth; }
    CNesting(const CNesting&) = delete;
    CNesting& operator=(const CNesting&) = delete;

private:
    CParser& m_parser;
};

/// The type behind a type word of PARAMETERS and of definitions; Binary stands for the unsupported ones.
/// False where Word is no type.
bool TypeOfWord(QStringView Word, FieldType& Type);

}

#endif

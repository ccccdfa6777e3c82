// platform/jetsql/Compile.cpp
// From a statement of the engine's dialect to SQLite text with typed columns and ordered parameters.

#include "platform/jetsql/Compile.h"

#include "platform/jetsql/CBinder.h"
#include "platform/jetsql/CParser.h"
#include "platform/jetsql/CTokens.h"
#include "platform/jetsql/CWriter.h"

namespace jetsql {

namespace {

// The name of a table or query in place of a statement means all its rows.
bool IsSourceName(const CTokens& Tokens, const Catalog& Names)
{
    const Token& token = Tokens[0];
    const bool isName = Tokens.Count() == 2 && (token.What == Token::Kind::Word || token.What == Token::Kind::Name);
    const QString name = token.Text.toString();
    return isName && (Names.FindTable(name) || Names.FindQuery(name));
}

Tree SourceTree(const CTokens& Tokens)
{
    Tree tree;
    auto select = std::make_unique<Select>();
    select->Items.emplace_back();
    auto table = std::make_unique<TableRef>();
    table->Name = Tokens[0].Text.toString();
    select->From.push_back(std::move(table));
    tree.Source = std::make_unique<Query>();
    tree.Source->Members.push_back(std::move(select));
    return tree;
}

}

std::shared_ptr<const Statement> Compile(const Shape& Taken, const Catalog& Names)
{
    const CTokens tokens(Taken);
    Tree tree = IsSourceName(tokens, Names) ? SourceTree(tokens) : CParser(tokens).Statement();
    // Making tables and columns is the work of the database objects.
    if (tree.Type == QueryType::MakeTable)
        throw MakeError(3219);
    CBinder binder(Names, tokens);
    binder.Bind(tree);
    auto statement = std::make_shared<Statement>(CWriter(binder).Write(tree));
    statement->LiteralCount = int(Taken.Literals.size());
    return statement;
}

QueryType TypeOf(QStringView Sql)
{
    const CTokens tokens(TakeShape(Sql));
    return CParser(tokens).Type();
}

}

// platform/jetsql/Compile.cpp
// From a statement of the engine's dialect to SQLite text with typed columns and ordered parameters.

#include "platform/jetsql/Compile.h"

#include "platform/jetsql/CBinder.h"
#include "platform/jetsql/CDefinitionParser.h"
#include "platform/jetsql/CParser.h"
#include "platform/jetsql/CTokens.h"
#include "platform/jetsql/CWriter.h"
#include "platform/jetsql/TypeRules.h"

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

// A definition names what is not there yet: nothing is looked up before it runs.
Statement CompiledDefinition(const CTokens& Tokens)
{
    Statement statement;
    statement.Type = QueryType::Ddl;
    statement.Ddl = std::make_shared<const Definition>(CDefinitionParser(Tokens).Statement());
    return statement;
}

bool IsDefinition(Keyword First)
{
    return First == Keyword::Create || First == Keyword::Alter || First == Keyword::Drop;
}

Statement CompileTree(Tree& Parsed, const CTokens& Tokens, const Catalog& Names)
{
    CBinder binder(Names, Tokens);
    binder.Bind(Parsed);
    Statement statement = CWriter(binder).Write(Parsed);
    statement.Rows = CWriter(binder).WriteActionRows(Parsed, statement.TargetFields);
    return statement;
}

// The text of a saved query that EXECUTE names; what is wrong in it is wrong with its name.
Statement CompileNamed(const Tree& Call, const CTokens& Tokens, const Catalog& Names)
{
    const int offset = Tokens[Call.TargetToken].Offset;
    const QString* text = Names.FindQuery(Call.Target);
    if (!text)
        throw MakeError(3078, {Call.Target}, offset);
    try {
        const CTokens inner(TakeShape(*text));
        if (IsDefinition(inner[0].Key))
            return CompiledDefinition(inner);
        Tree tree = CParser(inner, true).Statement();
        if (tree.Type == QueryType::Procedure)
            throw MakeError(3102, {Call.Target});
        return CompileTree(tree, inner, Names);
    } catch (Error& refused) {
        refused.Offset = offset;
        throw;
    }
}

// EXECUTE q a, b: the arguments fill the query's parameters from the first one on; a bare name passes a parameter on.
Statement CompileCall(const Tree& Call, const CTokens& Tokens, const Catalog& Names)
{
    Statement statement = CompileNamed(Call, Tokens, Names);
    statement.UsesQueries = true;
    const size_t wanted = statement.Parameters.size();
    std::vector<ParameterInfo> open;
    std::vector<Binding> given(wanted);
    for (size_t i = 0; i < std::max(wanted, Call.Values.size()); ++i) {
        const Expr* value = i < Call.Values.size() ? Call.Values[i].get() : nullptr;
        const bool isConstant = value && (IsLiteral(*value) || IsNullWord(*value));
        const bool isName = value && value->What == Expr::Kind::Name;
        if (i >= wanted || (value && !isConstant && !isName))
            throw MakeError(3140, {}, Tokens[value->First].Offset);
        if (isConstant) {
            given[i] = {Binding::Constant, int(statement.Constants.size()), FieldType::Null};
            statement.Constants.push_back(ConstantOf(*value, Tokens));
            continue;
        }
        given[i] = {Binding::Parameter, int(open.size()), FieldType::Null};
        open.push_back({isName ? value->Name : statement.Parameters[i].Name, statement.Parameters[i].Type});
    }
    statement.Parameters = std::move(open);
    for (Binding& binding : statement.Bindings)
        if (binding.Source == Binding::Parameter)
            binding = {given[size_t(binding.Index)].Source, given[size_t(binding.Index)].Index, binding.As};
    statement.Rows.reset();   // they take their parameters otherwise
    return statement;
}

}

std::shared_ptr<const Statement> Compile(const Shape& Taken, const Catalog& Names)
{
    const CTokens tokens(Taken);
    if (IsDefinition(tokens[0].Key) && tokens.Count() > 2)
        return std::make_shared<const Statement>(CompiledDefinition(tokens));
    Tree tree = IsSourceName(tokens, Names) ? SourceTree(tokens) : CParser(tokens).Statement();
    const bool isCall = tree.Type == QueryType::Procedure;
    auto statement = std::make_shared<Statement>(isCall ? CompileCall(tree, tokens, Names) : CompileTree(tree, tokens, Names));
    statement->LiteralCount = int(Taken.Literals.size());
    return statement;
}

QueryType TypeOf(QStringView Sql)
{
    const CTokens tokens(TakeShape(Sql));
    return CParser(tokens).Type();
}

}

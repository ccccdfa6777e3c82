// platform/jetsql/CParser.cpp
// From tokens to the syntax tree: the tokens' reading and the statements.

#include "platform/jetsql/CParser.h"

#include <QLatin1StringView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr int MaxDepth = 200;         // nobody writes this; a stack of 8 MB takes many times of it
constexpr qsizetype MaxNameLength = 64;

struct TypeWord
{
    QLatin1StringView Word;
    FieldType Type;
};

constexpr TypeWord TypeWords[]{
    {"BIT"_L1, FieldType::Boolean}, {"BOOLEAN"_L1, FieldType::Boolean}, {"LOGICAL"_L1, FieldType::Boolean},
    {"LOGICAL1"_L1, FieldType::Boolean}, {"YESNO"_L1, FieldType::Boolean}, {"BYTE"_L1, FieldType::Byte},
    {"INTEGER1"_L1, FieldType::Byte}, {"TINYINT"_L1, FieldType::Byte}, {"SHORT"_L1, FieldType::Integer},
    {"INTEGER2"_L1, FieldType::Integer}, {"SMALLINT"_L1, FieldType::Integer}, {"LONG"_L1, FieldType::Long},
    {"INT"_L1, FieldType::Long}, {"INTEGER"_L1, FieldType::Long}, {"INTEGER4"_L1, FieldType::Long},
    {"COUNTER"_L1, FieldType::Long}, {"AUTOINCREMENT"_L1, FieldType::Long}, {"IDENTITY"_L1, FieldType::Long},
    {"CURRENCY"_L1, FieldType::Currency}, {"MONEY"_L1, FieldType::Currency}, {"SINGLE"_L1, FieldType::Single},
    {"FLOAT4"_L1, FieldType::Single}, {"IEEESINGLE"_L1, FieldType::Single}, {"REAL"_L1, FieldType::Single},
    {"DOUBLE"_L1, FieldType::Double}, {"FLOAT"_L1, FieldType::Double}, {"FLOAT8"_L1, FieldType::Double},
    {"IEEEDOUBLE"_L1, FieldType::Double}, {"NUMBER"_L1, FieldType::Double},
    {"NUMERIC"_L1, FieldType::Double}, {"DATETIME"_L1, FieldType::Date}, {"DATE"_L1, FieldType::Date},
    {"TIME"_L1, FieldType::Date}, {"TIMESTAMP"_L1, FieldType::Date}, {"BINARY"_L1, FieldType::Binary},
    {"VARBINARY"_L1, FieldType::Binary}, {"TEXT"_L1, FieldType::Text}, {"ALPHANUMERIC"_L1, FieldType::Text},
    {"CHAR"_L1, FieldType::Text}, {"CHARACTER"_L1, FieldType::Text}, {"STRING"_L1, FieldType::Text},
    {"VARCHAR"_L1, FieldType::Text}, {"LONGTEXT"_L1, FieldType::Memo}, {"LONGCHAR"_L1, FieldType::Memo},
    {"MEMO"_L1, FieldType::Memo}, {"NOTE"_L1, FieldType::Memo}, {"LONGBINARY"_L1, FieldType::LongBinary},
    {"GENERAL"_L1, FieldType::LongBinary}, {"OLEOBJECT"_L1, FieldType::LongBinary}, {"IMAGE"_L1, FieldType::LongBinary},
    {"GUID"_L1, FieldType::Guid}, {"VALUE"_L1, FieldType::Null}};

}

bool TypeOfWord(QStringView Word, FieldType& Type)
{
    for (const TypeWord& known : TypeWords) {
        if (Word.compare(known.Word, Qt::CaseInsensitive) == 0) {
            Type = known.Type;
            return true;
        }
    }
    return false;
}

CParser::CNesting::CNesting(CParser& Parser) : m_parser(Parser)
{
    if (Parser.m_depth >= MaxDepth)
        Parser.Refuse(3360);
    ++Parser.m_depth;
}

CParser::CParser(const CTokens& Tokens, bool IsForeign) : m_tokens(Tokens), m_isForeign(IsForeign)
{
}

const Token& CParser::Peek(int Ahead) const
{
    return m_tokens[std::min(m_at + Ahead, m_tokens.Count() - 1)];
}

bool CParser::Accept(Keyword Word)
{
    if (!At(Word))
        return false;
    ++m_at;
    return true;
}

bool CParser::Accept(Sign Mark)
{
    if (!At(Mark))
        return false;
    ++m_at;
    return true;
}

void CParser::Expect(Keyword Word, int ErrorNumber)
{
    if (!Accept(Word))
        Refuse(ErrorNumber);
}

void CParser::Expect(Sign Mark, int ErrorNumber)
{
    if (!Accept(Mark))
        Refuse(ErrorNumber);
}

// An operator or the word of a clause is a name only where the statement could not go on with it: "WHERE Order = 1",
// but not "WHERE And x".
bool CParser::CanBeName(int Ahead) const
{
    const Token& token = Peek(Ahead);
    if (token.What == Token::Kind::Name)
        return true;
    if (token.What != Token::Kind::Word)
        return false;
    if (!IsOperatorWord(token.Key))
        return true;
    if (token.Key == Keyword::Select)
        return false;
    const Token& next = Peek(Ahead + 1);
    switch (next.What) {
    case Token::Kind::End: return true;
    case Token::Kind::Sign: return next.Mark != Sign::Open && next.Mark != Sign::Minus && next.Mark != Sign::Plus;
    case Token::Kind::Word: return IsOperatorWord(next.Key) && next.Key != Keyword::Not && next.Key != Keyword::Select && next.Key != Keyword::By;
    default: return false;
    }
}

bool CParser::AtName() const { return CanBeName(); }

QString CParser::Name(int ErrorNumber)
{
    if (!CanBeName())
        Refuse(ErrorNumber);
    return m_tokens[m_at++].Text.toString();
}

// A name that the statement itself gives: it must be one that a field may have.
QString CParser::NewName(int ErrorNumber)
{
    const Token& token = Peek();
    if (token.What != Token::Kind::Word && token.What != Token::Kind::Name)
        Refuse(ErrorNumber);
    const QString name = token.Text.toString();
    const bool isWrong = name.isEmpty() || name.size() > MaxNameLength || name.startsWith(u' ')
        || std::any_of(name.cbegin(), name.cend(), [](QChar unit) { return unit < u' ' || QStringView(u".![]`").contains(unit); });
    if (isWrong)
        throw MakeError(3125, {name}, token.Offset);
    ++m_at;
    return name;
}

void CParser::Refuse(int Number) const
{
    throw MakeError(Number, {}, Peek().Offset);
}

void CParser::RefuseExpression(const QString& Reason, int First) const
{
    throw MakeError(3075, {Reason, m_tokens.Shown(First, std::max(First, m_at))}, Peek().Offset);
}

QueryType CParser::Type()
{
    if (At(Keyword::Procedure))
        return QueryType::Procedure;
    if (At(Keyword::Parameters)) {
        while (!AtEnd())
            ++m_at;
        Accept(Sign::Semicolon);
    }
    return BodyType();
}

// The first word tells; a select is told by what stands in it outside of parentheses.
QueryType CParser::BodyType()
{
    switch (Peek().Key) {
    case Keyword::Transform: return QueryType::Crosstab;
    case Keyword::Insert: return QueryType::Append;
    case Keyword::Update: return QueryType::Update;
    case Keyword::Delete: return QueryType::Delete;
    case Keyword::Create: case Keyword::Alter: case Keyword::Drop: return QueryType::Ddl;
    case Keyword::Execute: return QueryType::Procedure;
    case Keyword::Select: case Keyword::Table: break;
    default:
        if (!At(Sign::Open) && !(CanBeName() && At(Keyword::Union, 1)))
            Refuse(3129);
    }
    int depth = 0;
    for (int ahead = 0; Peek(ahead).What != Token::Kind::End; ++ahead) {
        depth += At(Sign::Open, ahead) ? 1 : At(Sign::Close, ahead) ? -1 : 0;
        const bool isClause = depth == 0 && ahead > 0 && !CanBeName(ahead);
        if (isClause && At(Keyword::Into, ahead))
            return QueryType::MakeTable;
        if (isClause && At(Keyword::Union, ahead))
            return QueryType::Union;
    }
    return QueryType::Select;
}

Tree CParser::Statement()
{
    Tree tree;
    Header(tree);
    tree.Type = BodyType();
    Body(tree);
    Finish();
    return tree;
}

// What a statement says of its parameters. PROCEDURE gives it a name as well, which only a saved query's text may need.
void CParser::Header(Tree& To)
{
    if (Accept(Keyword::Parameters))
        return Parameters(To, 3139);
    if (!Accept(Keyword::Procedure))
        return;
    Name(3140);
    if (!Accept(Sign::Semicolon))
        Parameters(To, 3140);
}

void CParser::Body(Tree& To)
{
    switch (To.Type) {
    case QueryType::Append: return Insert(To);
    case QueryType::Update: return Update(To);
    case QueryType::Delete: return Delete(To);
    case QueryType::Select:
    case QueryType::MakeTable:
    case QueryType::Union:
        To.Source = ReadQuery();
        return;
    case QueryType::Crosstab:
        To.Source = ReadCrosstab();
        return;
    case QueryType::Procedure: return Execute(To);
    default: Refuse(3219);
    }
}

void CParser::Finish()
{
    const bool isClosed = Accept(Sign::Semicolon);
    if (At(Sign::Close) && !isClosed)
        RefuseExpression(u"構文エラーです: 括弧が余分です"_s, std::max(0, m_at - 3));
    if (Peek().What != Token::Kind::End)
        Refuse(isClosed ? 3142 : 3137);
}

void CParser::Parameters(Tree& To, int ErrorNumber)
{
    do {
        DeclaredParameter parameter;
        parameter.Name = Name(ErrorNumber);
        parameter.Type = ParameterType(ErrorNumber);
        To.Declared.push_back(parameter);
    } while (Accept(Sign::Comma));
    Expect(Sign::Semicolon, ErrorNumber);
}

FieldType CParser::ParameterType(int ErrorNumber)
{
    FieldType type = FieldType::Null;
    if (Peek().What != Token::Kind::Word || !TypeOfWord(Peek().Text, type))
        Refuse(ErrorNumber);
    ++m_at;
    if (Accept(Sign::Open)) {
        if (Peek().What != Token::Kind::Number && Peek().What != Token::Kind::Literal)
            Refuse(ErrorNumber);
        ++m_at;
        Expect(Sign::Close, ErrorNumber);
    }
    return type;
}

void CParser::Insert(Tree& To)
{
    ++m_at;
    Expect(Keyword::Into, 3134);
    To.TargetToken = m_at;
    To.Target = Name(3134);
    RefuseOtherFile();
    if (At(Sign::Open) && !At(Keyword::Select, 1))
        InsertFields(To);
    if (Accept(Keyword::Values))
        return InsertValues(To);
    if (!At(Keyword::Select) && !At(Sign::Open) && !At(Keyword::Table))
        Refuse(3134);
    To.Source = ReadQuery();
}

void CParser::InsertFields(Tree& To)
{
    ++m_at;
    do {
        if (CanBeName() && (At(Sign::Point, 1) || At(Sign::Exclamation, 1)))
            m_at += 2;   // Message.ID: the table is known
        To.TargetFieldTokens.push_back(m_at);
        To.TargetFields.push_back(Name(3134));
    } while (Accept(Sign::Comma));
    Expect(Sign::Close, 3134);
}

void CParser::InsertValues(Tree& To)
{
    Expect(Sign::Open, 3134);
    do {
        m_expressionBegin = m_at;
        To.Values.push_back(Expression());
    } while (Accept(Sign::Comma));
    if (!At(Sign::Close))
        AtEnd() ? Refuse(3134) : RefuseExpression(u"構文エラーです: 演算子がありません"_s, m_expressionBegin);
    ++m_at;
}

void CParser::Update(Tree& To)
{
    ++m_at;
    if (At(Keyword::DistinctRow) && !At(Keyword::Set, 1))
        ++m_at;   // rows are changed, and each of them is one
    To.TargetToken = m_at;
    if (!CanBeName() && !At(Sign::Open))
        Refuse(3144);
    To.From = From();
    Expect(Keyword::Set, 3144);
    do
        Assign(To);
    while (Accept(Sign::Comma));
    if (Accept(Keyword::Where))
        To.Where = Clause(3145);
    else if (At(Keyword::From))
        Refuse(3144);   // the tables stand before SET
    else if (!AtEnd())
        RefuseExpression(u"構文エラーです: 演算子がありません"_s, m_expressionBegin);
}

void CParser::Assign(Tree& To)
{
    Assignment assignment;
    m_expressionBegin = m_at;
    if (!CanBeName())
        Refuse(3144);
    assignment.Target = NameOrCall();
    if (assignment.Target->What != Expr::Kind::Name)
        Refuse(3144);
    Expect(Sign::Equal, 3144);
    if (AtEnd())
        Refuse(3144);
    m_expressionBegin = m_at;
    assignment.Value = Expression();
    To.Assignments.push_back(std::move(assignment));
}

void CParser::Delete(Tree& To)
{
    ++m_at;
    if (At(Keyword::DistinctRow))
        ++m_at;
    if (At(Keyword::Top) && Peek(1).What != Token::Kind::Sign)
        Refuse(3318);
    DeleteTarget(To);
    Expect(Keyword::From, 3130);
    To.From = From();
    if (Accept(Keyword::Where))
        To.Where = Clause(3145);
    else if (!AtEnd())
        Refuse(3131);
}

// Nothing, *, or the table whose rows go: t.*, t.ID
void CParser::DeleteTarget(Tree& To)
{
    To.TargetToken = m_at;
    if (Accept(Sign::Star) || At(Keyword::From))
        return;
    To.Target = Name(3130);
    if (!Accept(Sign::Point) && !Accept(Sign::Exclamation))
        Refuse(3130);
    if (!Accept(Sign::Star))
        Name(3130);
}

// EXECUTE query [argument, …]
void CParser::Execute(Tree& To)
{
    ++m_at;
    To.TargetToken = m_at;
    To.Target = Name(3140);
    if (AtEnd())
        return;
    do {
        m_expressionBegin = m_at;
        To.Values.push_back(Clause(3140));
    } while (Accept(Sign::Comma));
}

}

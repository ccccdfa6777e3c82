// platform/jetsql/CDefinitionParser.cpp
// From tokens to a definition.

#include "platform/jetsql/CDefinitionParser.h"

#include "platform/jetsql/CParser.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr int ConstraintSyntax = 3289;
constexpr int CreateTableSyntax = 3290;
constexpr int CreateIndexSyntax = 3291;
constexpr int FieldSyntax = 3292;
constexpr int AlterTableSyntax = 3293;
constexpr int DropIndexSyntax = 3294;
constexpr int DropTableSyntax = 3295;

bool IsCounterWord(QStringView Word)
{
    return Word.compare("COUNTER"_L1, Qt::CaseInsensitive) == 0 || Word.compare("AUTOINCREMENT"_L1, Qt::CaseInsensitive) == 0
        || Word.compare("IDENTITY"_L1, Qt::CaseInsensitive) == 0;
}

}

const Token& CDefinitionParser::Peek(int Ahead) const
{
    return m_tokens[std::min(m_at + Ahead, m_tokens.Count() - 1)];
}

bool CDefinitionParser::AtWord(QLatin1StringView Word, int Ahead) const
{
    const Token& token = Peek(Ahead);
    return token.What == Token::Kind::Word && token.Text.compare(Word, Qt::CaseInsensitive) == 0;
}

bool CDefinitionParser::AtName(int Ahead) const
{
    const Token::Kind what = Peek(Ahead).What;
    return what == Token::Kind::Word || what == Token::Kind::Name;
}

bool CDefinitionParser::Accept(Sign Mark)
{
    const bool isThere = At(Mark);
    m_at += isThere ? 1 : 0;
    return isThere;
}

bool CDefinitionParser::AcceptWord(QLatin1StringView Word)
{
    const bool isThere = AtWord(Word);
    m_at += isThere ? 1 : 0;
    return isThere;
}

void CDefinitionParser::Expect(Sign Mark, int ErrorNumber)
{
    if (!Accept(Mark))
        Refuse(ErrorNumber);
}

void CDefinitionParser::ExpectWord(QLatin1StringView Word, int ErrorNumber)
{
    if (!AcceptWord(Word))
        Refuse(ErrorNumber);
}

PlacedName CDefinitionParser::Name(int ErrorNumber)
{
    if (!AtName())
        Refuse(ErrorNumber);
    const Token& token = m_tokens[m_at++];
    return {token.Text.toString(), token.Offset};
}

void CDefinitionParser::Refuse(int Number) const { throw MakeError(Number, {}, Peek().Offset); }

Definition CDefinitionParser::Statement()
{
    Definition definition;
    if (AcceptWord("CREATE"_L1))
        Create(definition);
    else if (AcceptWord("ALTER"_L1))
        Alter(definition);
    else if (AcceptWord("DROP"_L1))
        Drop(definition);
    else
        Refuse(3129);
    return definition;
}

void CDefinitionParser::Finish(int ErrorNumber)
{
    const bool isClosed = Accept(Sign::Semicolon);
    if (Peek().What != Token::Kind::End)
        Refuse(isClosed ? 3142 : ErrorNumber);
}

void CDefinitionParser::Create(Definition& To)
{
    if (AcceptWord("TABLE"_L1))
        return CreateTable(To);
    const bool isUnique = AcceptWord("UNIQUE"_L1);
    if (AcceptWord("INDEX"_L1))
        return CreateIndex(To, isUnique);
    Refuse(isUnique ? CreateIndexSyntax : 3129);
}

void CDefinitionParser::CreateTable(Definition& To)
{
    To.What = Definition::Kind::CreateTable;
    To.Table = Name(CreateTableSyntax);
    Expect(Sign::Open, CreateTableSyntax);
    do
        AtTableConstraint() ? TableConstraint(To) : Field(To);
    while (Accept(Sign::Comma));
    Expect(Sign::Close, CreateTableSyntax);
    Finish(CreateTableSyntax);
}

void CDefinitionParser::CreateIndex(Definition& To, bool IsUnique)
{
    To.What = Definition::Kind::CreateIndex;
    KeyDefinition key;
    key.What = IsUnique ? KeyDefinition::Kind::Unique : KeyDefinition::Kind::Index;
    key.Name = Name(CreateIndexSyntax);
    ExpectWord("ON"_L1, CreateIndexSyntax);
    To.Table = Name(CreateIndexSyntax);
    key.Fields = FieldList(CreateIndexSyntax, true);
    if (AcceptWord("WITH"_L1))
        IndexOption(key);
    To.Keys.push_back(std::move(key));
    Finish(CreateIndexSyntax);
}

void CDefinitionParser::IndexOption(KeyDefinition& To)
{
    if (AcceptWord("PRIMARY"_L1)) {
        To.What = KeyDefinition::Kind::Primary;
        return;
    }
    if (AcceptWord("DISALLOW"_L1))
        To.RefusesNull = true;
    else if (AcceptWord("IGNORE"_L1))
        To.IgnoresNull = true;
    else
        Refuse(CreateIndexSyntax);
    ExpectWord("NULL"_L1, CreateIndexSyntax);
}

void CDefinitionParser::Alter(Definition& To)
{
    if (!AcceptWord("TABLE"_L1))
        Refuse(3129);
    To.Table = Name(AlterTableSyntax);
    if (AcceptWord("ADD"_L1)) {
        if (AtTableConstraint()) {
            To.What = Definition::Kind::AddConstraint;
            TableConstraint(To);
        } else {
            To.What = Definition::Kind::AddField;
            m_at += AtWord("COLUMN"_L1) && AtName(1) && AtName(2) ? 1 : 0;
            Field(To);
        }
    } else {
        ExpectWord("DROP"_L1, AlterTableSyntax);
        const bool isConstraint = AtWord("CONSTRAINT"_L1) && AtName(1);
        To.What = isConstraint ? Definition::Kind::DropConstraint : Definition::Kind::DropField;
        m_at += isConstraint || (AtWord("COLUMN"_L1) && AtName(1)) ? 1 : 0;
        To.Name = Name(AlterTableSyntax);
    }
    Finish(AlterTableSyntax);
}

void CDefinitionParser::Drop(Definition& To)
{
    if (AcceptWord("TABLE"_L1)) {
        To.What = Definition::Kind::DropTable;
        To.Table = Name(DropTableSyntax);
        return Finish(DropTableSyntax);
    }
    if (!AcceptWord("INDEX"_L1))
        Refuse(3129);
    To.What = Definition::Kind::DropIndex;
    To.Name = Name(DropIndexSyntax);
    ExpectWord("ON"_L1, DropIndexSyntax);
    To.Table = Name(DropIndexSyntax);
    Finish(DropIndexSyntax);
}

void CDefinitionParser::Field(Definition& To)
{
    FieldDefinition field;
    field.Offset = Peek().Offset;
    field.Name = Name(FieldSyntax).Text;
    Type(field);
    while (FieldConstraint(To, field)) {
    }
    To.Fields.push_back(std::move(field));
}

void CDefinitionParser::Type(FieldDefinition& To)
{
    const Token& token = Peek();
    const bool isType = token.What == Token::Kind::Word && TypeOfWord(token.Text, To.Type);
    if (!isType || To.Type == FieldType::Null)
        Refuse(FieldSyntax);
    To.AutoIncrement = IsCounterWord(token.Text);
    ++m_at;
    if (Accept(Sign::Open))
        Size(To);
}

int CDefinitionParser::SizeNumber()
{
    const Token& token = Peek();
    double size = 0;
    if (token.What == Token::Kind::Number)
        size = token.Text.toString().toDouble();
    else if (token.What == Token::Kind::Literal && IsNumber(token.Type))
        size = m_tokens.LiteralValue(token.Literal).ToDouble();
    if (size < 1)
        Refuse(FieldSyntax);
    ++m_at;
    return int(std::min<double>(size, std::numeric_limits<int>::max()));
}

void CDefinitionParser::Size(FieldDefinition& To)
{
    const int size = SizeNumber();
    if (IsNumber(To.Type) && Accept(Sign::Comma))
        SizeNumber();
    Expect(Sign::Close, FieldSyntax);
    if (To.Type == FieldType::Text || To.Type == FieldType::Binary)
        To.Size = size;
}

bool CDefinitionParser::FieldConstraint(Definition& To, FieldDefinition& Of)
{
    const bool isNamed = AtWord("CONSTRAINT"_L1);
    KeyDefinition key;
    if (isNamed)
        key.Name = ConstraintName();
    key.Fields = {{{Of.Name, Of.Offset}, false}};
    if (AcceptWord("NOT"_L1)) {
        ExpectWord("NULL"_L1, isNamed ? ConstraintSyntax : FieldSyntax);
        Of.Required = true;
        if (!isNamed)
            return true;
        key.What = KeyDefinition::Kind::NotNull;
    } else if (AcceptWord("PRIMARY"_L1)) {
        ExpectWord("KEY"_L1, ConstraintSyntax);
        key.What = KeyDefinition::Kind::Primary;
    } else if (AcceptWord("UNIQUE"_L1)) {
        key.What = KeyDefinition::Kind::Unique;
    } else if (AcceptWord("REFERENCES"_L1)) {
        Reference(key);
    } else if (isNamed) {
        Refuse(ConstraintSyntax);
    } else {
        return false;
    }
    To.Keys.push_back(std::move(key));
    return true;
}

bool CDefinitionParser::AtTableConstraint() const
{
    const bool isKey = AtWord("KEY"_L1, 1) && (AtWord("PRIMARY"_L1) || AtWord("FOREIGN"_L1));
    return AtWord("CONSTRAINT"_L1) || isKey || (AtWord("UNIQUE"_L1) && Peek(1).Mark == Sign::Open);
}

void CDefinitionParser::TableConstraint(Definition& To)
{
    KeyDefinition key;
    if (AtWord("CONSTRAINT"_L1))
        key.Name = ConstraintName();
    if (AcceptWord("UNIQUE"_L1)) {
        key.What = KeyDefinition::Kind::Unique;
    } else if (AcceptWord("NOT"_L1)) {
        ExpectWord("NULL"_L1, ConstraintSyntax);
        key.What = KeyDefinition::Kind::NotNull;
    } else {
        key.What = AtWord("FOREIGN"_L1) ? KeyDefinition::Kind::Foreign : KeyDefinition::Kind::Primary;
        if (!AtWord("FOREIGN"_L1) && !AtWord("PRIMARY"_L1))
            Refuse(ConstraintSyntax);
        ++m_at;
        ExpectWord("KEY"_L1, ConstraintSyntax);
    }
    key.Fields = FieldList(ConstraintSyntax);
    if (key.What == KeyDefinition::Kind::Foreign) {
        ExpectWord("REFERENCES"_L1, ConstraintSyntax);
        Reference(key);
    }
    To.Keys.push_back(std::move(key));
}

void CDefinitionParser::Reference(KeyDefinition& To)
{
    To.What = KeyDefinition::Kind::Foreign;
    To.ForeignTable = Name(ConstraintSyntax);
    if (At(Sign::Open))
        To.ForeignFields = FieldList(ConstraintSyntax);
}

PlacedName CDefinitionParser::ConstraintName()
{
    ++m_at;
    return Name(ConstraintSyntax);
}

std::vector<KeyPart> CDefinitionParser::FieldList(int ErrorNumber, bool WithOrder)
{
    std::vector<KeyPart> fields;
    Expect(Sign::Open, ErrorNumber);
    do {
        KeyPart part{Name(ErrorNumber), false};
        if (WithOrder && !AcceptWord("ASC"_L1))
            part.IsDescending = AcceptWord("DESC"_L1);
        fields.push_back(std::move(part));
    } while (Accept(Sign::Comma));
    Expect(Sign::Close, ErrorNumber);
    return fields;
}

}

// platform/jetsql/CDefinitionParser.h
// From tokens to a definition: CREATE TABLE, ALTER TABLE, DROP TABLE, CREATE INDEX, DROP INDEX.

#ifndef JETSQL_CDEFINITIONPARSER_H
#define JETSQL_CDEFINITIONPARSER_H

#include "platform/jetsql/CTokens.h"
#include "platform/jetsql/Definition.h"

#include <QLatin1StringView>

namespace jetsql {

/// Reads one statement that begins with CREATE, ALTER or DROP.
///
/// Any word is a name where a name is wanted. A size behind a number type, as other dialects write it, is read and means
/// nothing. Throws Error with the place: 3289 constraint, 3290 CREATE TABLE, 3291 CREATE INDEX, 3292 field, 3293 ALTER
/// TABLE, 3294 DROP INDEX, 3295 DROP TABLE, 3129 for anything else that is created or dropped, 3142 text after the end.
class CDefinitionParser
{
public:
    explicit CDefinitionParser(const CTokens& Tokens) : m_tokens(Tokens) {}

    Definition Statement();

private:
    const Token& Peek(int Ahead = 0) const;
    bool At(Sign Mark) const { return Peek().Mark == Mark; }
    bool AtWord(QLatin1StringView Word, int Ahead = 0) const;
    bool AtName(int Ahead = 0) const;
    bool Accept(Sign Mark);
    bool AcceptWord(QLatin1StringView Word);
    void Expect(Sign Mark, int ErrorNumber);
    void ExpectWord(QLatin1StringView Word, int ErrorNumber);
    PlacedName Name(int ErrorNumber);
    [[noreturn]] void Refuse(int Number) const;

    void Create(Definition& To);
    void CreateTable(Definition& To);
    void CreateIndex(Definition& To, bool IsUnique);
    void IndexOption(KeyDefinition& To);
    void Alter(Definition& To);
    void Drop(Definition& To);
    void Finish(int ErrorNumber);

    void Field(Definition& To);
    void Type(FieldDefinition& To);
    void Size(FieldDefinition& To);
    int SizeNumber();
    bool FieldConstraint(Definition& To, FieldDefinition& Of);
    bool AtTableConstraint() const;
    void TableConstraint(Definition& To);
    void Reference(KeyDefinition& To);
    PlacedName ConstraintName();
    std::vector<KeyPart> FieldList(int ErrorNumber, bool WithOrder = false);

    const CTokens& m_tokens;
    int m_at = 0;
};

}

#endif

// platform/jetsql/TypeRules.h
// Which type comes out where two types meet.

#ifndef JETSQL_TYPERULES_H
#define JETSQL_TYPERULES_H

#include "platform/jetsql/Tree.h"

namespace jetsql {

/// A number or a date: what compares and calculates as a number.
constexpr bool IsNumeric(FieldType Type) { return IsNumber(Type) || Type == FieldType::Date; }

/// The type of Left op Right for + - *; Null where it shows only when the statement runs.
FieldType ArithmeticType(Op Operator, FieldType Left, FieldType Right);

/// The type that holds values of both: the wider number, Text where they are of different kinds. Null yields.
FieldType CommonType(FieldType Left, FieldType Right);

/// A column of a table or query, also through an alias.
const Column* FieldOf(const Expr& Tested);

/// A constant of the statement, also with a sign before it. Null is none.
bool IsLiteral(const Expr& Tested);

/// What a constant is worth; Null for what is none. The literals are those of Tokens. Error 13 for a text after a sign.
Value ConstantOf(const Expr& Given, const CTokens& Tokens);

/// The word Null.
bool IsNullWord(const Expr& Tested);

/// A name that is to be filled when the statement runs.
bool IsParameter(const Expr& Tested);

/// Whether comparing the two must be refused: a field of text against a number, or the reverse.
bool TypesClash(const Expr& Left, const Expr& Right);

/// Whether both always give the same value: same columns, same constants, same operations.
bool SameExpression(const Expr& Left, const Expr& Right);

}

#endif

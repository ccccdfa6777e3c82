// platform/jetsql/Keyword.h
// The words of the dialect.

#ifndef JETSQL_KEYWORD_H
#define JETSQL_KEYWORD_H

#include <QStringView>

namespace jetsql {

/// In alphabetical order, as the table of their texts is.
enum class Keyword : quint8 {
    None,
    All, Alter, And, Any, As, Asc, Between, By, Create, Delete, Desc, Distinct, DistinctRow, Drop, Eqv, Execute, Exists,
    False, From, Group, Having, Imp, In, Inner, Insert, Into, Is, Join, Left, Like, Mod, No, Not, Null, Off, On, Option,
    Or, Order, Outer, OwnerAccess, Parameters, Percent, Pivot, Procedure, Right, Select, Set, Some, Table, Top,
    Transform, True, Union, Update, Values, Where, With, Xor, Yes
};

/// None for a word that is no keyword; letter case does not count.
Keyword KeywordOf(QStringView Word);

/// A word that ends an operand: an operator or the begin of the next clause. As a name it stands only where nothing
/// else could.
bool IsOperatorWord(Keyword Word);

}

#endif

// platform/jetsql/Error.h
// What the database engine throws when it refuses something, and the Japanese texts of its error numbers.

#ifndef JETSQL_ERROR_H
#define JETSQL_ERROR_H

#include <QString>
#include <QStringList>

namespace jetsql {

/// A refusal of the engine. Thrown by value; the one exception type of the database layer.
struct Error
{
    int Number = 0;          ///< the engine's error number, for instance 3061
    QString Description;     ///< one Japanese sentence for the reader
    QString Source;          ///< "Tavora.Engine", or who else noticed it
    int Offset = -1;         ///< place in the statement in UTF-16 units, -1 where none is known
};

/// The Japanese text of error Number with its blanks filled from Args in order; missing ones stay empty.
/// A number without a text of its own gets a general sentence that names the number.
QString ErrorText(int Number, const QStringList& Args = {});

/// The error Number with its text, from the engine itself.
Error MakeError(int Number, const QStringList& Args = {}, int Offset = -1);

}

#endif

// fuzz/Statements.h
// The statements of an input: a bare one, or a table of statements with their results as in tests/data/sql.

#ifndef FUZZ_STATEMENTS_H
#define FUZZ_STATEMENTS_H

#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

struct CFuzzStatement
{
    QString Sql;
    QString Name = {}; ///< to save it as a query; empty: it is only run
};

/// Blocks of statements that belong together. Text without a line that begins with "> " or "~ " is one statement.
inline std::vector<std::vector<CFuzzStatement>> ReadStatements(const QString& Text)
{
    const QStringList lines = Text.split(u'\n') << QString();
    std::vector<std::vector<CFuzzStatement>> blocks(1);
    QString name;
    bool isContinued = false;
    bool hasMarks = false;
    for (const QString& line : lines) {
        const bool isQuery = line.startsWith(QStringLiteral("> "));
        if (isQuery && isContinued)
            blocks.back().back().Sql += u'\n' + line.mid(2);
        else if (isQuery || line.startsWith(QStringLiteral("~ ")))
            blocks.back().push_back({line.mid(2), std::exchange(name, {})});
        else if (line.startsWith(QStringLiteral("@ ")))
            name = line.mid(2);
        else if (line.isEmpty() && !blocks.back().empty())
            blocks.emplace_back();
        isContinued = isQuery;
        hasMarks = hasMarks || !blocks.front().empty();
    }
    if (!hasMarks)
        blocks.front().push_back({Text});
    return blocks;
}

#endif // FUZZ_STATEMENTS_H

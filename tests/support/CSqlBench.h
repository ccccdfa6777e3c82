// tests/support/CSqlBench.h
// Runs statements of the engine's dialect on a SQLite database in memory, without the database objects.

#ifndef SUPPORT_CSQLBENCH_H
#define SUPPORT_CSQLBENCH_H

#include "platform/jetsql/Compile.h"

#include <QMap>
#include <QStringList>

#include <map>
#include <memory>

struct sqlite3;

/// A database with the tables BBS, Message, Mark and Version and a few rows; also the catalog of these.
class CSqlBench : public jetsql::Catalog
{
public:
    struct Outcome
    {
        int ErrorNumber = 0;        ///< 0: it ran
        int ErrorOffset = -1;
        QString ErrorText;
        QStringList Columns;        ///< "Name Type"
        QStringList Rows;           ///< values parted by "|"
        int Affected = 0;           ///< rows changed
        QByteArray Sql;             ///< what SQLite was given
        std::shared_ptr<const jetsql::Statement> Compiled;
    };

    CSqlBench();
    ~CSqlBench() override;

    /// Compiles and runs Sql; parameters are filled by name, missing ones are error 3061.
    Outcome Run(const QString& Sql, const QMap<QString, jetsql::Value>& Parameters = {});

    /// Runs SQLite's own SQL; false where it fails.
    bool Raw(const QByteArray& Sql);
    /// First column of EXPLAIN QUERY PLAN's details, lines joined.
    QString Plan(const QString& Sql);
    void AddQuery(const QString& Name, const QString& Sql) { m_queries[Name.toLower()] = Sql; }

    const jetsql::TableInfo* FindTable(QStringView Name) const override;
    const QString* FindQuery(QStringView Name) const override;

private:
    void AddTable(jetsql::TableInfo Table);
    void MakeTable(const jetsql::Statement& Made);
    void Execute(const jetsql::Shape& Taken, const QMap<QString, jetsql::Value>& Parameters, Outcome& To);

    struct Closer
    {
        void operator()(sqlite3* Connection) const;
    };
    std::unique_ptr<sqlite3, Closer> m_connection;
    std::vector<jetsql::TableInfo> m_tables;
    std::map<QString, QString> m_queries;
};

#endif

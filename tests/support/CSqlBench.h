// tests/support/CSqlBench.h
// Runs statements of the engine's dialect on a small database and tells all that came of them.

#ifndef SUPPORT_CSQLBENCH_H
#define SUPPORT_CSQLBENCH_H

#include "platform/dao/Database.h"

#include <QMap>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// A database with the tables BBS, Message, Mark, Version and Kinds, made when the first statement runs; also the
/// catalog of these.
class CSqlBench : public jetsql::Catalog
{
public:
    struct Outcome
    {
        int ErrorNumber = 0; ///< 0: it ran
        int ErrorOffset = -1;
        QString ErrorText;
        QStringList Parameters; ///< "Name Type", in the engine's number
        QStringList Columns;    ///< "Name Type"; empty for a statement that gives no rows
        QStringList Rows;       ///< values parted by "|"
        int Affected = 0;       ///< rows changed
    };

    CSqlBench();
    ~CSqlBench() override;

    /// Runs Sql; parameters are filled by name, missing ones are error 3061.
    Outcome Run(const QString& Sql, const QMap<QString, dao::Value>& Parameters = {});

    /// Runs SQLite's own SQL; empty or its message.
    QString Raw(const QString& Sql);
    /// How SQLite goes about what the statement is written as.
    QString Plan(const QString& Sql);
    /// Saves a query as another program may have left it, whether it can run or not.
    void AddQuery(const QString& Name, const QString& Sql);

    const jetsql::TableInfo* FindTable(QStringView Name) const override;
    const QString* FindQuery(QStringView) const override { return nullptr; }

private:
    dao::Database& Db();
    void MakeTables(const QString& FileName) const;
    void AddTable(jetsql::TableInfo Table) { m_tables.push_back(std::move(Table)); }

    QTemporaryDir m_folder;
    std::vector<jetsql::TableInfo> m_tables;
    std::unique_ptr<dao::Database> m_db;
};

#endif

// tests/store/CStoreFixture.h
// A folder with a message database, a user who follows a script, and the way the program opens it.

#ifndef STORE_CSTOREFIXTURE_H
#define STORE_CSTOREFIXTURE_H

#include "app/Application.h"
#include "store/Store.h"
#include "tests/support/CRawDatabase.h"
#include "tests/support/CScriptedDesktop.h"
#include "tests/support/Files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

struct CStoreFixture
{
    QTemporaryDir Folder;
    QString File = Folder.filePath(QStringLiteral("log.mdb"));
    CScriptedDesktop Desk;
    Application App{Desk, Folder.path(), QStringLiteral("Tavora")};

    std::unique_ptr<dao::Database> Open(const mdlStore::JobWindow& Jobs = {})
    {
        return mdlStore::OpenLogDatabase(File, App, Jobs);
    }
    QStringList Files() const { return QDir(Folder.path()).entryList(QDir::Files, QDir::Name); }
    QByteArray Contents(const QString& Name = QStringLiteral("log.mdb")) const
    {
        return mdlFiles::Read(Folder.filePath(Name));
    }
    void Write(const QByteArray& Bytes, const QString& Name = QStringLiteral("log.mdb")) const
    {
        mdlFiles::Write(Folder.filePath(Name), Bytes);
    }
    /// Runs statements behind the program's back; empty or SQLite's message.
    QString Run(const QString& Sql, const QString& Name = QStringLiteral("log.mdb")) const
    {
        return CRawDatabase(Folder.filePath(Name)).Run(Sql);
    }
    QStringList Rows(const QString& Sql, const QString& Name = QStringLiteral("log.mdb")) const
    {
        return CRawDatabase(Folder.filePath(Name)).Rows(Sql);
    }
    /// Fills table Message with Count messages, long ones among them, and leaves holes behind.
    QString AddMessages(int Count, const QString& Name = QStringLiteral("log.mdb")) const
    {
        return Run(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
                                  "INSERT INTO Message SELECT 3 + i % 2, i, -(i % 3 = 0), '題名' || i, '', '', '名前', "
                                  "37000.5 + i, i / 2, printf('%.*c', i * 37 % 6000, 'x') || '本文' || i, 1, i % 5 "
                                  "FROM n; DELETE FROM Message WHERE ID % 7 = 0")
                       .arg(Count),
                   Name);
    }
};

#endif

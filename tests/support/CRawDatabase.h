// tests/support/CRawDatabase.h
// A database file as any other SQLite program sees it.

#ifndef SUPPORT_CRAWDATABASE_H
#define SUPPORT_CRAWDATABASE_H

#include <QString>
#include <QStringList>

#include <memory>

struct sqlite3;

/// A second connection straight through SQLite's own interface, so that a test reads what is in the file and not what
/// the layer under test says about it. Makes the file when there is none.
class CRawDatabase
{
public:
    explicit CRawDatabase(const QString& FileName);

    /// Runs statements; empty when that went well, otherwise SQLite's message.
    QString Run(const QString& Sql);
    /// One text for each row, its values joined by "|"; Null is "NULL". A statement that fails is one row "ERROR …".
    QStringList Rows(const QString& Sql);

private:
    struct Close
    {
        void operator()(sqlite3* Handle) const;
    };
    std::unique_ptr<sqlite3, Close> m_handle;
};

#endif

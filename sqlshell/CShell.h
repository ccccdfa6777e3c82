// sqlshell/CShell.h
// Runs statements and commands one after the other.

#ifndef SQLSHELL_CSHELL_H
#define SQLSHELL_CSHELL_H

#include "sqlshell/Arguments.h"
#include "sqlshell/COutput.h"
#include "sqlshell/CSplitter.h"

#include "platform/dao/Database.h"

#include <memory>

namespace sqlshell
{

/// One database and what the user does with it. A refused statement is told and the next one runs; only COutputLost
/// leaves Run.
class CShell
{
public:
    /// IsStopped is asked every few milliseconds while a statement works; true ends it with error 3059.
    CShell(const COptions& Options, COutput& Output, COutput::Stop IsStopped);
    ~CShell();

    /// Opens or makes the file. Types alone need none: with --type-only it is opened where a name has to be looked up.
    /// False, and told, where that is not possible.
    bool Open();
    void Run(const CPiece& Piece);
    /// Closes the file; an open transaction is rolled back, which is told.
    void Close();

    bool HasRefused() const { return m_hasRefused; }
    bool IsQuitting() const { return m_isQuitting; }

private:
    dao::Database& Database();
    void Guarded(const CPiece& Piece, const std::function<void()>& Work);
    void Refuse(const dao::Error& Error, const CPiece* Piece, const QStringList& Missing = {});
    void RunStatement(const CPiece& Piece);
    void RunQuery(dao::QueryDef& Query);
    void TellType(const QString& Sql);
    std::unique_ptr<dao::QueryDef> FindQuery(const QString& Sql);

    void RunCommand(const CPiece& Piece);
    void RequireChanging() const;
    void Tables();
    void Schema(const QString& Name);
    void Queries();
    void Save(const QString& NameAndSql);
    void SaveQuery(const QString& Name, const QString& Sql);
    void Delete(const QString& Name);
    void Help();
    void Begin();
    void Commit();
    void Rollback();

    struct CCommand;
    static const std::vector<CCommand>& Commands();

    const COptions& m_options;
    COutput& m_output;
    COutput::Stop m_isStopped;
    std::unique_ptr<dao::Database> m_database;
    QStringList m_missing; // parameters without a value in the running statement
    QString m_saveAs;      // name under which the next statement is saved instead of run
    int m_commandSize = 0; // UTF-16 units of the running command
    bool m_hasRefused = false;
    bool m_isQuitting = false;
};

} // namespace sqlshell

#endif

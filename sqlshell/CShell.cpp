// sqlshell/CShell.cpp
// Statements: compile, fill, run, tell.

#include "sqlshell/CShell.h"

#include "sqlshell/Parameters.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace sqlshell
{

namespace
{

/// Longest text that can be the name of a saved query: 64 characters in brackets.
constexpr qsizetype MaxNameSize = 66;

bool IsBracketed(const QString& Sql) { return Sql.startsWith(u'[') && Sql.endsWith(u']'); }

/// Whether this may be a name in place of a statement.
bool IsName(const QString& Sql)
{
    const bool isWord = std::none_of(Sql.begin(), Sql.end(), [](QChar unit) { return unit.isSpace(); });
    return Sql.size() <= MaxNameSize && (isWord || IsBracketed(Sql));
}

QString Decoded(const CPiece& Piece)
{
    if (Piece.IsTooLong)
        throw jetsql::MakeError(3360);
    if (Piece.Text.isValidUtf8())
        return QString::fromUtf8(Piece.Text);
    dao::Error error = jetsql::MakeError(3075, {u"文字コードが UTF-8 ではありません"_s, u"…"_s});
    error.Description = u"文字コードが UTF-8 ではないため、この文は実行しません。"_s;
    throw error;
}

} // namespace

CShell::CShell(const COptions& Options, COutput& Output, COutput::Stop IsStopped)
    : m_options(Options)
    , m_output(Output)
    , m_isStopped(std::move(IsStopped))
{}

CShell::~CShell() = default;

dao::Database& CShell::Database()
{
    if (!m_database) {
        m_database = m_options.Create ? dao::Database::Create(m_options.File) : dao::Database::Open(m_options.File);
        if (m_isStopped)
            m_database->SetProgress([this] { return !m_isStopped(); });
    }
    return *m_database;
}

bool CShell::Open()
{
    try {
        if (!m_options.TypeOnly || m_options.Create)
            Database();
        return true;
    } catch (const dao::Error& error) {
        Refuse(error, nullptr);
        return false;
    }
}

void CShell::Close()
{
    if (m_database && m_database->InTransaction())
        Refuse({3034, u".commit がないまま終わったため、.begin からの変更を取り消しました。"_s, {}}, nullptr);
    m_database.reset();
}

void CShell::Refuse(const dao::Error& Error, const CPiece* Piece, const QStringList& Missing)
{
    m_hasRefused = true;
    CRefusal refusal{Error, {}, 1, Missing};
    if (Piece) {
        refusal.Line = Piece->Line;
        refusal.Statement = QString::fromUtf8(Piece->Text);
    }
    m_output.Refused(refusal);
}

void CShell::Guarded(const CPiece& Piece, const std::function<void()>& Work)
{
    m_missing.clear();
    try {
        Work();
    } catch (const dao::Error& error) {
        Refuse(error, &Piece, error.Number == 3061 ? m_missing : QStringList());
    }
}

void CShell::Run(const CPiece& Piece)
{
    Guarded(Piece, [&] { Piece.IsCommand ? RunCommand(Piece) : RunStatement(Piece); });
}

void CShell::RunStatement(const CPiece& Piece)
{
    const QString sql = Decoded(Piece);
    if (!m_saveAs.isEmpty())
        return SaveQuery(std::exchange(m_saveAs, QString()), sql);
    if (m_options.TypeOnly)
        return TellType(sql);
    const auto query = FindQuery(sql);
    RunQuery(query ? *query : *Database().CreateQueryDef(QString(), sql));
}

std::unique_ptr<dao::QueryDef> CShell::FindQuery(const QString& Sql)
{
    if (!IsName(Sql))
        return nullptr;
    return Database().FindQueryDef(IsBracketed(Sql) ? Sql.mid(1, Sql.size() - 2) : Sql);
}

void CShell::RunQuery(dao::QueryDef& Query)
{
    m_missing = mdlParameters::Fill(Query, m_options.Parameters);
    const dao::QueryType type = Query.Type();
    if (jetsql::ReturnsRows(type)) {
        if (!m_output.Rows(type, *Query.OpenRecordset()))
            m_hasRefused = true;
        return;
    }
    Query.Execute(m_options.SkipsRows ? dao::ExecuteOption::None : dao::ExecuteOption::FailOnError);
    m_output.Affected(type, Query.RecordsAffected());
}

// The name of a table or saved query in place of a statement needs the file; nothing else does.
void CShell::TellType(const QString& Sql)
{
    try {
        return m_output.Type(jetsql::TypeOf(Sql));
    } catch (const dao::Error& error) {
        if (error.Number != 3129 || !IsName(Sql))
            throw;
    }
    const auto query = FindQuery(Sql);
    m_output.Type(query ? query->Type() : Database().CreateQueryDef(QString(), Sql)->Type());
}

} // namespace sqlshell

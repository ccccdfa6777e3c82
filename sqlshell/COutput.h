// sqlshell/COutput.h
// How the shell tells what came of a statement.

#ifndef SQLSHELL_COUTPUT_H
#define SQLSHELL_COUTPUT_H

#include "sqlshell/CSink.h"

#include "platform/dao/Database.h"

#include <QJsonArray>
#include <QStringList>

#include <functional>
#include <vector>

namespace sqlshell
{

/// A refused statement and what helps to mend it.
struct CRefusal
{
    dao::Error Error;
    QString Statement;   ///< empty where the error belongs to none
    int Line = 1;        ///< of the input, where Statement begins
    QStringList Missing; ///< parameters that have no value
};

/// A short list that a command gives: names of tables, saved queries.
struct CListing
{
    QString Key;         ///< its name in JSON
    QStringList Columns; ///< headings; a list without headings has one column
    std::vector<QStringList> Rows;
    QJsonArray Json; ///< the same for programs
};

/// Writes results in one of the formats. Results go to Out; where the format has no place for messages they go to
/// Messages. Writing throws COutputLost.
class COutput
{
public:
    /// Asked before each row; true ends the writing of a result with error 3059.
    using Stop = std::function<bool()>;

    COutput(CSink& Out, CSink& Messages, Stop IsStopped);
    virtual ~COutput();
    COutput(const COutput&) = delete;
    COutput& operator=(const COutput&) = delete;

    /// All rows from the current one on. False where it was stopped, which has then been told.
    virtual bool Rows(dao::QueryType Type, dao::Recordset& Source) = 0;
    virtual void Affected(dao::QueryType Type, int Count) = 0;
    virtual void Type(dao::QueryType Type) = 0;
    virtual void List(const CListing& Listing) = 0;
    /// What a command did, as a sentence and under a short key.
    virtual void Done(const QString& Key, const QString& Name, const QString& Sentence) = 0;
    /// A text that is wanted as it is (help, SQL), and what stands for it under Key in JSON.
    virtual void Text(const QString& Text, const QString& Key, const QJsonValue& Json) = 0;
    virtual void Refused(const CRefusal& Refusal) = 0;

protected:
    CSink& Out() { return m_out; }
    CSink& Messages() { return m_messages; }
    bool IsStopped() const { return m_isStopped && m_isStopped(); }
    /// The refusal for people: number, place, text, the line and a caret under the place.
    void WriteRefusal(const CRefusal& Refusal);

private:
    CSink& m_out;
    CSink& m_messages;
    Stop m_isStopped;
};

} // namespace sqlshell

#endif

// board/CMessageWriter.cpp
// Puts one message into the database.

#include "board/CMessageWriter.h"

#include "board/SqlText.h"
#include "platform/dao/Database.h"
#include "platform/text/Format.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{
constexpr int DuplicateKey = 3022;

/// Full or failing disk, lock of another program, read-only, damaged or closed file.
constexpr std::array FileErrors{3026, 3027, 3036, 3040, 3043, 3044, 3046, 3049, 3051,
                                3158, 3180, 3183, 3186, 3197, 3218, 3260, 3343, 3420};

void AppendText(QString& Statement, QStringView Text)
{
    mdlSqlText::AppendQuoted(Statement, Text);
    Statement += u',';
}

void AppendNumber(QString& Statement, qint32 Number)
{
    Statement += QString::number(Number);
    Statement += u',';
}
} // namespace

void CMessageWriter::MakeStatement(QString& Statement, const CMessage& Message)
{
    Statement.resize(0);
    Statement += "INSERT INTO Message(BBS_ID, ID, Read, Subject, HomePage, Mail, PostName, PostDate, InReplyTo, Body, "
                 "RootThread, Mark) VALUES("_L1;
    AppendNumber(Statement, Message.BBS_ID);
    AppendNumber(Statement, Message.ID);
    Statement += Message.Read ? "True,"_L1 : "False,"_L1;
    AppendText(Statement, Message.Subject);
    AppendText(Statement, Message.HomePage);
    AppendText(Statement, Message.Mail);
    AppendText(Statement, Message.PostName);
    Statement += u'#';
    Statement += text::FormatDate(Message.PostDate, u"yyyy/mm/dd hh:nn");
    Statement += "#,"_L1;
    AppendNumber(Statement, Message.InReplyTo);
    if (Message.Body.isEmpty())
        Statement += "Null,"_L1;
    else
        AppendText(Statement, Message.Body);
    AppendNumber(Statement, Message.RootThread);
    Statement += QString::number(Message.Mark);
    Statement += u')';
}

SaveOutcome CMessageWriter::Save(dao::Database& Database, const CMessage& Message)
{
    MakeStatement(m_statement, Message);
    try {
        Database.Execute(m_statement);
        return SaveOutcome::Stored;
    } catch (const dao::Error& error) {
        m_error = error;
        return error.Number == DuplicateKey ? SaveOutcome::AlreadyStored : SaveOutcome::Failed;
    }
}

bool CMessageWriter::ConcernsAll(const dao::Error& Error)
{
    return std::find(FileErrors.begin(), FileErrors.end(), Error.Number) != FileErrors.end();
}

// sqlshell/COutput.cpp
// Refusals as people read them.

#include "sqlshell/COutput.h"

#include "sqlshell/Place.h"

using namespace Qt::StringLiterals;

namespace sqlshell
{

COutput::COutput(CSink& Out, CSink& Messages, Stop IsStopped)
    : m_out(Out)
    , m_messages(Messages)
    , m_isStopped(std::move(IsStopped))
{}

COutput::~COutput() = default;

void COutput::WriteRefusal(const CRefusal& Refusal)
{
    m_out.Flush(); // what came before the error stands before it on a terminal
    const dao::Error& error = Refusal.Error;
    QString text = u"エラー %1"_s.arg(error.Number);
    if (error.Offset >= 0 && !Refusal.Statement.isEmpty()) {
        const CPlace place = FindPlace(Refusal.Statement, error.Offset, Refusal.Line);
        text += u" (%1 行目 %2 文字目): %3\n  %4\n  %5\n"_s.arg(
            QString::number(place.Line), QString::number(place.Column), error.Description, place.Excerpt, place.Caret);
    } else if (Refusal.Line > 1) {
        text += u" (%1 行目からの文): %2\n"_s.arg(QString::number(Refusal.Line), error.Description);
    } else {
        text += u": %1\n"_s.arg(error.Description);
    }
    for (const QString& name : Refusal.Missing)
        text += u"  [%1] に値がありません。書き間違いでなければ --param \"%1=値\" で渡します。\n"_s.arg(name);
    m_messages.Put(text);
    m_messages.Flush();
}

} // namespace sqlshell

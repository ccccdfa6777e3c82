// sqlshell/main.cpp
// The shell as a program: reads its command line, runs, ends with a status.

#include "sqlshell/CCsvOutput.h"
#include "sqlshell/CJsonOutput.h"
#include "sqlshell/CTableOutput.h"
#include "sqlshell/Input.h"
#include "sqlshell/Interrupt.h"

#include <cerrno>
#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace sqlshell;

namespace
{

enum Status { Fine = 0, Refused = 1, Unusable = 2 };

std::unique_ptr<COutput> MakeOutput(const COptions& Options, CSink& Out, CSink& Messages)
{
    switch (Options.Output) {
    case Format::Csv:
        return std::make_unique<CCsvOutput>(Out, Messages, mdlInterrupt::IsWanted);
    case Format::Json:
        return std::make_unique<CJsonOutput>(Out, Messages, mdlInterrupt::IsWanted);
    default:
        return std::make_unique<CTableOutput>(Out, Messages, mdlInterrupt::IsWanted, Options.MaxWidth);
    }
}

void Say(CSink& Messages, const QString& Sentence)
{
    Messages.Put(u"tavora-sql: "_s + Sentence + u'\n');
    Messages.Flush();
}

int Run(const COptions& Options, CSink& Out, CSink& Messages)
{
    const auto output = MakeOutput(Options, Out, Messages);
    CShell shell(Options, *output, mdlInterrupt::IsWanted);
    bool isReadable = shell.Open();
    if (isReadable && !Options.Statements.isEmpty())
        mdlInput::RunWords(shell, Out, Options.Statements);
    else if (isReadable && !(isReadable = mdlInput::RunFile(shell, Out, STDIN_FILENO)))
        Say(Messages, u"標準入力を読めません。"_s);
    shell.Close();
    Out.Flush();
    if (!isReadable)
        return Unusable;
    return shell.HasRefused() ? Refused : Fine;
}

int Start(const COptions& Options, CSink& Out, CSink& Messages)
{
    if (!Options.Error.isEmpty()) {
        Say(Messages, Options.Error + u"\n--help で使い方を表示します。"_s);
        return Unusable;
    }
    if (!Options.Help && !Options.Version)
        return Run(Options, Out, Messages);
    Out.Put(Options.Help ? mdlArguments::HelpText() : mdlArguments::VersionText());
    Out.Flush();
    return Fine;
}

} // namespace

int main(int argc, char** argv)
{
    mdlInterrupt::Install();
    CSink out = CSink::ToFile(STDOUT_FILENO);
    CSink messages = CSink::ToFile(STDERR_FILENO);
    const QByteArrayList words(argv + std::min(argc, 1), argv + argc);
    int status = Fine;
    try {
        status = Start(mdlArguments::Parse(words), out, messages);
    } catch (const COutputLost& lost) {
        if (lost.Code == EPIPE)
            mdlInterrupt::EndBy(SIGPIPE);
        CSink::ToFile(STDERR_FILENO).Put(u"tavora-sql: 結果を書き込めません。\n"_s);
        return Refused;
    }
    if (mdlInterrupt::IsWanted())
        mdlInterrupt::EndBy(SIGINT);
    return status;
}

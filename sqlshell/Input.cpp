// sqlshell/Input.cpp
// Reading, prompting, handing over.

#include "sqlshell/Input.h"

#include "sqlshell/Interrupt.h"

#include <cerrno>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace sqlshell::mdlInput
{

namespace
{

constexpr qsizetype BlockSize = 64 * 1024;

/// Every result is on its way before the next statement runs: another program may wait for it.
bool RunPieces(CShell& Shell, CSink& Out, CSplitter& Input, bool AtEnd, bool IsTerminal)
{
    while (auto piece = Input.Next(AtEnd)) {
        if (IsTerminal)
            piece->Line = 1; // nobody counts the lines of a whole session
        Shell.Run(*piece);
        Out.Flush();
        if (Shell.IsQuitting() || mdlInterrupt::IsWanted())
            return false;
    }
    return true;
}

void Prompt(CSink& Out, const CSplitter& Input)
{
    const char mark = Input.OpenMark();
    if (mark)
        Out.Put(QByteArray("  ") + mark + "> ");
    else
        Out.Put(Input.IsInside() ? "...> " : "sql> ");
    Out.Flush();
}

void Greet(CSink& Out)
{
    Out.Put(mdlArguments::VersionText());
    Out.Put(u".help でコマンドの一覧、Ctrl+D で終了。文の終わりに「;」を付けてください。\n"_s);
}

} // namespace

void RunWords(CShell& Shell, CSink& Out, const QByteArrayList& Words)
{
    for (const QByteArray& word : Words) {
        CSplitter input(CSplitter::CommandEnd::Input);
        input.Add(word);
        if (!RunPieces(Shell, Out, input, true, false))
            return;
    }
}

bool RunFile(CShell& Shell, CSink& Out, int Descriptor)
{
    const bool isTerminal = ::isatty(Descriptor) && ::isatty(STDOUT_FILENO);
    if (isTerminal)
        Greet(Out);
    CSplitter input;
    QByteArray block(BlockSize, Qt::Uninitialized);
    for (bool isMore = true; isMore;) {
        if (isTerminal)
            Prompt(Out, input);
        const ssize_t size = ::read(Descriptor, block.data(), size_t(block.size()));
        if (size < 0 && errno != EINTR)
            return false;
        isMore = size > 0;
        input.Add(QByteArrayView(block).first(std::max<ssize_t>(size, 0)));
        const bool isDone = RunPieces(Shell, Out, input, size == 0, isTerminal);
        if (Shell.IsQuitting() || (mdlInterrupt::IsWanted() && !isTerminal))
            return true;
        if (size < 0 || !isDone) { // Ctrl+C: what has been typed is given up
            input = CSplitter();
            mdlInterrupt::Forget();
            Out.Put("\n");
            isMore = true;
        }
    }
    if (isTerminal)
        Out.Put("\n"); // below the prompt that Ctrl+D left
    return true;
}

} // namespace sqlshell::mdlInput

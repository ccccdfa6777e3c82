// sqlshell/CSplitter.h
// Parts what is typed or read into statements and commands.

#ifndef SQLSHELL_CSPLITTER_H
#define SQLSHELL_CSPLITTER_H

#include <QByteArray>

#include <optional>

namespace sqlshell
{

/// One statement without its ";", or one command with its ".".
struct CPiece
{
    bool IsCommand = false;
    QByteArray Text;        ///< as it came, without blanks around it
    int Line = 1;           ///< of the input, where Text begins
    bool IsTooLong = false; ///< Text is only the beginning of a statement longer than MaxSize
};

/// Takes UTF-8 in pieces of any size and gives back statements and commands as they become complete.
///
/// A statement ends with ";" or with the input. A ";" in a text, in [brackets], in `back quotes` or in a #date# does
/// not end it, nor does the one that ends its PARAMETERS. A date ends with its line at the latest, so that a forgotten
/// "#" spoils one statement and not all that follow. A line that begins with "." between statements is a command. Bytes
/// that are no UTF-8 pass unchanged.
class CSplitter
{
public:
    /// Longest statement in bytes; the rest of a longer one is dropped, or an endless input would fill the memory.
    static constexpr qsizetype MaxSize = 64 * 1024 * 1024;

    enum class CommandEnd {
        Line, ///< a script: a command is one line
        Input ///< one word of the command line: a command takes all of it
    };

    explicit CSplitter(CommandEnd End = CommandEnd::Line)
        : m_commandEnd(End)
    {}

    void Add(QByteArrayView Input);
    /// The next piece that is complete; with AtEnd what is left counts as complete.
    std::optional<CPiece> Next(bool AtEnd = false);

    /// Whether a statement has begun and not ended; true after Next has given everything it could.
    bool IsInside() const { return m_isStarted; }
    /// What a text, name or date that is still open would close with, 0 for none.
    char OpenMark() const { return m_mark; }

private:
    char Peek(qsizetype Ahead = 0) const;
    bool StartsWith(QByteArrayView Bytes) const { return QByteArrayView(m_input).sliced(m_at).startsWith(Bytes); }
    bool SkipBlanks(bool AtEnd);
    bool FindEnd();
    bool EndsStatement(char Byte);
    void Limit();
    std::optional<CPiece> Command(bool AtEnd);
    CPiece Take(qsizetype End, qsizetype Next);
    QByteArrayView FirstWord() const;

    CommandEnd m_commandEnd;
    QByteArray m_input;
    qsizetype m_begin = 0; // of the piece
    qsizetype m_at = 0;    // looked at up to here
    int m_line = 1;        // at m_begin
    char m_mark = 0;
    bool m_isStarted = false;
    bool m_hasSemicolon = false; // the first one ends PARAMETERS only
    bool m_isTooLong = false;
};

} // namespace sqlshell

#endif

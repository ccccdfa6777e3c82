// sqlshell/CSplitter.cpp
// Finding the ends of statements byte by byte: every mark that counts is ASCII, which UTF-8 uses for nothing else.

#include "sqlshell/CSplitter.h"

#include <algorithm>

namespace sqlshell
{

namespace
{

constexpr QByteArrayView WideBlank("\xE3\x80\x80"); // typed between words with the input method on
constexpr QByteArrayView OrderMark("\xEF\xBB\xBF"); // some editors begin a file with it

bool IsBlank(char Byte) { return Byte == ' ' || (Byte >= '\t' && Byte <= '\r'); }

char ClosingMark(char Opening)
{
    switch (Opening) {
    case '[':
        return ']';
    case '\'':
    case '"':
    case '`':
    case '#':
        return Opening;
    default:
        return 0;
    }
}

} // namespace

void CSplitter::Add(QByteArrayView Input)
{
    m_input.remove(0, m_begin);
    m_at -= m_begin;
    m_begin = 0;
    m_input.append(Input);
}

char CSplitter::Peek(qsizetype Ahead) const { return m_at + Ahead < m_input.size() ? m_input[m_at + Ahead] : '\0'; }

// Between pieces: also stray semicolons. False where only more input can tell what begins here.
bool CSplitter::SkipBlanks(bool AtEnd)
{
    while (m_at < m_input.size()) {
        if (Peek() == '\n')
            ++m_line;
        if (IsBlank(Peek()) || Peek() == ';')
            ++m_at;
        else if (StartsWith(WideBlank) || StartsWith(OrderMark))
            m_at += WideBlank.size();
        else if ((Peek() == WideBlank[0] || Peek() == OrderMark[0]) && m_input.size() - m_at < 3 && !AtEnd)
            return false;
        else
            return true;
        m_begin = m_at;
    }
    return false;
}

// The first word with an end, empty where the statement does not begin with a letter.
QByteArrayView CSplitter::FirstWord() const
{
    const auto isLetter = [](char byte) { return (byte | 0x20) >= 'a' && (byte | 0x20) <= 'z'; };
    const QByteArrayView text = QByteArrayView(m_input).sliced(m_begin);
    return text.first(std::find_if_not(text.begin(), text.end(), isLetter) - text.begin());
}

// True where Byte ends the statement; keeps track of what is open.
bool CSplitter::EndsStatement(char Byte)
{
    if (m_mark) {
        if (Byte == m_mark || (Byte == '\n' && m_mark == '#'))
            m_mark = 0;
        return false;
    }
    m_mark = ClosingMark(Byte);
    if (Byte != ';')
        return false;
    if (!std::exchange(m_hasSemicolon, true))
        return FirstWord().compare("parameters", Qt::CaseInsensitive) != 0;
    return true;
}

// Goes on looking for the end of the statement; m_at stops on it.
bool CSplitter::FindEnd()
{
    for (; m_at < m_input.size(); ++m_at) {
        if (EndsStatement(m_input[m_at]))
            return true;
    }
    return false;
}

// What is beyond the longest statement is looked at and forgotten.
void CSplitter::Limit()
{
    if (m_at - m_begin <= MaxSize)
        return;
    m_input.truncate(m_begin + MaxSize);
    m_at = m_input.size();
    m_isTooLong = true;
}

CPiece CSplitter::Take(qsizetype End, qsizetype Next)
{
    CPiece piece;
    const QByteArrayView whole = QByteArrayView(m_input).sliced(m_begin, End - m_begin);
    piece.Text = whole.toByteArray().trimmed();
    piece.Line = m_line;
    piece.IsTooLong = m_isTooLong;
    m_line += int(std::count(whole.begin(), whole.end(), '\n'));
    m_at = m_begin = Next;
    m_mark = 0;
    m_isStarted = m_hasSemicolon = m_isTooLong = false;
    return piece;
}

std::optional<CPiece> CSplitter::Command(bool AtEnd)
{
    qsizetype end = m_commandEnd == CommandEnd::Line ? m_input.indexOf('\n', m_at) : -1;
    m_isTooLong = end < 0 && m_input.size() - m_at > MaxSize;
    if (end < 0 && !AtEnd && !m_isTooLong)
        return std::nullopt;
    if (end < 0)
        end = m_input.size();
    CPiece piece = Take(end, end);
    piece.IsCommand = true;
    return piece;
}

std::optional<CPiece> CSplitter::Next(bool AtEnd)
{
    if (!m_isStarted && !SkipBlanks(AtEnd))
        return std::nullopt;
    if (!m_isStarted && Peek() == '.')
        return Command(AtEnd);
    m_isStarted = true;
    if (FindEnd())
        return Take(m_at, m_at + 1);
    Limit();
    return AtEnd ? std::optional(Take(m_input.size(), m_input.size())) : std::nullopt;
}

} // namespace sqlshell

// board/CLogParser.h
// The boards' log format: text cut into records, a record read into a message.

#ifndef BOARD_CLOGPARSER_H
#define BOARD_CLOGPARSER_H

#include "board/CMessage.h"

#include <QStringView>

#include <optional>

/// Hands out the records of a block of log text one after another.
///
/// A record is what stands before a separator line; what follows the last one is no record. Only the very last
/// separator may lack its line end: logs that were saved by hand often do. The text must outlive the cutter.
class CRecordCutter
{
public:
    explicit CRecordCutter(QStringView Text);

    /// The next record without its separator; empty when there is none left.
    std::optional<QStringView> Next();

    /// Units of the text that have been handed out or passed over.
    qsizetype Place() const { return m_place; }

    /// What stands behind the last separator; empty as long as Next hands out records.
    QStringView Rest() const { return m_rest; }

    /// The separator line without its line ends.
    static QStringView SeparatorLine();

private:
    QStringView m_text;
    QStringView m_rest;
    qsizetype m_place = 0;
};

/// Reads records of one board.
///
/// A record has labelled header lines, then the body. Labels are skipped by their length and not looked at.
class CLogParser
{
public:
    /// TwoSided chooses the format without a subject line. Read becomes the read flag of every message.
    CLogParser(qint32 BBS_ID, bool TwoSided, bool Read);

    /// The message in Record. Empty when the record is broken: a line is missing, a number or the date does not
    /// convert, the message number is below 1.
    std::optional<CMessage> Parse(QStringView Record) const;

    qint32 BBS_ID() const { return m_board; }

private:
    qint32 m_board;
    bool m_twoSided;
    bool m_read;
};

#endif // BOARD_CLOGPARSER_H

// query/mdlStatementParts.h
// The parts of a statement that its box draws in colours, line by line.

#ifndef QUERY_MDLSTATEMENTPARTS_H
#define QUERY_MDLSTATEMENTPARTS_H

#include <QStringView>

#include <vector>

namespace mdlStatementParts
{

enum class Part { Keyword, Text, Number, Date, Name };

/// UTF-16 units of the line, quotes and brackets among them.
struct Run
{
    int Begin = 0;
    int Length = 0;
    Part What = Part::Keyword;
};

/// What is still open where a line ends. Numbers from 0, as they are kept with each line.
enum class Open { Nothing, SingleQuote, DoubleQuote, Bracket, BackQuote };

struct Line
{
    std::vector<Run> Runs;      ///< in order, none touching another's units
    Open AtEnd = Open::Nothing; ///< what the next line begins in
};

/// Reads one line of a statement that need not be complete nor right. AtBegin is what the line before left open: texts
/// and names go on over line ends, as the engine reads them. A date ends with its line at the latest, so that a "#"
/// just typed does not turn all that follows into one.
Line Read(QStringView Text, Open AtBegin);

} // namespace mdlStatementParts

#endif // QUERY_MDLSTATEMENTPARTS_H

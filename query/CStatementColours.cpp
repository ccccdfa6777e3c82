// query/CStatementColours.cpp
// Draws the words, constants and names of a statement in quiet colours.

#include "query/CStatementColours.h"

#include "platform/desktop/Contrast.h"

#include <QTextBlock>
#include <QTextLayout>

using mdlStatementParts::Open;
using mdlStatementParts::Part;

namespace
{

/// Dark shades of one weight: a statement is to be read, not to shine.
QColor Wanted(Part What)
{
    switch (What) {
    case Part::Keyword:
        return {0x1f, 0x45, 0x94};
    case Part::Text:
        return {0x8f, 0x33, 0x1c};
    case Part::Name:
        return {0x6a, 0x35, 0x86};
    default: // numbers and dates
        return {0x0f, 0x62, 0x50};
    }
}

/// The text runs into the place where an input method composes, or ends there.
bool Touches(const mdlStatementParts::Run& Run, int Composing)
{
    return Composing >= 0 && Run.Begin < Composing && Run.Begin + Run.Length >= Composing;
}

} // namespace

CStatementColours::CStatementColours(QTextDocument* Document)
    : QSyntaxHighlighter(Document)
{}

void CStatementColours::SetPalette(const QPalette& Palette)
{
    m_palette = Palette;
    rehighlight();
}

QColor CStatementColours::Colour(Part What, const QPalette& Palette)
{
    return mdlContrast::Legible(Wanted(What), Palette.color(QPalette::Base));
}

/// A run that touches what is being composed would be stretched over it, and paint over the input method's own colours.
void CStatementColours::highlightBlock(const QString& Text)
{
    const mdlStatementParts::Line line = mdlStatementParts::Read(Text, Open(qMax(previousBlockState(), 0)));
    setCurrentBlockState(int(line.AtEnd));
    if (Text.size() > MaxLine)
        return;
    const QTextLayout& layout = *currentBlock().layout();
    const int composing = layout.preeditAreaText().isEmpty() ? -1 : layout.preeditAreaPosition();
    for (const mdlStatementParts::Run& run : line.Runs) {
        if (!Touches(run, composing))
            setFormat(run.Begin, run.Length, Colour(run.What, m_palette));
    }
}

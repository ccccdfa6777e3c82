// query/CStatementColours.h
// Draws the words, constants and names of a statement in quiet colours.

#ifndef QUERY_CSTATEMENTCOLOURS_H
#define QUERY_CSTATEMENTCOLOURS_H

#include "query/mdlStatementParts.h"

#include <QPalette>
#include <QSyntaxHighlighter>

/// Colours only what is shown: text, undo history and what an input method composes stay as they are.
class CStatementColours : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    /// Lines of more units than this stay plain: laying one out in pieces takes the longer the more pieces it has, at
    /// every key. No line that a person writes is that long.
    static constexpr int MaxLine = 20'000;

    /// Belongs to Document, and takes its colours from the palette of the last SetPalette.
    explicit CStatementColours(QTextDocument* Document);

    /// Draws anew in colours that can be read on the palette's base.
    void SetPalette(const QPalette& Palette);
    /// The colour that a part has on a palette.
    static QColor Colour(mdlStatementParts::Part What, const QPalette& Palette);

protected:
    void highlightBlock(const QString& Text) override;

private:
    QPalette m_palette;
};

#endif // QUERY_CSTATEMENTCOLOURS_H

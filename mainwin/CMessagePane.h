// mainwin/CMessagePane.h
// The pane that shows the text of one message, with quotations and comments in colours of their own.

#ifndef MAINWIN_CMESSAGEPANE_H
#define MAINWIN_CMESSAGEPANE_H

#include "viewer/viewer_host.h"

#include <QPlainTextEdit>

/// Read-only. The text is never taken as markup.
class CMessagePane : public QPlainTextEdit
{
    Q_OBJECT

public:
    /// Longest piece of a line that is laid out as one, in UTF-16 units. A log without line breaks may bring a line of
    /// megabytes, whose layout would hold the window up for minutes; it is shown, and copied, as it stands all the
    /// same.
    static constexpr qsizetype MaxPiece = 4000;
    /// Of a text with more lines, which nobody writes but a hostile log may bring, many are laid out as one piece: each
    /// line by itself would take seconds, and hundreds of bytes of memory.
    static constexpr std::size_t MaxLines = 100'000;

    explicit CMessagePane(QWidget* Parent = nullptr);
    ~CMessagePane() override;

    /// Shows Lines with the caret at the top. No lines empty the pane.
    void ShowLines(const std::vector<ViewerHost::BodyLine>& Lines);

    /// Turns one page on or back; false when the end (the top) was in view already and nothing moved.
    bool Page(bool Forward);

    /// The selected text with CR LF at the line ends, empty without a selection.
    QString SelectedText() const;
    void ClearSelection();

    /// The selection, or the caret, as a part of the body whose lines are shown: of the lines joined by CR LF.
    ViewerHost::BodyRange SelectedRange() const;
    /// Selects Range and scrolls to it. An end within a line break or a surrogate pair moves outwards; what lies
    /// beyond the text is left out.
    void SelectBodyRange(ViewerHost::BodyRange Range);
    /// What the selection covers of the screen, roughly; at most the pane's own area.
    QRect SelectionOnScreen() const;

    /// The colour of a line of this kind on the pane's ground.
    QColor ColorOf(ViewerHost::LineKind Kind) const;

Q_SIGNALS:
    /// The right button, or the menu key, over a selection; Place is in screen coordinates.
    void TextMenuRequested(const QPoint& Place);

protected:
    QMimeData* createMimeDataFromSelection() const override;
    void contextMenuEvent(QContextMenuEvent* Event) override;
    void mouseDoubleClickEvent(QMouseEvent* Event) override;
    void changeEvent(QEvent* Event) override;

private:
    class CLineColors;
    struct Piece
    {
        ViewerHost::LineKind Kind = ViewerHost::LineKind::Plain;
        bool Continues = false; ///< the next block belongs to the same line
        qsizetype Start = 0;    ///< where in the body it begins
    };
    enum class Side { Before, Behind };

    QString TakePieces(const std::vector<ViewerHost::BodyLine>& Lines);
    int PositionOf(qsizetype BodyOffset, Side Within) const;
    qsizetype OffsetOf(int Position) const;
    QString TextBetween(int Start, int End, QStringView LineEnd) const;

    std::vector<Piece> m_pieces; // one for each block of the document but the empty one at the end
    qsizetype m_bodyLength = 0;
    bool m_isJoined = false; // pieces hold many lines
    CLineColors* m_colors;
};

#endif

// mainwin/CMessagePane.cpp
// The pane that shows the text of one message, with quotations and comments in colours of their own.

#include "mainwin/CMessagePane.h"

#include "platform/desktop/Contrast.h"
#include "platform/text/Words.h"

#include <QContextMenuEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSyntaxHighlighter>
#include <QTextBlock>

#include <algorithm>

using namespace Qt::StringLiterals;
using LineKind = ViewerHost::LineKind;

namespace
{

constexpr int LineEndLength = 2; // CR LF in the body

// Message texts carry drawings made of characters, which need glyphs of one and of two cells.
QFont FixedPitchFont(const QFont& Base)
{
    QFont font = Base;
    font.setFamilies({u"ＭＳ ゴシック"_s, u"MS Gothic"_s, u"Osaka－等幅"_s, u"IPAGothic"_s, u"Noto Sans Mono CJK JP"_s,
                      u"monospace"_s});
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

// The document makes a new block of each of these; a block has to be a line of the message. A bare LF is no line end
// there.
QString WithoutBreaks(QString Text)
{
    for (QChar& c : Text) {
        if (c == u'\n' || c == QChar::ParagraphSeparator)
            c = QChar::LineSeparator;
        else if (c == u'\r')
            c = u' ';
        else if (c == QChar(0xfdd0) || c == QChar(0xfdd1))
            c = QChar::ReplacementCharacter;
    }
    return Text;
}

// A line end within a piece, as long as the CR LF that it stands for; the invisible blank tells it from a bare LF.
constexpr QStringView InnerLineEnd = u"\u2028\u200b";

// As few lines as may be; those of several kinds are plain.
std::vector<ViewerHost::BodyLine> Joined(const std::vector<ViewerHost::BodyLine>& Lines)
{
    std::vector<ViewerHost::BodyLine> joined;
    for (const auto& line : Lines) {
        if (joined.empty() || joined.back().Text.size() + LineEndLength + line.Text.size() > CMessagePane::MaxPiece) {
            joined.push_back(line);
            continue;
        }
        joined.back().Text += InnerLineEnd;
        joined.back().Text += line.Text;
        if (joined.back().Kind != line.Kind)
            joined.back().Kind = LineKind::Plain;
    }
    return joined;
}

// Length of the next piece; it does not end between the halves of one character.
qsizetype PieceLength(QStringView Rest)
{
    if (Rest.size() <= CMessagePane::MaxPiece)
        return Rest.size();
    return CMessagePane::MaxPiece - (Rest[CMessagePane::MaxPiece - 1].isHighSurrogate() ? 1 : 0);
}

} // namespace

// Colours each block by the kind of its line.
class CMessagePane::CLineColors : public QSyntaxHighlighter
{
public:
    explicit CLineColors(CMessagePane& Pane)
        : QSyntaxHighlighter(Pane.document())
        , m_pane(Pane)
    {}

protected:
    void highlightBlock(const QString& Text) override
    {
        const auto block = std::size_t(currentBlock().blockNumber());
        const LineKind kind = block < m_pane.m_pieces.size() ? m_pane.m_pieces[block].Kind : LineKind::Plain;
        if (kind != LineKind::Plain)
            setFormat(0, int(Text.size()), m_pane.ColorOf(kind));
    }

private:
    const CMessagePane& m_pane;
};

CMessagePane::CMessagePane(QWidget* Parent)
    : QPlainTextEdit(Parent)
    , m_colors(new CLineColors(*this))
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFont(FixedPitchFont(font()));
    setTabChangesFocus(true);
    setCursorWidth(2); // a hairline gets lost between strokes of kanji
    setFrameShape(QFrame::StyledPanel);
}

CMessagePane::~CMessagePane() = default;

void CMessagePane::ShowLines(const std::vector<ViewerHost::BodyLine>& Lines)
{
    setUpdatesEnabled(false);
    m_isJoined = Lines.size() > MaxLines;
    setPlainText(TakePieces(m_isJoined ? Joined(Lines) : Lines));
    moveCursor(QTextCursor::Start);
    setUpdatesEnabled(true);
}

QString CMessagePane::TakePieces(const std::vector<ViewerHost::BodyLine>& Lines)
{
    m_pieces.clear();
    QString text;
    qsizetype lineStart = 0;
    for (const auto& line : Lines) {
        const QString shown = WithoutBreaks(line.Text);
        qsizetype at = 0;
        do {
            const qsizetype length = PieceLength(QStringView(shown).mid(at));
            text += QStringView(shown).mid(at, length);
            text += u'\n';
            m_pieces.push_back({line.Kind, at + length < shown.size(), lineStart + at});
            at += length;
        } while (at < shown.size());
        lineStart += shown.size() + LineEndLength;
    }
    m_bodyLength = std::max<qsizetype>(lineStart - LineEndLength, 0); // the last line ends with the body
    return text;
}

bool CMessagePane::Page(bool Forward)
{
    QScrollBar* bar = verticalScrollBar();
    const int before = bar->value();
    bar->triggerAction(Forward ? QScrollBar::SliderPageStepAdd : QScrollBar::SliderPageStepSub);
    return bar->value() != before;
}

QString CMessagePane::TextBetween(int Start, int End, QStringView LineEnd) const
{
    QString text;
    for (QTextBlock block = document()->findBlock(Start); block.isValid() && block.position() <= End;
         block = block.next()) {
        const int from = qMax(Start - block.position(), 0);
        const int length = qMin(End - block.position(), block.length() - 1) - from;
        text += QStringView(block.text()).mid(from, qMax(length, 0));
        const bool isLast = End < block.position() + block.length();
        const auto number = std::size_t(block.blockNumber());
        if (!isLast && !(number < m_pieces.size() && m_pieces[number].Continues))
            text += LineEnd;
    }
    if (m_isJoined)
        text = text.split(InnerLineEnd.toString()).join(LineEnd);
    return text.split(QChar::LineSeparator).join(LineEnd);
}

QString CMessagePane::SelectedText() const
{
    const QTextCursor cursor = textCursor();
    return cursor.hasSelection() ? TextBetween(cursor.selectionStart(), cursor.selectionEnd(), u"\r\n") : QString();
}

void CMessagePane::ClearSelection()
{
    QTextCursor cursor = textCursor();
    cursor.clearSelection();
    setTextCursor(cursor);
}

// Within a line break or a surrogate pair Within tells to which side of it the place moves.
int CMessagePane::PositionOf(qsizetype BodyOffset, Side Within) const
{
    const auto next = std::upper_bound(m_pieces.begin(), m_pieces.end(), BodyOffset,
                                       [](qsizetype Offset, const Piece& Each) { return Offset < Each.Start; });
    if (next == m_pieces.begin())
        return 0;
    const QTextBlock block = document()->findBlockByNumber(int(next - m_pieces.begin()) - 1);
    const int end = block.length() - 1; // of its text
    int at = int(std::min<qsizetype>(BodyOffset - std::prev(next)->Start, end + 1));
    const QString text = block.text();
    if (at > 0 && at < end && text[at].isLowSurrogate() && text[at - 1].isHighSurrogate())
        at += Within == Side::Behind ? 1 : -1;
    else if (at > end) // between CR and LF, or behind the body
        at = Within == Side::Behind && next != m_pieces.end() ? end + 1 : end;
    return block.position() + at;
}

qsizetype CMessagePane::OffsetOf(int Position) const
{
    const QTextBlock block = document()->findBlock(Position);
    const auto number = std::size_t(block.blockNumber());
    return number < m_pieces.size() ? m_pieces[number].Start + Position - block.position() : m_bodyLength;
}

ViewerHost::BodyRange CMessagePane::SelectedRange() const
{
    const QTextCursor cursor = textCursor();
    const qsizetype start = OffsetOf(cursor.selectionStart());
    return {start, OffsetOf(cursor.selectionEnd()) - start};
}

void CMessagePane::SelectBodyRange(ViewerHost::BodyRange Range)
{
    QTextCursor cursor = textCursor();
    cursor.setPosition(PositionOf(Range.Start, Side::Before));
    cursor.setPosition(PositionOf(Range.Start + Range.Length, Range.Length > 0 ? Side::Behind : Side::Before),
                       QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    ensureCursorVisible();
}

QRect CMessagePane::SelectionOnScreen() const
{
    QTextCursor start = textCursor();
    start.setPosition(start.selectionStart());
    const QRect place = cursorRect(start).united(cursorRect()).intersected(viewport()->rect());
    return {viewport()->mapToGlobal(place.topLeft()), place.size()};
}

QColor CMessagePane::ColorOf(LineKind Kind) const
{
    const QColor ground = palette().color(QPalette::Base);
    switch (Kind) {
    case LineKind::Quote:
        return mdlContrast::Legible(QColor(0, 0, 128), ground);
    case LineKind::Comment:
        return mdlContrast::Legible(QColor(0, 128, 0), ground);
    case LineKind::Plain:
        break;
    }
    return palette().color(QPalette::Text);
}

QMimeData* CMessagePane::createMimeDataFromSelection() const
{
    const QTextCursor cursor = textCursor();
    auto* data = new QMimeData;
    data->setText(TextBetween(cursor.selectionStart(), cursor.selectionEnd(), u"\n"));
    return data;
}

void CMessagePane::contextMenuEvent(QContextMenuEvent* Event)
{
    Event->accept();
    if (!textCursor().hasSelection())
        return;
    const bool isByKey = Event->reason() == QContextMenuEvent::Keyboard;
    Q_EMIT TextMenuRequested(isByKey ? viewport()->mapToGlobal(cursorRect().bottomLeft()) : Event->globalPos());
}

/// The base takes each kanji for a word of its own.
void CMessagePane::mouseDoubleClickEvent(QMouseEvent* Event)
{
    QPlainTextEdit::mouseDoubleClickEvent(Event);
    if (Event->button() != Qt::LeftButton)
        return;
    const QPoint place = Event->position().toPoint();
    QTextCursor cursor = cursorForPosition(place); // before or behind the letter, whichever edge is nearer
    const bool isBehind = place.x() < cursorRect(cursor).left();
    const QTextBlock block = cursor.block();
    const auto word = text::WordAt(block.text(), cursor.positionInBlock() - (isBehind ? 1 : 0));
    if (word.Length == 0)
        return;
    cursor.setPosition(block.position() + int(word.Start));
    cursor.setPosition(block.position() + int(word.Start + word.Length), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void CMessagePane::changeEvent(QEvent* Event)
{
    QPlainTextEdit::changeEvent(Event);
    if (Event->type() == QEvent::PaletteChange && m_colors)
        m_colors->rehighlight();
}

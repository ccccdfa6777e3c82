// query/CStatementBox.cpp
// The box in which a statement is written.

#include "query/CStatementBox.h"

#include "query/CStatementColours.h"

#include <QEvent>
#include <QFontDatabase>
#include <QMimeData>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

/// The desktop's own fixed font draws what is Latin; Japanese comes from the first of the others that is there.
QFont FixedFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setFamilies({font.family(), u"ＭＳ ゴシック"_s, u"MS Gothic"_s, u"Noto Sans Mono CJK JP"_s, u"IPAGothic"_s});
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

} // namespace

CStatementBox::CStatementBox(QWidget* Parent)
    : QPlainTextEdit(Parent)
    , m_colours(new CStatementColours(document()))
{
    setFont(FixedFont());
    setTabChangesFocus(true);
    m_colours->SetPalette(palette());
}

/// The raw text: the plain one would turn blanks that do not break into others, also within constants.
QString CStatementBox::Statement() const
{
    QString text = document()->toRawText();
    return text.replace(QChar::ParagraphSeparator, u'\n')
        .replace(QChar::LineSeparator, u'\n')
        .replace(u"\n"_s, u"\r\n"_s);
}

void CStatementBox::SetStatement(const QString& Sql)
{
    setPlainText(Sql);
    selectAll();
}

void CStatementBox::ReplaceStatement(const QString& Sql)
{
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    cursor.insertText(Sql);
    cursor.endEditBlock();
    setTextCursor(cursor);
}

void CStatementBox::SetCaret(qsizetype Offset)
{
    const qsizetype lineEnds = Statement().left(Offset).count(u'\r'); // each is one place in the box, not two
    QTextCursor cursor = textCursor();
    const qsizetype end = document()->characterCount() - 1;
    cursor.setPosition(int(std::clamp<qsizetype>(Offset - lineEnds, 0, end)));
    setTextCursor(cursor);
}

void CStatementBox::Insert(const QString& Text, qsizetype Caret)
{
    QTextCursor cursor = textCursor();
    const int start = cursor.selectionStart();
    cursor.beginEditBlock(); // to be undone without what was typed in front of it
    cursor.insertText(Text);
    cursor.endEditBlock();
    cursor.setPosition(start + int(Caret));
    setTextCursor(cursor);
}

void CStatementBox::changeEvent(QEvent* Event)
{
    QPlainTextEdit::changeEvent(Event);
    if (Event->type() == QEvent::PaletteChange)
        m_colours->SetPalette(palette());
}

/// The caret may have been put somewhere while the box had another size or none.
void CStatementBox::showEvent(QShowEvent* Event)
{
    QPlainTextEdit::showEvent(Event);
    ensureCursorVisible();
}

/// The toolkit takes the first of Source's formats without asking whether there is one. There is none when nobody owns
/// the clipboard, as after the end of the program that text was copied in.
void CStatementBox::insertFromMimeData(const QMimeData* Source)
{
    if (Source && !Source->formats().isEmpty())
        QPlainTextEdit::insertFromMimeData(Source);
}

// query/CStatementBox.h
// The box in which a statement is written.

#ifndef QUERY_CSTATEMENTBOX_H
#define QUERY_CSTATEMENTBOX_H

#include <QPlainTextEdit>

class CStatementColours;

/// Plain text in a font of fixed pitch, its words and constants in colours. Lines end in CR LF outside of the box;
/// places count in UTF-16 units of that text.
class CStatementBox : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit CStatementBox(QWidget* Parent = nullptr);

    QString Statement() const;
    /// A new statement, with nothing to undo. All of it is selected.
    void SetStatement(const QString& Sql);
    /// The same, but Undo brings the one before it back.
    void ReplaceStatement(const QString& Sql);
    /// Puts the caret to Offset of Statement() and into view; what is beyond its end is its end.
    void SetCaret(qsizetype Offset);
    /// Text in place of the selection, with the caret Caret units behind its beginning.
    void Insert(const QString& Text, qsizetype Caret);

protected:
    void changeEvent(QEvent* Event) override;
    void showEvent(QShowEvent* Event) override;
    void insertFromMimeData(const QMimeData* Source) override;

private:
    CStatementColours* m_colours; // the document's
};

#endif // QUERY_CSTATEMENTBOX_H

// load/CInfoLabel.h
// The information lines of the receive dialog.

#ifndef LOAD_CINFOLABEL_H
#define LOAD_CINFOLABEL_H

#include <QLabel>

class CPaintPause;

/// Plain lines of text; one that is wider than the label has "…" in its middle: a long address or path never widens the
/// dialog, and what becomes of it stands at the end.
class CInfoLabel : public QLabel
{
    Q_OBJECT

public:
    /// Room is kept for this many lines.
    static constexpr int LineCount = 4;

    explicit CInfoLabel(QWidget* Parent = nullptr);

    /// Sets the lines, separated by LF. They are painted a little later: a run sets them for every record, and painting
    /// each time would take longer than the records.
    void SetLines(const QString& Lines);

    /// Line, counted from 1, as it is written at this width.
    QString ShownLine(int Line) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* Event) override;

private:
    CPaintPause* m_paint;
};

#endif // LOAD_CINFOLABEL_H

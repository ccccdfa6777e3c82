// mainwin/CTextZoom.h
// Makes the letters of a pane of text larger and smaller.

#ifndef MAINWIN_CTEXTZOOM_H
#define MAINWIN_CTEXTZOOM_H

#include <QObject>

#include <optional>

class QPlainTextEdit;

/// Sizes are in points. What stands in the first line of the pane stays in it, however often the size changes; a
/// selection that was in view stays in view. The wheel with Ctrl steps too.
class CTextZoom : public QObject
{
    Q_OBJECT

public:
    static constexpr double Least = 6;
    static constexpr double Most = 72;

    /// The size that Pane has now is the usual one. Pane becomes the parent.
    explicit CTextZoom(QPlainTextEdit& Pane);

    double Size() const;

    /// The size that was asked for; empty while it is the usual one, which is the system's and may be another one the
    /// next time.
    std::optional<double> Chosen() const { return m_chosen; }
    /// Sizes outside Least..Most become the nearest of the two.
    void SetChosen(std::optional<double> Points);

    /// To the next larger sizes, or back by a negative number, and tells the new one in a tip over the pane.
    void Step(int Steps);
    /// Back to the usual size, which is told too.
    void Reset();

    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    void Apply(double Points);
    int TopPosition();
    void ShowAtTop(int Position);
    void Tell() const;

    QPlainTextEdit& m_pane;
    double m_usual;
    std::optional<double> m_chosen;
    int m_wheel = 0;         // eighths of a degree that do not make a step yet
    int m_anchor = 0;        // position in the text that the last change kept in the first line
    int m_anchorScroll = -1; // where the pane was scrolled to by that; elsewhere the anchor is of no use
};

#endif

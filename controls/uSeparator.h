// controls/uSeparator.h
// The bar that divides a window's area between two panes and that the user drags.

#ifndef CONTROLS_USEPARATOR_H
#define CONTROLS_USEPARATOR_H

#include <QColor>
#include <QPointer>
#include <QWidget>

#include <optional>

class uSeparatorBar;

/// Lays two sibling widgets over its own area, on either side of a bar.
///
/// The panes stay children of the window: the window exchanges one of them by calling Initialize again. Lengths are in
/// twips (15 a pixel at 100 %), as the settings file keeps them. Place the control like any widget; when it moves or
/// is resized the panes follow. The bar can be reached by Tab and moved by the arrow keys, Home and End; Enter, like a
/// double click, collapses the first pane to SideMin and brings it back.
class uSeparator : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int Aspect READ Aspect WRITE SetAspect)
    Q_PROPERTY(int SizeMin READ SideMin WRITE SetSideMin)
    Q_PROPERTY(QColor BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(int Offset READ Offset WRITE SetOffset STORED false)
    Q_PROPERTY(double Parsent READ Parsent WRITE SetParsent STORED false)

public:
    enum Aspects { Horizontal = 0, Vertical = 1 };

    /// Thickness of the bar in twips.
    static constexpr int BarTwips = 60;

    explicit uSeparator(QWidget* Parent = nullptr);
    ~uSeparator() override;

    /// Takes the two panes (above and below, or left and right) and arranges them. Panes of an earlier call are no
    /// longer moved. The panes are borrowed, and must have the same parent as this control.
    void Initialize(QWidget* Panel1, QWidget* Panel2);

    /// 0: horizontal bar, panes above and below; 1 (at the start): vertical bar, panes left and right.
    int Aspect() const { return m_aspect; }
    void SetAspect(int NewAspect);
    bool IsHorizontal() const { return m_aspect == Horizontal; }

    /// Smallest size in twips that dragging leaves to either pane; 100 at the start.
    int SideMin() const { return m_sideMin; }
    void SetSideMin(int NewSideMin);

    /// The palette's button colour until it is set.
    QColor BackColor() const;
    void SetBackColor(const QColor& NewBackColor);

    /// Twips from the top (left) edge to the bar; the middle until it is set.
    ///
    /// What does not fit the present size is shown 60 twips inside the far edge, and takes its place again when the
    /// control has grown: a window that was small for a while must not forget where its bar was.
    int Offset() const;
    void SetOffset(int NewOffset);

    /// The bar's place in per cent of the room that it can move in; 50 when that makes no sense.
    double Parsent() const;
    void SetParsent(double NewParsent) { MoveBar(NewParsent); }
    /// Before the control is shown its size is not final: the percentage is kept and taken of the size it then has.
    void MoveBar(double Percent);

Q_SIGNALS:
    /// The user has moved the bar (at the end of a drag, or by a key).
    void Moved();

protected:
    void resizeEvent(QResizeEvent* Event) override;
    void moveEvent(QMoveEvent* Event) override;
    void showEvent(QShowEvent* Event) override;
    void paintEvent(QPaintEvent* Event) override;

private:
    friend class uSeparatorBar;

    // What the bar asks for; lengths in pixels.
    void DragTo(int Pixels);
    void EndDrag();
    void Step(int Pixels);
    void ToggleCollapsed();

    int InnerLength() const;
    int Room() const;
    int BarPixels() const;
    int ClampToSides(int Pixels) const;
    int BarPosition() const;
    void PlaceBar(int Pixels);
    void Arrange();
    void TellPlace();
    QRect Part(int From, int Length) const;

    uSeparatorBar* m_bar; // a child
    QPointer<QWidget> m_panel1;
    QPointer<QWidget> m_panel2;
    int m_aspect = Vertical;
    int m_sideMin = 100;
    QColor m_backColor;              // invalid: the palette's
    std::optional<int> m_offset;     // twips as last set; none: the middle, or m_percent
    std::optional<double> m_percent; // set before the size was known
    std::optional<int> m_remembered; // twips before the collapse
};

#endif

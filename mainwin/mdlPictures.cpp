// mainwin/mdlPictures.cpp
// How each of the program's pictures is drawn, as vector paths on a square of 24 by 24 units.

#include "mainwin/mdlPictures.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <initializer_list>

namespace mdlPictures
{

namespace
{

constexpr double Stroke = 1.7; // outline width: 1.4 pixels at 20, 2.8 at 40

void Outline(QPainter& Painter, const QColor& Color, double Width = Stroke)
{
    Painter.setPen(QPen(Color, Width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    Painter.setBrush(Qt::NoBrush);
}

void Fill(QPainter& Painter, const QColor& Color)
{
    Painter.setPen(Qt::NoPen);
    Painter.setBrush(Color);
}

void Line(QPainter& Painter, std::initializer_list<QPointF> Points)
{
    Painter.drawPolyline(Points.begin(), int(Points.size()));
}

void Shape(QPainter& Painter, std::initializer_list<QPointF> Points)
{
    Painter.drawPolygon(Points.begin(), int(Points.size()));
}

// A sheet with a folded corner, its left top at X, Y.
void Sheet(QPainter& Painter, const Colors& Use, double X, double Y, double Width, double Height)
{
    constexpr double fold = 4;
    const double right = X + Width;
    const double bottom = Y + Height;
    Outline(Painter, Use.Line);
    Painter.setBrush(Use.Paper);
    Shape(Painter, {{X, Y}, {right - fold, Y}, {right, Y + fold}, {right, bottom}, {X, bottom}});
    Painter.setBrush(Qt::NoBrush);
    Line(Painter, {{right - fold, Y}, {right - fold, Y + fold}, {right, Y + fold}});
}

void ArrowDown(QPainter& Painter, const QColor& Color, double X, double Top, double Bottom)
{
    Fill(Painter, Color);
    Painter.drawRect(QRectF(X - 1.6, Top, 3.2, Bottom - Top - 4));
    Shape(Painter, {{X - 5, Bottom - 5.5}, {X + 5, Bottom - 5.5}, {X, Bottom}});
}

// The sheet of a page of the list with an arrow to one side; Turn is 1 to the right and -1 to the left.
void PageArrow(QPainter& Painter, const Colors& Use, double Turn)
{
    Painter.translate(12, 12);
    Painter.scale(Turn, 1);
    Fill(Painter, Use.Blue);
    Shape(Painter, {{-9.5, -3}, {0, -3}, {0, -8}, {9.5, 0}, {0, 8}, {0, 3}, {-9.5, 3}});
}

void Back(QPainter& Painter, const Colors& Use) { PageArrow(Painter, Use, -1); }

void Forword(QPainter& Painter, const Colors& Use) { PageArrow(Painter, Use, 1); }

void Board(QPainter& Painter, const Colors& Use)
{
    Outline(Painter, Use.Line);
    Line(Painter, {{7, 18}, {5.5, 22}});
    Line(Painter, {{17, 18}, {18.5, 22}});
    Painter.setBrush(Use.Amber);
    Painter.drawRoundedRect(QRectF(2, 4, 20, 14), 2, 2);
    Fill(Painter, Use.Paper);
    Painter.drawRect(QRectF(4.8, 6.8, 6.2, 8.4));
    Painter.drawRect(QRectF(13, 6.8, 6.2, 5.2));
    Fill(Painter, Use.Red);
    Painter.drawEllipse(QPointF(7.9, 7), 1.4, 1.4);
    Fill(Painter, Use.Blue);
    Painter.drawEllipse(QPointF(16.1, 7), 1.4, 1.4);
}

void Close(QPainter& Painter, const Colors& Use)
{
    Outline(Painter, Use.Line);
    Painter.setBrush(Use.Paper);
    Painter.drawRoundedRect(QRectF(2.5, 3.5, 19, 17), 2, 2);
    Outline(Painter, Use.Red, 2.8);
    Line(Painter, {{8, 8}, {16, 16}});
    Line(Painter, {{16, 8}, {8, 16}});
}

void Load(QPainter& Painter, const Colors& Use)
{
    Outline(Painter, Use.Line);
    Line(Painter, {{3, 14.5}, {3, 21}, {21, 21}, {21, 14.5}});
    ArrowDown(Painter, Use.Green, 12, 2.5, 17.5);
}

void VisitLoad(QPainter& Painter, const Colors& Use)
{
    Outline(Painter, Use.Line, 2.2);
    const QRectF circle(3, 3, 18, 18);
    Painter.drawArc(circle, 65 * 16, 170 * 16);
    Painter.drawArc(circle, 245 * 16, 170 * 16);
    Fill(Painter, Use.Line);
    Shape(Painter, {{13.5, 0.5}, {18.6, 4.8}, {12.4, 7}});
    Shape(Painter, {{10.5, 23.5}, {5.4, 19.2}, {11.6, 17}});
    ArrowDown(Painter, Use.Green, 12, 6.8, 17.5);
}

void New(QPainter& Painter, const Colors& Use)
{
    Sheet(Painter, Use, 3.5, 2.5, 14, 18.5);
    Outline(Painter, Use.Line, 1.3);
    Line(Painter, {{7, 9}, {13.5, 9}});
    Line(Painter, {{7, 12.5}, {11.5, 12.5}});
    Painter.translate(16.5, 15.5);
    Painter.rotate(45);
    Outline(Painter, Use.Line, 1.2);
    Painter.setBrush(Use.Amber);
    Painter.drawRect(QRectF(-2, -8, 4, 11.5));
    Painter.setBrush(Use.Paper);
    Shape(Painter, {{-2, 3.5}, {2, 3.5}, {0, 7.5}});
    Painter.setBrush(Use.Red);
    Painter.drawRect(QRectF(-2, -9.5, 4, 2.4));
}

void Reply(QPainter& Painter, const Colors& Use)
{
    QPainterPath arrow(QPointF(2.5, 10));
    arrow.lineTo(10.5, 2.5);
    arrow.lineTo(10.5, 7);
    arrow.cubicTo(17.5, 7, 21.5, 11.5, 21.5, 20.5);
    arrow.cubicTo(19, 15.2, 16, 13.2, 10.5, 13.2);
    arrow.lineTo(10.5, 17.5);
    arrow.closeSubpath();
    Outline(Painter, Use.Line, 1.2);
    Painter.setBrush(Use.Green);
    Painter.drawPath(arrow);
}

void Glass(QPainter& Painter, const Colors& Use)
{
    Outline(Painter, Use.Line, 3.2);
    Line(Painter, {{14, 14}, {20.5, 20.5}});
    Outline(Painter, Use.Line, 2);
    Painter.setBrush(Use.Paper);
    Painter.drawEllipse(QPointF(9.2, 9.2), 6.6, 6.6);
}

void FindNext(QPainter& Painter, const Colors& Use)
{
    Glass(Painter, Use);
    Fill(Painter, Use.Blue);
    Shape(Painter, {{5.2, 7.4}, {13.2, 7.4}, {9.2, 12.8}});
}

void FindPrev(QPainter& Painter, const Colors& Use)
{
    Glass(Painter, Use);
    Fill(Painter, Use.Blue);
    Shape(Painter, {{5.2, 11}, {13.2, 11}, {9.2, 5.6}});
}

void FindText(QPainter& Painter, const Colors& Use) { Glass(Painter, Use); }

void Thread(QPainter& Painter, const Colors& Use)
{
    Outline(Painter, Use.Line);
    Line(Painter, {{5.5, 6}, {5.5, 19}, {11, 19}});
    Line(Painter, {{5.5, 12}, {11, 12}});
    Outline(Painter, Use.Line, 1.2);
    Painter.setBrush(Use.Blue);
    Painter.drawRoundedRect(QRectF(2.5, 2.5, 12, 5), 1, 1);
    Painter.setBrush(Use.Paper);
    Painter.drawRoundedRect(QRectF(11, 9.5, 10.5, 5), 1, 1);
    Painter.drawRoundedRect(QRectF(11, 16.5, 10.5, 5), 1, 1);
}

// The drum that stands for a database, with a funnel before it.
void Query(QPainter& Painter, const Colors& Use)
{
    QPainterPath drum(QPointF(2.5, 5));
    drum.lineTo(2.5, 17);
    drum.cubicTo(2.5, 21, 15.5, 21, 15.5, 17);
    drum.lineTo(15.5, 5);
    drum.closeSubpath();
    Outline(Painter, Use.Line, 1.4);
    Painter.setBrush(Use.Paper);
    Painter.drawPath(drum);
    Painter.drawArc(QRectF(2.5, 8, 13, 6), 180 * 16, 180 * 16);
    Painter.setBrush(Use.Blue);
    Painter.drawEllipse(QRectF(2.5, 2, 13, 6));
    Painter.setBrush(Use.Amber);
    Shape(Painter, {{10.5, 11.5}, {22.5, 11.5}, {18, 17}, {18, 22.5}, {15, 20.5}, {15, 17}});
}

void Timer(QPainter& Painter, const Colors& Use)
{
    Outline(Painter, Use.Line, 1.8);
    Painter.setBrush(Use.Paper);
    Painter.drawEllipse(QPointF(12, 13), 8.6, 8.6);
    Line(Painter, {{9.5, 1.8}, {14.5, 1.8}});
    Line(Painter, {{12, 1.8}, {12, 4}});
    Outline(Painter, Use.Red, 2);
    Line(Painter, {{12, 7.5}, {12, 13}, {16, 15.5}});
}

// Three sliders.
void Option(QPainter& Painter, const Colors& Use)
{
    constexpr double knobs[3][2] = {{8, 5.5}, {16, 12}, {6.5, 18.5}};
    for (const auto& knob : knobs) {
        Outline(Painter, Use.Line);
        Line(Painter, {{2.5, knob[1]}, {21.5, knob[1]}});
        Painter.setBrush(Use.Blue);
        Painter.drawEllipse(QPointF(knob[0], knob[1]), 2.7, 2.7);
    }
}

// What the toolbar has no room for.
void More(QPainter& Painter, const Colors& Use)
{
    Outline(Painter, Use.Line, 2.6);
    Line(Painter, {{6, 5}, {12, 12}, {6, 19}});
    Line(Painter, {{13, 5}, {19, 12}, {13, 19}});
}

// The program's sign: a board of messages on a blue tile. It carries its own ground and needs no palette.
void Tile(QPainter& Painter)
{
    Fill(Painter, QColor(0x1f, 0x6f, 0xb5));
    Painter.drawRoundedRect(QRectF(1, 1, 22, 22), 4.5, 4.5);
    Fill(Painter, QColor(0xff, 0xff, 0xff));
    Painter.drawRoundedRect(QRectF(4.5, 5, 15, 11), 1.6, 1.6);
    Shape(Painter, {{7.5, 15.5}, {13, 15.5}, {7.5, 20.5}});
    Outline(Painter, QColor(0x1f, 0x6f, 0xb5), 1.5);
    Line(Painter, {{7.3, 8.6}, {13, 8.6}});
    Line(Painter, {{7.3, 12}, {16.7, 12}});
    Fill(Painter, QColor(0xf0, 0x8c, 0x1e));
    Painter.drawEllipse(QPointF(18.6, 5.6), 3.4, 3.4);
}

void MainIcon(QPainter& Painter, const Colors&) { Tile(Painter); }

// A frame of the receiving animation: the arrow comes down onto the tile in three steps.
void Frame(QPainter& Painter, double Bottom)
{
    Tile(Painter);
    Painter.setClipRect(QRectF(0, 0, Side, Side));
    Outline(Painter, Qt::white, 1.6);
    Painter.setBrush(QColor(0x2e, 0x9e, 0x4f));
    Shape(Painter, {{13.5, Bottom - 13},
                    {18.5, Bottom - 13},
                    {18.5, Bottom - 6},
                    {22, Bottom - 6},
                    {16, Bottom},
                    {10, Bottom - 6},
                    {13.5, Bottom - 6}});
}

void Frame1(QPainter& Painter, const Colors&) { Frame(Painter, 14); }

void Frame2(QPainter& Painter, const Colors&) { Frame(Painter, 18.5); }

void Frame3(QPainter& Painter, const Colors&) { Frame(Painter, 23); }

constexpr Picture Pictures[] = {
    {u"BBSList", Board},       {u"Back", Back},           {u"Forword", Forword},
    {u"Load", Load},           {u"VisitLoad", VisitLoad}, {u"New", New},
    {u"Reply", Reply},         {u"FindText", FindText},   {u"FindNext", FindNext},
    {u"FindPrev", FindPrev},   {u"Thread", Thread},       {u"SQL", Query},
    {u"Timer", Timer},         {u"Option", Option},       {u"Board", Board},
    {u"Close", Close},         {u"More", More},           {u"MAINICON", MainIcon},
    {u"SMALLICON1", Frame1},   {u"SMALLICON2", Frame2},   {u"SMALLICON3", Frame3},
    {u"SMALLICON4", MainIcon},
};

} // namespace

Colors ColorsFor(const QPalette& Palette)
{
    const bool isDark = Palette.color(QPalette::Window).lightness() < Palette.color(QPalette::WindowText).lightness();
    if (isDark)
        return {QColor(0xd8, 0xdc, 0xe2), QColor(0x45, 0x4c, 0x57), QColor(0x6a, 0xb0, 0xf5),
                QColor(0x5f, 0xc9, 0x7c), QColor(0xff, 0x7b, 0x6e), QColor(0xf2, 0xb1, 0x4d)};
    return {QColor(0x3b, 0x42, 0x4d), QColor(0xff, 0xff, 0xff), QColor(0x1f, 0x6f, 0xb5),
            QColor(0x23, 0x8a, 0x43), QColor(0xc6, 0x35, 0x2b), QColor(0xe2, 0x96, 0x1e)};
}

std::span<const Picture> All() { return Pictures; }

} // namespace mdlPictures

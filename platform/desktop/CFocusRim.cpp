// platform/desktop/CFocusRim.cpp
// A rim in the colour of selections around the scrolled control that has the keyboard focus.

#include "platform/desktop/CFocusRim.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QPainter>
#include <QRegion>

using namespace Qt::StringLiterals;

CFocusRim::CFocusRim(QAbstractScrollArea& Area)
    : QWidget(&Area)
    , m_area(Area)
{
    setObjectName(u"focusRim"_s);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    Area.installEventFilter(this);
    Follow();
}

void CFocusRim::Follow()
{
    const QRect all = m_area.rect();
    setGeometry(all);
    setMask(QRegion(all) - all.adjusted(Thickness, Thickness, -Thickness, -Thickness));
    setVisible(m_area.hasFocus());
    raise();
}

bool CFocusRim::eventFilter(QObject* Watched, QEvent* Event)
{
    switch (Event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::Resize:
        Follow();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(Watched, Event);
}

void CFocusRim::paintEvent(QPaintEvent*) { QPainter(this).fillRect(rect(), palette().color(QPalette::Highlight)); }

// load/CPaintPause.cpp
// Keeps a widget that changes with every record from being painted every time.

#include "load/CPaintPause.h"

#include <QWidget>

CPaintPause::CPaintPause(QWidget& Painted)
    : QTimer(&Painted)
    , m_painted(Painted)
{
    setSingleShot(true);
    connect(this, &QTimer::timeout, &m_painted, [this] {
        m_painted.setUpdatesEnabled(true);
        m_painted.repaint(); // one that is only asked for would come after the next change, which forbids it again
    });
}

void CPaintPause::Hold()
{
    m_painted.setUpdatesEnabled(false);
    if (!isActive())
        start(PaintMs);
}

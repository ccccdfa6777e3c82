// load/CPaintPause.h
// Keeps a widget that changes with every record from being painted every time.

#ifndef LOAD_CPAINTPAUSE_H
#define LOAD_CPAINTPAUSE_H

#include <QTimer>

class QWidget;

/// Holds back the paintings of one widget and makes up for them a few times a second, also while a run leaves the event
/// loop no more than a moment between two records.
class CPaintPause : public QTimer
{
    Q_OBJECT

public:
    /// Milliseconds between two paintings.
    static constexpr int PaintMs = 30;

    /// A child of Painted.
    explicit CPaintPause(QWidget& Painted);

    /// To be called before each change: it is painted within PaintMs.
    void Hold();

private:
    QWidget& m_painted;
};

#endif

// controls/CElidedLabel.h
// A label of one line that shows where its text does not fit.

#ifndef CONTROLS_CELIDEDLABEL_H
#define CONTROLS_CELIDEDLABEL_H

#include <QLabel>

/// Ends in "…" where its text is cut off: half a letter at the edge would pass for the end of it. For plain texts;
/// whoever makes it lets it become narrower than its text and gives it a tip.
class CElidedLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent* Event) override;
};

#endif

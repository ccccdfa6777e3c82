// mainwin/frmSplash.h
// The picture that stands on the screen while the program starts.

#ifndef MAINWIN_FRMSPLASH_H
#define MAINWIN_FRMSPLASH_H

#include <QWidget>

class QLabel;

/// Program icon, name, version and description; no buttons, no timer. The start-up shows and closes it.
class frmSplash : public QWidget
{
    Q_OBJECT

public:
    frmSplash();

protected:
    void paintEvent(QPaintEvent* Event) override;

private:
    QLabel* AddLabel(const QString& Name, const QString& Text, double FontScale);
    QWidget* BuildTexts();
};

#endif

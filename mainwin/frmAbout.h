// mainwin/frmAbout.h
// The version window: icon, name, version, credits and the links to the community.

#ifndef MAINWIN_FRMABOUT_H
#define MAINWIN_FRMABOUT_H

#include <QDialog>

class Desktop;
class QGridLayout;
class QLabel;

class frmAbout : public QDialog
{
    Q_OBJECT

public:
    /// Shell opens the links; it must outlive the window.
    frmAbout(Desktop& Shell, QWidget* Owner);

    /// Shows the window over Owner and returns when the user has closed it.
    static void ShowVersionInfo(Desktop& Shell, QWidget* Owner);

private:
    QLabel* MakeLabel(const QString& Name, const QString& Text);
    void AddTitle(QGridLayout& Grid);
    void AddLink(Desktop& Shell, QGridLayout& Grid, const QString& Name, const QString& Title, const QString& Address);
    void AddButton(QGridLayout& Grid);
};

#endif

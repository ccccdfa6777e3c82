// settings_ui/CPageFrame.h
// The frame that holds one page of a dialog with tabs.

#ifndef SETTINGS_UI_CPAGEFRAME_H
#define SETTINGS_UI_CPAGEFRAME_H

#include <QScrollArea>

/// Asks for as much room as its page, and scrolls where the screen does not have it.
class CPageFrame : public QScrollArea
{
    Q_OBJECT

public:
    /// Takes Page over.
    CPageFrame(QWidget* Page, QWidget* Parent);

    QSize sizeHint() const override { return widget()->sizeHint(); }
};

#endif

// settings_ui/CPageFrame.cpp
// The frame that holds one page of a dialog with tabs.

#include "settings_ui/CPageFrame.h"

CPageFrame::CPageFrame(QWidget* Page, QWidget* Parent)
    : QScrollArea(Parent)
{
    setWidget(Page);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus); // the fields of the page bring themselves into view
    Page->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false); // what lies behind is the tab's
}

// mainwin/frmViewPlace.cpp
// The main window: its place on the screen, what of its looks is kept, and the way of the Tab key through it.

#include "mainwin/frmView.h"

#include "app/Application.h"
#include "controls/uSeparator.h"
#include "mainwin/CListView.h"
#include "mainwin/CMessagePane.h"
#include "mainwin/CStatusPanels.h"
#include "mainwin/CTextZoom.h"
#include "mainwin/CToolbar.h"
#include "platform/desktop/Geometry.h"
#include "platform/desktop/WindowServices.h"
#include "viewer/CViewer.h"

#include <QComboBox>
#include <QHeaderView>

namespace
{

constexpr QSize DefaultSize(960, 700); // pixels at 100 %
constexpr QSize LeastSize(300, 220);   // below it neither list nor text has a line left

/// Where a smaller screen cuts the window, it stays divided as it was: the text would have no line left else.
int OffsetIn(int Offset, std::optional<int> OldHeight, int NewHeight)
{
    const int oldPixels = mdlGeometry::ToPixels(OldHeight.value_or(0));
    return oldPixels > NewHeight ? static_cast<int>(qint64{Offset} * NewHeight / oldPixels) : Offset;
}

} // namespace

void frmView::PlaceWindow()
{
    const mdlPosition::Position saved = mdlPosition::Read(m_app.SettingsIni());
    setMinimumSize(LeastSize);
    setGeometry(mdlGeometry::Restored(saved.Window, mdlGeometry::Centred(DefaultSize)));
    if (saved.Separator) { // above the window nobody finds it
        const int offset = OffsetIn(*saved.Separator, saved.Window.Height, height());
        m_separator->SetOffset(qMax(offset, m_separator->SideMin()));
    }
    mdlPosition::PlaceColumns(saved, *View(CViewer::BoardList).header());
    m_textZoom->SetChosen(saved.TextSize);
    ShowPlaced(saved.WindowState);
}

void frmView::ShowPlaced(int WindowState)
{
    if (WindowState == mdlPosition::Maximised)
        showMaximized();
    else if (WindowState == mdlPosition::Minimised)
        showMinimized();
    else
        show();
}

mdlPosition::Position frmView::CurrentPosition() const
{
    const bool isOpen = isVisible() && !isMinimized(); // hidden is minimised as well
    const bool isMaximised = windowState().testFlag(Qt::WindowMaximized) && isOpen;
    mdlPosition::Position now;
    now.WindowState = isMaximised ? mdlPosition::Maximised : mdlPosition::Normal;
    now.Window = mdlGeometry::ToPlace(mdlWindow::GetNormalWindowRect(this));
    now.Separator = m_separator->Offset();
    mdlPosition::TakeColumns(now, *View(CViewer::BoardList).header());
    now.TextSize = m_textZoom->Chosen();
    return now;
}

/// From the list to the text, on to the find box and the links below. The bar comes last: who reads goes from
/// list to text and back all the time, and hardly ever moves the bar.
void frmView::BuildTabOrder()
{
    QList<QWidget*> stops = {&View(CViewer::BoardList), &View(CViewer::ResultList), m_pane, &m_toolbar->FindBox()};
    stops << m_panels->TabStops() << m_separator;
    for (qsizetype stop = 1; stop < stops.size(); ++stop)
        setTabOrder(stops[stop - 1], stops[stop]);
}

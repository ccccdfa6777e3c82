// viewer/CFinder.cpp
// A find step: the shown message, then the rows one by one; nothing is touched before something is found.

#include "viewer/CFinder.h"

#include "app/Application.h"
#include "board/CBBS.h"
#include "board/work_watch.h"
#include "viewer/CRegExp.h"
#include "viewer/CViewer.h"

using namespace Qt::StringLiterals;

CFinder::CFinder(const Application& App, const CBBS& Board, CViewer& Viewer, ViewerHost& Host)
    : m_app(App)
    , m_bbs(Board)
    , m_viewer(Viewer)
    , m_host(Host)
{}

CMessageList& CFinder::List() const { return m_viewer.List(m_viewer.CurrentList()); }

CFinder::Outcome CFinder::Find(const QString& Text, bool Forward)
{
    m_trouble.clear();
    m_givenUpCount = 0;
    CRegExp sought;
    sought.SetRegExpMode(m_app.Option().UseRegExp);
    sought.SetIgnoreCase(m_app.Option().IgnoreCase);
    sought.SetPattern(Text);
    if (sought.RegExpMode() && !sought.RegExp().IsValid()) {
        m_trouble = sought.RegExp().ErrorText();
        return Outcome::NotFound;
    }
    const Outcome outcome = FindInShown(sought, Forward) ? Outcome::InText : FindInList(sought, Forward);
    if (m_givenUpCount > 0)
        m_trouble =
            u"正規表現の検索に時間がかかりすぎるため、%1 件のメッセージを調べられませんでした。"_s.arg(m_givenUpCount);
    return outcome;
}

bool CFinder::FindInShown(CRegExp& Sought, bool Forward)
{
    if (!IsFocusShown())
        return false;
    const QString& body = List().Item(List().Focus()).Message.Body;
    const ViewerHost::BodyRange selected = m_host.PaneSelection();
    const bool isFound =
        Forward ? Sought.Search(body, selected.Start + selected.Length) : Sought.SearchRev(body, selected.Start);
    m_givenUpCount += Sought.HasGivenUp() ? 1 : 0;
    if (!isFound)
        return false;
    KeepOnlyFocusSelected();
    m_host.SelectInPane({Sought.FirstIndex(), Sought.Length()});
    return true;
}

/// While several messages are selected, the pane may still show another one than the focused.
bool CFinder::IsFocusShown() const
{
    const int focus = List().Focus();
    return focus >= 0 && !List().IsRaw() && m_viewer.ShownMessage() == List().Item(focus).Id();
}

void CFinder::KeepOnlyFocusSelected()
{
    const int focus = List().Focus();
    if (List().SelectedCount() == 1 && List().IsSelected(focus))
        return;
    List().SetSelection({{focus, focus}}, focus);
    m_host.SelectionChanged(m_viewer.CurrentList());
}

CFinder::Outcome CFinder::FindInList(CRegExp& Sought, bool Forward)
{
    const int step = Forward ? 1 : -1;
    const int focus = List().Focus();
    int row = focus < 0 ? (Forward ? 0 : List().Count() - 1) : focus;
    if (focus >= 0 && (List().IsRaw() || IsFocusShown()))
        row += step;
    bool isFound = false;
    {
        const CWatchedWork watched(m_bbs.Watch(), Work::Find);
        for (; !isFound && row >= 0 && row < List().Count(); row += isFound ? 0 : step) {
            if (!watched.GoesOn())
                return Outcome::BrokenOff;
            isFound = Matches(Sought, row, Forward);
        }
    }
    return isFound ? Show(row, Sought) : Outcome::NotFound;
}

bool CFinder::Matches(CRegExp& Sought, int Row, bool Forward)
{
    const auto matches = [&](const QString& Text) {
        const bool isFound = Forward ? Sought.Search(Text) : Sought.SearchRev(Text);
        m_givenUpCount += Sought.HasGivenUp() ? 1 : 0;
        return isFound;
    };
    if (!List().IsRaw())
        return matches(List().Item(Row).Message.Body);
    for (int column = 0; column < List().ColumnCount(); ++column) {
        if (matches(List().Text(Row, column)))
            return true;
    }
    return false;
}

CFinder::Outcome CFinder::Show(int Row, const CRegExp& Sought)
{
    const bool isRaw = List().IsRaw();
    List().ClearSelection();
    m_viewer.ShowMessage(m_viewer.CurrentList(), Row, false);
    if (isRaw)
        return Outcome::InRow;
    m_host.SelectInPane({Sought.FirstIndex(), Sought.Length()});
    return Outcome::InText;
}

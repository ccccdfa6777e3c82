// viewer/CFinder.h
// Looks for a text from the caret of the message pane onwards, through the bodies of the list in front.

#ifndef VIEWER_CFINDER_H
#define VIEWER_CFINDER_H

#include <QString>

class Application;
class CBBS;
class CRegExp;
class CViewer;
class CMessageList;
class ViewerHost;

/// One find step at a time; nothing is kept from one to the next but Trouble.
///
/// First comes the shown message, behind the pane's selection (before it when going back), then the messages next to
/// the focused one, up to the end (the start) of the list; there is no wrapping around. Which matches a message has
/// does not depend on where the selection is: ^ is the start of the body only, and going back takes no match that
/// reaches into the selection. Rows that are no messages are searched by their cells.
class CFinder
{
public:
    enum class Outcome {
        InText,   ///< the match is selected in the pane, which has the focus
        InRow,    ///< a row that is no message holds the text and has become the focused one
        NotFound, ///< selection, focus and text are as they were
        BrokenOff ///< by the user; the same
    };

    /// All four must outlive the finder.
    CFinder(const Application& App, const CBBS& Board, CViewer& Viewer, ViewerHost& Host);

    /// Finds Text, which is an expression when the settings say so. Shows that it works, and can be broken off, when
    /// it takes long.
    Outcome Find(const QString& Text, bool Forward);

    /// What the user should know of the last Find: the expression has a fault, or some messages could not be searched
    /// in the time that one may take. Empty without trouble.
    QString Trouble() const { return m_trouble; }

private:
    bool FindInShown(CRegExp& Sought, bool Forward);
    Outcome FindInList(CRegExp& Sought, bool Forward);
    bool Matches(CRegExp& Sought, int Row, bool Forward);
    Outcome Show(int Row, const CRegExp& Sought);
    bool IsFocusShown() const;
    void KeepOnlyFocusSelected();
    CMessageList& List() const;

    const Application& m_app;
    const CBBS& m_bbs;
    CViewer& m_viewer;
    ViewerHost& m_host;
    QString m_trouble;
    int m_givenUpCount = 0;
};

#endif // VIEWER_CFINDER_H

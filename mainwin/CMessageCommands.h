// mainwin/CMessageCommands.h
// The commands that hand a message, or the selected text of the message pane, to other programs.

#ifndef MAINWIN_CMESSAGECOMMANDS_H
#define MAINWIN_CMESSAGECOMMANDS_H

#include "board/CMessage.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

class Application;
class CBBS;
class CViewer;

/// Writing to a board, mail and home page of the author, web pages, the clipboard. Without a window.
///
/// Whatever comes out of a message or out of the database is opened as foreign text: Desktop decides, and tells the
/// user when it refuses. A program that does not start is not reported. What the database refuses reaches the caller as
/// dao::Error.
class CMessageCommands
{
public:
    /// The pages of a board besides those to write on.
    enum class Page { Board, DisplaySettings, Usage };

    /// An entry of the web-search menu. In Address every "%s" stands for the encoded text.
    struct WebSearch
    {
        QString Caption;
        QString Address;
        bool operator==(const WebSearch&) const = default;
    };

    /// All of them must outlive this object. SelectedText gives what is selected in the message pane, its lines ending
    /// in CR LF.
    CMessageCommands(Application& App, CBBS& Board, CViewer& Viewer, std::function<QString()> SelectedText);

    /// The message in the list in front that a command for a single one means: the focused one if it is selected,
    /// otherwise the first selected one. Empty without a selection and over a raw table.
    std::optional<CMessage> SelectedMessage() const;

    void NewPost(qint32 BBS_ID);
    /// Answers on side 0 (left) or 1 (right) of the two-sided board; the user is told when there is no such board.
    void TwoSidedReply(int Side);
    void ShowPage(Page Which);

    void Mail();
    void HomePage();

    /// Opens the selected text, put together from its lines, as an address.
    void OpenSelection();
    /// Entries of the section "WebSearch", in its order. Search goes by the entries read last.
    const std::vector<WebSearch>& ReadWebSearches();
    /// Looks for the selected text with entry Number, counted from 1.
    void Search(int Number);

    /// The selected rows of the list in front; without any the clipboard stays as it is.
    void CopyRows();
    void Copy();
    /// The selected text under the header of the setting ReplyHeader, which names the board on view.
    void CopyWithHeader();

    /// Opens ReadMe.txt, which lies in the program's folder or in that of its data.
    void ShowHelp();

private:
    void Tell(const QString& Text);

    Application& m_app;
    CBBS& m_bbs;
    CViewer& m_viewer;
    std::function<QString()> m_selectedText;
    std::vector<WebSearch> m_searches;
};

#endif

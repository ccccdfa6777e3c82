// mainwin/CMessageCommands.cpp
// The commands that hand a message, or the selected text of the message pane, to other programs.

#include "mainwin/CMessageCommands.h"

#include "app/AppPath.h"
#include "app/Application.h"
#include "board/CBBS.h"
#include "platform/dao/Database.h"
#include "platform/dao/Recordset.h"
#include "platform/desktop/desktop.h"
#include "platform/text/Format.h"
#include "viewer/CViewer.h"
#include "viewer/mdlRowText.h"

#include <QCoreApplication>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{

QString LineEnd() { return u"\r\n"_s; }

QString Quoted(QString Text) { return u"> "_s + Text.replace(LineEnd(), LineEnd() + u"> "_s); }

} // namespace

CMessageCommands::CMessageCommands(Application& App, CBBS& Board, CViewer& Viewer,
                                   std::function<QString()> SelectedText)
    : m_app(App)
    , m_bbs(Board)
    , m_viewer(Viewer)
    , m_selectedText(std::move(SelectedText))
{}

std::optional<CMessage> CMessageCommands::SelectedMessage() const
{
    const CMessageList& list = m_viewer.List(m_viewer.CurrentList());
    if (list.IsRaw() || list.SelectedCount() == 0)
        return std::nullopt;
    const int focus = list.Focus();
    const bool isFocusSelected = focus >= 0 && list.IsSelected(focus);
    return list.Item(isFocusSelected ? focus : list.SelectedRanges().front().First).Message;
}

void CMessageCommands::Tell(const QString& Text)
{
    m_app.Shell.MessageBox(Text, m_app.AppTitle(), Desktop::Icon::Information);
}

// Boards

void CMessageCommands::NewPost(qint32 BBS_ID) { m_bbs.Send({.BBS_ID = BBS_ID}, false); }

void CMessageCommands::TwoSidedReply(int Side)
{
    const auto message = SelectedMessage();
    if (!message || !m_app.LogDB())
        return;
    const auto rows =
        m_app.LogDB()->OpenRecordset(u"SELECT BBS_ID  FROM BBS WHERE Hitokoto = "_s + QString::number(Side));
    if (rows->Eof())
        return Tell(u"ひとことに返信できませんでした。"_s);
    NewPost(rows->Long(0));
}

void CMessageCommands::ShowPage(Page Which)
{
    const CBBSProperty& board = m_viewer.BoardProperty();
    if (Which == Page::Usage && board.HowtouseURL.trimmed().isEmpty())
        return Tell(u"この掲示板には、つかいかたのページがありません。"_s);
    if (Which != Page::Usage && board.URL.trimmed().isEmpty())
        return Tell(u"この掲示板にはアドレスが設定されていません。"_s);
    const QString addresses[] = {board.GetShowURL(), board.GetShowCookiePageURL(), board.HowtouseURL};
    m_app.Shell.ShellOpen(addresses[int(Which)]);
}

// The author

void CMessageCommands::Mail()
{
    const QString scheme = u"mailto:"_s;
    const auto message = SelectedMessage();
    if (!message || message->Mail.isEmpty())
        return;
    const bool hasScheme = message->Mail.startsWith(scheme, Qt::CaseInsensitive); // some type it into the form
    m_app.Shell.ShellOpen(hasScheme ? message->Mail : scheme + message->Mail);
}

void CMessageCommands::HomePage()
{
    if (const auto message = SelectedMessage(); message && !message->HomePage.isEmpty())
        m_app.Shell.ShellOpen(message->HomePage);
}

// The selected text

void CMessageCommands::OpenSelection()
{
    QString address = m_selectedText();
    address.remove(u'\r').remove(u'\n');
    m_app.Shell.ShellOpen(address.trimmed());
}

const std::vector<CMessageCommands::WebSearch>& CMessageCommands::ReadWebSearches()
{
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(u"WebSearch"_s);
    m_searches.clear();
    const QStringList keys = ini.Keys();
    for (const QString& key : keys)
        m_searches.push_back({key, ini.Data(key)});
    return m_searches;
}

void CMessageCommands::Search(int Number)
{
    if (Number < 1 || Number > int(m_searches.size()))
        return;
    QString address = m_searches[std::size_t(Number - 1)].Address;
    m_app.Shell.ShellOpen(address.replace(u"%s"_s, mdlSettings::URLEncode(m_selectedText())));
}

void CMessageCommands::CopyRows()
{
    if (const QString rows = mdlRowText::Selected(m_viewer.List(m_viewer.CurrentList())); !rows.isEmpty())
        m_app.Shell.SetClipboard(rows);
}

void CMessageCommands::Copy()
{
    if (const QString text = m_selectedText(); !text.isEmpty())
        m_app.Shell.SetClipboard(text);
}

/// The fields are put in one after the other, as users of the format know it: what a field brings is searched for the
/// later ones.
void CMessageCommands::CopyWithHeader()
{
    const CBBSProperty& board = m_viewer.BoardProperty();
    const CMessage shown = SelectedMessage().value_or(CMessage{});
    const QString selected = m_selectedText();
    QString copy = m_app.Option().ReplyHeader;
    copy.replace(u"%n"_s, board.Name);
    copy.replace(u"%s"_s, board.ShortName);
    copy.replace(u"%I"_s, shown.ID != 0 ? QString::number(shown.ID) : QString());
    copy.replace(u"%S"_s, shown.Subject);
    copy.replace(u"%N"_s, shown.PostName);
    copy.replace(u"%D"_s, text::FormatDate(shown.PostDate, m_app.Option().DateFormat));
    copy.replace(u"\\n"_s, LineEnd());
    copy.replace(u"%b"_s, selected);
    copy.replace(u"%B"_s, Quoted(selected));
    m_app.Shell.SetClipboard(copy);
}

// The program

void CMessageCommands::ShowHelp()
{
    const QString file =
        mdlAppPath::FindProgramFile(u"ReadMe.txt"_s, m_app.AppPath(), QCoreApplication::applicationDirPath());
    if (file.isEmpty() || !m_app.Shell.ShellOpenOwn(file))
        Tell(u"ヘルプファイル(ReadMe.txt)が開けませんでした。"_s);
}

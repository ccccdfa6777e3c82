// boardd/BoardPages.cpp
// Putting the pages of a board together from fragments that were rendered when the messages came in.

#include "boardd/BoardPages.h"

#include "boardd/Limits.h"
#include "boardd/MessageHtml.h"
#include "boardd/Record.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;
using mdlMessageHtml::Escape;
using mdlMessageHtml::ScriptPath;

namespace
{

QString Link(const QString& Address, const QString& Text)
{
    return u"<A HREF=\""_s + Escape(Address) + u"\">"_s + Text + u"</A>"_s;
}

/// "?dousa=sinki", with the side where the board has two.
QString ScriptLink(const CBoardInfo& Board, const QString& Query, const QString& Text)
{
    const QString side = Board.IsTwoSided() ? u"&l_or_r="_s + QString::number(Board.Side) : QString();
    return u"["_s + Link(ScriptPath(Board) + Query + side, Text) + u"]"_s;
}

QString Heading(const CBoardInfo& Board)
{
    return u"<H2><IMG SRC=\"/icon/"_s + Board.Identifier + u".png\" WIDTH=32 HEIGHT=32 ALT=\"\"> "_s +
           Escape(Board.Name) + u"</H2>\n<P>"_s + Escape(Board.Topic) + u"</P>\n"_s;
}

QString Navigation(const CBoardInfo& Board)
{
    return u"<P>"_s + ScriptLink(Board, u"?dousa=sinki"_s, u"新規投稿"_s) + u" "_s +
           ScriptLink(Board, u"?dousa=showcookiepage"_s, u"表示カスタマイズ"_s) + u" ["_s +
           Link(u"/howto/"_s + Board.HowTo + u".html"_s, u"つかいかた"_s) + u"] ["_s +
           Link(u"/kakolog/"_s, u"過去ログ"_s) + u"]</P>\n<HR>\n"_s;
}

QString Input(const QString& Type, const QString& Name, const QString& Value, int Size, int MaxLength)
{
    return u"<INPUT TYPE=\"%1\" NAME=\"%2\" SIZE=%3 MAXLENGTH=%4 VALUE=\""_s.arg(Type, Name).arg(Size).arg(MaxLength) +
           Escape(Value) + u"\">"_s;
}

QString Hidden(const QString& Name, const QString& Value)
{
    return u"<INPUT TYPE=\"hidden\" NAME=\"%1\" VALUE=\"%2\">\n"_s.arg(Name, Escape(Value));
}

QString Row(const QString& Label, const QString& Control)
{
    return u"<TR><TD ALIGN=right>"_s + Label + u"</TD><TD>"_s + Control + u"</TD></TR>\n"_s;
}

/// The browser fills "_charset_" with the encoding that it really used.
QString FormStart(const CBoardInfo& Board, const QString& Action)
{
    return u"<FORM METHOD=\"POST\" ENCTYPE=\"multipart/form-data\" ACCEPT-CHARSET=\"Shift_JIS\" ACTION=\""_s +
           ScriptPath(Board) + u"\">\n"_s + Hidden(u"_charset_"_s, {}) + Hidden(u"dousa"_s, Action) +
           (Board.IsTwoSided() ? Hidden(u"l_or_r"_s, QString::number(Board.Side)) : QString());
}

QString DeleteForm(const CBoardInfo& Board)
{
    return FormStart(Board, u"sakujo"_s) + u"自分のメッセージを消す: 番号 "_s + Input(u"text"_s, u"no"_s, {}, 8, 10) +
           u" パスワード "_s + Input(u"password"_s, u"password"_s, {}, 12, Limits::Password) +
           u" <INPUT TYPE=\"submit\" VALUE=\"消す\">\n</FORM>\n"_s;
}

/// The messages of a page, as [From, To) within those served.
struct CWindow
{
    std::size_t From = 0;
    std::size_t To = 0;
    std::size_t Oldest = 0; // where the messages that the visitor wants begin
    bool OnlyUnread = false;
};

CWindow ChooseWindow(const CBoardLog& Log, const CVisitor& Visitor, qint32 Page)
{
    CWindow window;
    const std::size_t all = Log.Messages().size();
    const auto unread = static_cast<std::size_t>(Log.CountAbove(Visitor.GetNoReadPoint(Log.Info().Side)));
    window.OnlyUnread = Visitor.ShowsUnread() && unread > 0;
    window.Oldest = window.OnlyUnread ? all - unread : 0;
    const auto count = static_cast<std::size_t>(Visitor.GetViewCount());
    const std::size_t skipped = count * static_cast<std::size_t>(Page);
    const std::size_t wanted = all - window.Oldest;
    window.To = skipped < wanted ? all - skipped : window.Oldest;
    window.From = window.To - window.Oldest > count ? window.To - count : window.Oldest;
    return window;
}

QString CountLine(const CBoardLog& Log, const CVisitor& Visitor, const CWindow& Window)
{
    const int unread = Log.CountAbove(Visitor.GetNoReadPoint(Log.Info().Side));
    const QString counts =
        u"ログ保存数 %1件、未読 %2件。"_s.arg(Log.Messages().size()).arg(unread);
    if (Window.OnlyUnread)
        return u"<P>"_s + counts + u"未読のメッセージを表示しています。</P>\n"_s;
    return u"<P>"_s + counts + (unread == 0 ? u"未読はありません。"_s : QString()) +
           u"最新のメッセージを表示しています。</P>\n"_s;
}

QString PageLinks(const CBoardLog& Log, const CWindow& Window, qint32 Page)
{
    const QString side = Log.Info().Side == 0 ? u"leftonly=1&"_s : Log.Info().Side == 1 ? u"rightonly=1&"_s : QString();
    const auto link = [&](qint32 page, const QString& text) {
        return u"["_s + Link(ScriptPath(Log.Info()) + u"?"_s + side + u"page="_s + QString::number(page), text) + u"] "_s;
    };
    QString html;
    if (Page > 0)
        html += link(Page - 1, u"新しい方へ"_s);
    if (Window.From > Window.Oldest)
        html += link(Page + 1, u"古い方へ"_s);
    return html.isEmpty() ? html : u"<P>"_s + html + u"</P>\n"_s;
}

QByteArray MessagesHtml(const CBoardLog& Log, const CVisitor& Visitor, qint32 Page)
{
    const CWindow window = ChooseWindow(Log, Visitor, Page);
    QByteArray html = mdlRecord::Encode(CountLine(Log, Visitor, window));
    const auto shown = Log.Messages().subspan(window.From, window.To - window.From);
    if (shown.empty())
        html += mdlRecord::Encode(u"<P>表示するメッセージはありません。</P>\n"_s);
    if (Visitor.OldestFirst()) {
        for (const CBoardMessage& message : shown)
            html += Log.Fragment(message);
    } else {
        for (auto message = shown.rbegin(); message != shown.rend(); ++message)
            html += Log.Fragment(*message);
    }
    return html + mdlRecord::Encode(PageLinks(Log, window, Page));
}

QByteArray OneBoard(const CCommunity& Community, std::size_t Board, const CVisitor& Visitor, qint32 Page)
{
    const CBoardInfo& info = mdlBoards::All()[Board];
    const QByteArray messages =
        Community.Read(Board, [&](const CBoardLog& log) { return MessagesHtml(log, Visitor, Page); });
    return mdlRecord::Encode(Heading(info) + Navigation(info)) + messages + mdlRecord::Encode(DeleteForm(info));
}

/// A quote of Body, every line with "> " in front.
QString Quoted(const QString& Body)
{
    QStringList lines = Body.split(u'\n');
    for (QString& line : lines)
        line.prepend(u"> "_s);
    return lines.join(u'\n') + u"\n\n"_s;
}

QString ReplyTitle(const QString& Title)
{
    return Title.startsWith(u"Re:") ? Title : (u"Re: "_s + Title).left(Limits::Title);
}

QString PersonRows(const CVisitor& Visitor)
{
    return Row(u"お名前"_s, Input(u"text"_s, u"namae"_s, Visitor.Text(CVisitor::Name), 30, Limits::Name)) +
           Row(u"メール"_s, Input(u"text"_s, u"mail"_s, Visitor.Text(CVisitor::Mail), 40, Limits::Mail)) +
           Row(u"ホームページ"_s, Input(u"text"_s, u"homepage"_s, Visitor.Text(CVisitor::HomePage), 50, Limits::HomePage)) +
           Row(u"パスワード"_s, Input(u"password"_s, u"password"_s, Visitor.Text(CVisitor::Password), 12, Limits::Password) +
                                    u" （あとで消すときに使います）"_s);
}

QString FormHtml(const CBoardInfo& Board, const CVisitor& Visitor, const CBoardMessage& Answered)
{
    QString html = FormStart(Board, u"post"_s);
    if (Answered.Number > 0)
        html += Hidden(u"resno"_s, QString::number(Answered.Number));
    html += u"<TABLE>\n"_s + PersonRows(Visitor);
    const QString title = Answered.Number > 0 ? ReplyTitle(Answered.Title) : QString();
    if (!Board.IsTwoSided())
        html += Row(u"題名"_s, Input(u"text"_s, u"daimei"_s, title, 50, Limits::Title));
    const QString body = Answered.Number == 0  ? QString()
                         : Board.IsTwoSided() ? u"ひ%1> "_s.arg(Answered.Number, 6, 10, QChar(u'0'))
                                              : Quoted(Answered.Body);
    // A browser drops the first line break inside a text area.
    html += Row(u"本文"_s, u"<TEXTAREA NAME=\"honbun\" ROWS=%1 COLS=72>\n"_s.arg(Board.IsTwoSided() ? 3 : 16) +
                               Escape(body) + u"</TEXTAREA>"_s);
    return html + Row({}, u"<INPUT TYPE=\"checkbox\" NAME=\"kioku\" VALUE=\"1\" CHECKED>名前などを覚えておく "
                          "<INPUT TYPE=\"submit\" VALUE=\"投稿する\">"_s) +
           u"</TABLE>\n</FORM>\n"_s;
}

QString Choice(const QString& Name, bool Second, const QString& FirstText, const QString& SecondText)
{
    const auto option = [&](int value, const QString& text) {
        const QString checked = (value == 1) == Second ? u" CHECKED"_s : QString();
        return u"<INPUT TYPE=\"radio\" NAME=\"%1\" VALUE=\"%2\"%3>%4 "_s.arg(Name).arg(value).arg(checked, text);
    };
    return option(0, FirstText) + option(1, SecondText);
}

QString NumberInput(const QString& Name, qint32 Value)
{
    return Input(u"text"_s, Name, QString::number(Value), 8, 9);
}

QString NoReadRows(const CBoardInfo& Board, const CVisitor& Visitor)
{
    if (!Board.IsTwoSided())
        return Row(u"未読位置"_s, NumberInput(u"noreadpoint"_s, Visitor.GetNoReadPoint(-1)));
    return Row(u"未読位置（左）"_s, NumberInput(u"noreadpoint"_s, Visitor.GetNoReadPoint(0))) +
           Row(u"未読位置（右）"_s, NumberInput(u"rightnoreadpoint"_s, Visitor.GetNoReadPoint(1)));
}

} // namespace

QByteArray mdlBoardPages::BoardPage(const CCommunity& Community, const std::vector<std::size_t>& Boards,
                                    const CVisitor& Visitor, qint32 Page)
{
    const QString title = Boards.size() > 1 ? u"やなぎ掲示板"_s : mdlBoards::All()[Boards.front()].Name;
    if (Boards.size() == 1)
        return mdlMessageHtml::Page(title, OneBoard(Community, Boards.front(), Visitor, Page));
    QByteArray content = "<TABLE WIDTH=\"100%\" CELLPADDING=4><TR>\n";
    for (const std::size_t board : Boards)
        content += "<TD VALIGN=top WIDTH=\"50%\">\n" + OneBoard(Community, board, Visitor, Page) + "</TD>\n";
    return mdlMessageHtml::Page(title, content + "</TR></TABLE>\n");
}

QByteArray mdlBoardPages::ThreadPage(const CCommunity& Community, std::size_t Board, qint32 Number)
{
    const CBoardInfo& info = mdlBoards::All()[Board];
    const QByteArray messages = Community.Read(Board, [&](const CBoardLog& log) {
        QByteArray html;
        for (const CBoardMessage* message : log.Thread(Number))
            html += log.Fragment(*message);
        return html;
    });
    if (messages.isEmpty())
        return {};
    const QString back = u"<P>"_s + ScriptLink(info, u"?"_s, u"掲示板に戻る"_s) + u"</P>\n<HR>\n"_s;
    return mdlMessageHtml::Page(info.Name + u" スレッド表示"_s, mdlRecord::Encode(Heading(info) + back) + messages);
}

QByteArray mdlBoardPages::PostForm(const CCommunity& Community, std::size_t Board, const CVisitor& Visitor, qint32 ReplyTo)
{
    const CBoardInfo& info = mdlBoards::All()[Board];
    const CBoardMessage answered = Community.Read(Board, [&](const CBoardLog& log) {
        const CBoardMessage* found = log.Find(ReplyTo);
        return found ? *found : CBoardMessage();
    });
    if (ReplyTo != 0 && answered.Number == 0)
        return {};
    const QString what = ReplyTo == 0 ? u"新規投稿"_s : u"%1番への返信"_s.arg(ReplyTo);
    return mdlMessageHtml::Page(info.Name + u" "_s + what,
                                mdlRecord::Encode(Heading(info) + u"<H3>"_s + what + u"</H3>\n"_s +
                                                  FormHtml(info, Visitor, answered)));
}

QByteArray mdlBoardPages::SettingsForm(const CBoardInfo& Board, const CVisitor& Visitor, bool Saved)
{
    QString html = Heading(Board) + u"<H3>表示カスタマイズ</H3>\n"_s;
    if (Saved)
        html += u"<P><B>設定を保存しました。</B></P>\n"_s;
    html += FormStart(Board, u"setcookie"_s) + u"<TABLE>\n"_s + PersonRows(Visitor) +
            Row(u"１ページの表示件数"_s, NumberInput(u"viewcount"_s, Visitor.GetViewCount())) +
            Row(u"表示順"_s, Choice(u"vieworder"_s, Visitor.OldestFirst(), u"新しい → 古い"_s, u"古い → 新しい"_s)) +
            Row(u"未読読み"_s, Choice(u"noreadview"_s, !Visitor.ShowsUnread(), u"設定する"_s, u"設定しない"_s)) +
            NoReadRows(Board, Visitor) +
            Row(u"ログの一括ダウンロード件数"_s, NumberInput(u"downloadcount"_s, Visitor.GetDownloadCount())) +
            Row({}, u"<INPUT TYPE=\"submit\" VALUE=\"保存する\">"_s) + u"</TABLE>\n</FORM>\n<P>"_s +
            ScriptLink(Board, u"?"_s, u"掲示板に戻る"_s) + u"</P>\n"_s;
    return mdlMessageHtml::Page(Board.Name + u" 表示カスタマイズ"_s, mdlRecord::Encode(html));
}

QByteArray mdlBoardPages::Notice(const CBoardInfo& Board, const QString& Title, const QString& Sentence)
{
    const QString html = Heading(Board) + u"<P>"_s + Escape(Sentence) + u"</P>\n<P>"_s +
                         ScriptLink(Board, u"?"_s, u"掲示板に戻る"_s) + u"</P>\n"_s;
    return mdlMessageHtml::Page(Title, mdlRecord::Encode(html));
}

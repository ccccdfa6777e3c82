// boardd/MessageHtml.cpp
// Writing plain HTML that an old browser and a rich-text view both show.

#include "boardd/MessageHtml.h"

#include "boardd/Record.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace
{

bool IsUrlCharacter(QChar Character)
{
    const char16_t c = Character.unicode();
    const bool alphanumeric = (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
    return alphanumeric || QStringView(u"-_.~:/?#@!$&*+,;=%").contains(Character);
}

bool IsMailCharacter(QChar Character)
{
    return IsUrlCharacter(Character) && !QStringView(u":/?#!$&*,;=%~").contains(Character);
}

qsizetype UrlEnd(QStringView Line, qsizetype From)
{
    qsizetype end = From;
    while (end < Line.size() && IsUrlCharacter(Line[end]))
        ++end;
    while (end > From && QStringView(u".,;:!?").contains(Line[end - 1]))
        --end;
    return end;
}

/// Length of the web address that begins at From; 0 when none does.
qsizetype WebLength(QStringView Line, qsizetype From)
{
    const QStringView rest = Line.mid(From);
    if (!rest.startsWith(u"http://") && !rest.startsWith(u"https://"))
        return 0;
    const qsizetype length = UrlEnd(Line, From) - From;
    return length > QStringView(u"https://").size() ? length : 0;
}

/// Length of the mail address that begins at From; 0 when none does.
qsizetype MailLength(QStringView Line, qsizetype From)
{
    if (From > 0 && IsMailCharacter(Line[From - 1]))
        return 0;
    qsizetype end = From;
    while (end < Line.size() && IsMailCharacter(Line[end]))
        ++end;
    while (end > From && Line[end - 1] == u'.')
        --end;
    const QStringView word = Line.mid(From, end - From);
    const qsizetype at = word.indexOf(u'@');
    const bool looksLikeOne = at > 0 && word.count(u'@') == 1 && word.mid(at).contains(u'.');
    return looksLikeOne ? word.size() : 0;
}

QString Linked(const QString& Address, const QString& Scheme)
{
    const QString escaped = mdlMessageHtml::Escape(Address);
    return u"<A HREF=\""_s + Scheme + escaped + u"\">"_s + escaped + u"</A>"_s;
}

QString WithLinks(const QString& Line)
{
    QString html;
    qsizetype plainFrom = 0;
    const auto flush = [&](qsizetype to) { html += mdlMessageHtml::Escape(Line.mid(plainFrom, to - plainFrom)); };
    for (qsizetype at = 0; at < Line.size();) {
        const qsizetype web = Line[at] == u'h' ? WebLength(Line, at) : 0;
        const qsizetype mail = web == 0 && IsMailCharacter(Line[at]) ? MailLength(Line, at) : 0;
        const qsizetype length = web + mail;
        if (length == 0) {
            ++at;
            continue;
        }
        flush(at);
        html += Linked(Line.mid(at, length), mail > 0 ? u"mailto:"_s : QString());
        at += length;
        plainFrom = at;
    }
    flush(Line.size());
    return html;
}

QString KeepLeadingBlanks(const QString& Line)
{
    qsizetype blanks = 0;
    while (blanks < Line.size() && (Line[blanks] == u' ' || Line[blanks] == u'\t'))
        ++blanks;
    return QString(u"&nbsp;"_s).repeated(blanks) + WithLinks(Line.mid(blanks));
}

bool IsQuote(const QString& Line)
{
    const QString text = Line.trimmed();
    return text.startsWith(u'>') || text.startsWith(u'＞');
}

QString LineHtml(const QString& Line)
{
    const QString html = KeepLeadingBlanks(Line);
    if (IsQuote(Line))
        return u"<FONT COLOR=\"#0000a0\">"_s + html + u"</FONT>"_s;
    if (Line.startsWith(u'#') || Line.startsWith(u'＃'))
        return u"<FONT COLOR=\"#007000\">"_s + html + u"</FONT>"_s;
    return html;
}

QString AuthorHtml(const CBoardMessage& Message)
{
    const QString name = u"<B>"_s + mdlMessageHtml::Escape(Message.Author) + u"</B>"_s;
    if (Message.Mail.isEmpty())
        return name;
    return u"<A HREF=\"mailto:"_s + mdlMessageHtml::Escape(Message.Mail) + u"\">"_s + name + u"</A>"_s;
}

QString HomePageHtml(const QString& HomePage)
{
    // A posted home page is foreign: only what is plainly a web address becomes a link.
    if (WebLength(HomePage, 0) != HomePage.size() || HomePage.isEmpty())
        return HomePage.isEmpty() ? QString() : u" ["_s + mdlMessageHtml::Escape(HomePage) + u"]"_s;
    return u" [<A HREF=\""_s + mdlMessageHtml::Escape(HomePage) + u"\">ホームページ</A>]"_s;
}

QString SideParameter(const CBoardInfo& Board)
{
    return Board.IsTwoSided() ? u"&amp;l_or_r="_s + QString::number(Board.Side) : QString();
}

QString ThreadLink(const CBoardInfo& Board, qint32 Number, const QString& Text)
{
    return u"<A HREF=\""_s + mdlMessageHtml::ScriptPath(Board) + u"?dousa=thread&amp;no="_s + QString::number(Number) +
           SideParameter(Board) + u"\">"_s + Text + u"</A>"_s;
}

QString ReplyHtml(const CBoardInfo& Board, const CBoardMessage& Message, bool ParentServed)
{
    if (Message.ReplyTo <= 0)
        return {};
    const QString number = QString::number(Message.ReplyTo);
    return u" → "_s + (ParentServed ? ThreadLink(Board, Message.ReplyTo, number) : number) + u" への返信"_s;
}

QString HeadHtml(const CBoardInfo& Board, const CBoardMessage& Message)
{
    const QString number = QString::number(Message.Number);
    const QString title = Message.Title.isEmpty() ? number : number + u" "_s + mdlMessageHtml::Escape(Message.Title);
    return u"<P><A NAME=\"m"_s + number + u"\"></A><FONT SIZE=4 COLOR=\"#704000\"><B>"_s + title +
           u"</B></FONT> "_s + u"[<A HREF=\""_s + mdlMessageHtml::ScriptPath(Board) + u"?dousa=res&amp;resno="_s + number +
           SideParameter(Board) + u"\">返信</A>] ["_s + ThreadLink(Board, Message.Number, u"スレッド"_s) + u"]<BR>\n"_s;
}

} // namespace

QString mdlMessageHtml::Escape(const QString& Text)
{
    QString escaped = Text.toHtmlEscaped();
    return escaped.replace(u'\'', u"&#39;"_s);
}

QString mdlMessageHtml::BodyHtml(const QString& Body)
{
    QStringList lines = Body.split(u'\n');
    for (QString& line : lines)
        line = LineHtml(line);
    return lines.join(u"<BR>\n"_s);
}

QString mdlMessageHtml::ScriptPath(const CBoardInfo& Board)
{
    return u"/cgi-bin/"_s + Board.Script + u".cgi"_s;
}

QByteArray mdlMessageHtml::Fragment(const CBoardInfo& Board, const CBoardMessage& Message, bool ParentServed)
{
    return mdlRecord::Encode(HeadHtml(Board, Message) + AuthorHtml(Message) + HomePageHtml(Message.HomePage) + u" "_s +
                             mdlRecord::PostedText(Message.Posted) + ReplyHtml(Board, Message, ParentServed) +
                             u"</P>\n<P>"_s + BodyHtml(Message.Body) + u"</P>\n<HR>\n"_s);
}

QByteArray mdlMessageHtml::Page(const QString& Title, const QByteArray& Content)
{
    const QString title = Escape(Title);
    const QString head =
        u"<html><head><title>"_s + title +
        u"</title>\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=Shift_JIS\"></head>\n"
        "<body bgcolor=\"#fffff4\" text=\"#202020\" link=\"#0000c0\" vlink=\"#600080\">\n"_s;
    return mdlRecord::Encode(head) + Content +
           mdlRecord::Encode(u"<P><A HREF=\"/\">入門者ひろばの入り口へ</A></P>\n</body></html>\n"_s);
}

QByteArray mdlMessageHtml::ErrorPage(const QString& Reason, const QString& Detail)
{
    return mdlRecord::Encode(u"<html><head><title>Error!!</title>\n"
                             "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=Shift_JIS\"></head>\n"
                             "<body bgcolor=\"#ffffff\">\n<FONT SIZE=5>"_s +
                             Escape(Reason) + u"</FONT><BR>"_s + Escape(Detail) +
                             u"\n<HR><P>ブラウザーの「戻る」で前のページに戻れます。</P>\n</body></html>\n"_s);
}

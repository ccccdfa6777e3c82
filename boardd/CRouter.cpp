// boardd/CRouter.cpp
// Finding the page for an address, and checking what visitors send.

#include "boardd/CRouter.h"

#include "boardd/BoardIcon.h"
#include "boardd/BoardPages.h"
#include "boardd/Faults.h"
#include "boardd/Limits.h"
#include "boardd/MessageHtml.h"
#include "boardd/PostChecks.h"
#include "boardd/Record.h"
#include "boardd/SitePages.h"
#include "boardd/StoredArchive.h"

using namespace Qt::StringLiterals;

struct CRouter::CTarget
{
    std::size_t Board;
    const CBoardInfo& Info;
    CVisitor Visitor;
};

namespace
{

const QByteArray PlainText = QByteArrayLiteral("text/plain; charset=Shift_JIS");

CReply Html(QByteArray Body)
{
    CReply reply;
    reply.Body = std::move(Body);
    return reply;
}

/// Status 200: a reader looks at the page only after a good status line.
CReply Refusal(const QString& Reason, const QString& Detail)
{
    return Html(mdlMessageHtml::ErrorPage(Reason, Detail));
}

CReply NotFound()
{
    CReply reply = Html(mdlSitePages::NotFound());
    reply.Status = 404;
    return reply;
}

CReply NoSuchNumber()
{
    return Refusal(u"指定されたメッセージはありません"_s, u"番号が違うか、もう流れてしまったようです。"_s);
}

/// The part of Path between Prefix and Suffix; empty when Path is not made that way.
QString Between(const QString& Path, QStringView Prefix, QStringView Suffix)
{
    if (Path.size() <= Prefix.size() + Suffix.size() || !Path.startsWith(Prefix) || !Path.endsWith(Suffix))
        return {};
    return Path.mid(Prefix.size(), Path.size() - Prefix.size() - Suffix.size());
}

/// Name of the visitor's cookie for a script: its whole address.
QByteArray CookieNameOf(const CSiteRequest& Request)
{
    return "http://" + Request.Host + Request.Path;
}

void CopyPerson(CVisitor& Visitor, const CPostFields& Post)
{
    Visitor.SetText(CVisitor::Name, Post.Author);
    Visitor.SetText(CVisitor::Mail, Post.Mail);
    Visitor.SetText(CVisitor::HomePage, Post.HomePage);
    Visitor.SetText(CVisitor::Password, Post.Password);
}

CReply Answer(PostResult Result, const CBoardInfo& Board, const QString& DoneTitle, const QString& DoneSentence)
{
    switch (Result) {
    case PostResult::Done:
        return Html(mdlBoardPages::Notice(Board, DoneTitle, DoneSentence));
    case PostResult::SamePost:
        return Refusal(u"二重投稿です"_s, u"同じメッセージが、すでに書き込まれています。"_s);
    case PostResult::UnknownNumber:
        return NoSuchNumber();
    case PostResult::WrongPassword:
        return Refusal(u"消せません"_s, u"パスワードが違うか、パスワードなしで投稿されたメッセージです。"_s);
    case PostResult::NotStored:
        break;
    }
    return Refusal(u"書き込めませんでした"_s, u"サーバーで保存に失敗しました。しばらくしてからお試しください。"_s);
}

} // namespace

CRouter::CRouter(CCommunity& Community)
    : m_community(Community)
{
}

bool CRouter::IsLogRequest(QByteArrayView Path, const CFields& Query)
{
    return Path.startsWith("/cgi-bin/") && Query.Bytes("dousa") == "log";
}

CReply CRouter::Answer(const CSiteRequest& Request)
{
    const QString path = QString::fromUtf8(Request.Path);
    if (const QString script = Between(path, u"/cgi-bin/", u".cgi"); !script.isEmpty())
        return AnswerBoard(Request, script);
    return Request.IsPost ? NotFound() : AnswerFile(path);
}

CReply CRouter::AnswerFile(const QString& Path) const
{
    if (Path == u"/" || Path == u"/index.html")
        return Html(mdlSitePages::Index(m_community));
    if (Path == u"/kakolog/" || Path == u"/kakolog")
        return Html(mdlSitePages::PastLogs(m_community));
    if (Path == u"/tavora/" || Path == u"/tavora")
        return Html(mdlSitePages::Program());
    if (const auto board = mdlBoards::FindIdentifier(Between(Path, u"/icon/", u".png"))) {
        CReply reply = Html(mdlBoardIcon::Png(static_cast<int>(*board)));
        reply.ContentType = QByteArrayLiteral("image/png");
        reply.MayKeep = true;
        return reply;
    }
    if (Path.startsWith(u"/kakolog/"_s))
        return AnswerPastLog(Path.section(u'/', 2));
    const QByteArray howTo = mdlSitePages::HowTo(Between(Path, u"/howto/", u".html"));
    return howTo.isEmpty() ? NotFound() : Html(howTo);
}

CReply CRouter::AnswerPastLog(const QString& FileName) const
{
    const QString name = FileName.chopped(qMin<qsizetype>(FileName.size(), 4));
    const bool isArchive = FileName.endsWith(u".lzh"_s);
    const auto board = mdlBoards::FindIdentifier(Between(name, u"", u"_kako"));
    if (!board || (!isArchive && !FileName.endsWith(u".txt"_s)))
        return NotFound();
    CReply reply = Html(m_community.Read(*board, [](const CBoardLog& log) { return log.PastLog(); }));
    if (reply.Body.isEmpty())
        return NotFound();
    reply.ContentType = isArchive ? QByteArrayLiteral("application/octet-stream") : PlainText;
    if (isArchive)
        reply.Body = mdlStoredArchive::Make(name.toLatin1() + ".txt", reply.Body, QDateTime::currentDateTime());
    return reply;
}

CReply CRouter::AnswerBoard(const CSiteRequest& Request, const QString& Script)
{
    const CFields& fields = Request.Form ? *Request.Form : Request.Query;
    const std::optional<qint32> side = fields.Has("l_or_r") ? fields.Number("l_or_r") : 0;
    if (!side || *side > 1)
        return Refusal(u"パラメーターが正しくありません"_s, u"左右の指定（l_or_r）は 0 か 1 です。"_s);
    const auto board = mdlBoards::FindScript(Script, *side);
    if (!board)
        return NotFound();
    const CBoardInfo& info = mdlBoards::All()[*board];
    const CTarget target{*board, info, CVisitor(Request.Cookie, CookieNameOf(Request), info.IsTwoSided())};
    if (Request.IsPost)
        return AnswerPost(Request, target);

    const QByteArray action = Request.Query.Bytes("dousa");
    if (action.isEmpty())
        return BoardPage(Request, target, Script);
    if (action == "log")
        return LogPage(Request, target);
    if (action == "sinki" || action == "res")
        return PostForm(Request, target, action == "res");
    if (action == "thread")
        return ThreadPage(Request, target);
    if (action == "showcookiepage")
        return Html(mdlBoardPages::SettingsForm(info, target.Visitor, false));
    return Refusal(u"パラメーターが正しくありません"_s, u"そのような動作（dousa）はありません。"_s);
}

CReply CRouter::LogPage(const CSiteRequest& Request, const CTarget& Target) const
{
    const std::optional<qint32> unreadOnly = Request.Query.Number("logmidoku");
    const std::optional<qint32> page = Request.Query.Number("logno");
    if (!unreadOnly || *unreadOnly > 1 || !page)
        return Refusal(u"パラメーターが正しくありません"_s, u"logmidoku は 0 か 1、logno は 0 以上の数です。"_s);
    const qint32 after = *unreadOnly == 1 ? Target.Visitor.GetNoReadPoint(Target.Info.Side) : 0;
    CReply reply;
    reply.ContentType = PlainText;
    reply.Body = m_community.Read(Target.Board, [&](const CBoardLog& log) {
        return log.LogPage(after, *page, Target.Visitor.GetDownloadCount());
    });
    return mdlFaults::Spoil(Request.Fault, std::move(reply));
}

CReply CRouter::BoardPage(const CSiteRequest& Request, const CTarget& Target, const QString& Script) const
{
    const qint32 page = Request.Query.Number("page").value_or(0);
    if (!Target.Info.IsTwoSided())
        return Html(mdlBoardPages::BoardPage(m_community, {Target.Board}, Target.Visitor, page));
    std::vector<std::size_t> sides;
    if (!Request.Query.Has("rightonly"))
        sides.push_back(*mdlBoards::FindScript(Script, 0));
    if (!Request.Query.Has("leftonly"))
        sides.push_back(*mdlBoards::FindScript(Script, 1));
    if (sides.empty())
        return Refusal(u"パラメーターが正しくありません"_s, u"leftonly と rightonly は、どちらか一方だけです。"_s);
    return Html(mdlBoardPages::BoardPage(m_community, sides, Target.Visitor, page));
}

CReply CRouter::PostForm(const CSiteRequest& Request, const CTarget& Target, bool Reply) const
{
    const qint32 number = Reply ? Request.Query.Number("resno").value_or(-1) : 0;
    const QByteArray page = mdlBoardPages::PostForm(m_community, Target.Board, Target.Visitor, number);
    return page.isEmpty() || (Reply && number < 1) ? NoSuchNumber() : Html(page);
}

CReply CRouter::ThreadPage(const CSiteRequest& Request, const CTarget& Target) const
{
    const qint32 number = Request.Query.Number("no").value_or(0);
    const QByteArray page = mdlBoardPages::ThreadPage(m_community, Target.Board, number);
    return page.isEmpty() ? NoSuchNumber() : Html(page);
}

CReply CRouter::AnswerPost(const CSiteRequest& Request, const CTarget& Target)
{
    if (!Request.Form)
        return Refusal(u"投稿を読み取れませんでした"_s, u"フォームの形式が正しくありません。"_s);
    const QByteArray action = Request.Form->Bytes("dousa");
    if (action == "post")
        return TakePost(*Request.Form, Target, CookieNameOf(Request));
    if (action == "sakujo")
        return TakeDeletion(*Request.Form, Target);
    if (action == "setcookie")
        return TakeSettings(*Request.Form, Target, CookieNameOf(Request));
    return Refusal(u"パラメーターが正しくありません"_s, u"そのような動作（dousa）はありません。"_s);
}

CReply CRouter::TakePost(const CFields& Form, const CTarget& Target, const QByteArray& CookieName)
{
    const CPostFields post = mdlPostChecks::Read(Form);
    if (const QString fault = mdlPostChecks::Fault(post, Target.Info); !fault.isEmpty())
        return Refusal(u"投稿できません"_s, fault);
    const PostResult result =
        m_community.Post(Target.Board, mdlPostChecks::Message(post, Target.Info), post.Password.toUtf8());
    CReply reply = ::Answer(result, Target.Info, u"書き込みました"_s, u"書き込みました。ありがとうございます。"_s);
    if (result == PostResult::Done && Form.Has("kioku")) {
        CVisitor visitor = Target.Visitor;
        CopyPerson(visitor, post);
        reply.SetCookie = visitor.SetCookie(CookieName, QDateTime::currentDateTimeUtc());
    }
    return reply;
}

CReply CRouter::TakeDeletion(const CFields& Form, const CTarget& Target)
{
    const PostResult result =
        m_community.Delete(Target.Board, Form.Number("no").value_or(0), Form.Text("password").toUtf8());
    return ::Answer(result, Target.Info, u"消しました"_s, u"メッセージを消しました。"_s);
}

CReply CRouter::TakeSettings(const CFields& Form, const CTarget& Target, const QByteArray& CookieName) const
{
    const CPostFields person = mdlPostChecks::Read(Form);
    if (const QString fault = mdlPostChecks::PersonFault(person); !fault.isEmpty())
        return Refusal(u"保存できません"_s, fault);
    CVisitor visitor = Target.Visitor;
    CopyPerson(visitor, person);
    if (!mdlPostChecks::CopyNumbers(Form, Target.Info.IsTwoSided(), visitor))
        return Refusal(u"保存できません"_s, u"件数と未読位置は、半角の数字で書いてください。件数は 1 以上です。"_s);
    CReply reply = Html(mdlBoardPages::SettingsForm(Target.Info, visitor, true));
    reply.SetCookie = visitor.SetCookie(CookieName, QDateTime::currentDateTimeUtc());
    return reply;
}

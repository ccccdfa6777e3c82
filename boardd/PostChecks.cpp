// boardd/PostChecks.cpp
// Checking forms before anything is kept.

#include "boardd/PostChecks.h"

#include "boardd/Limits.h"
#include "boardd/Record.h"

using namespace Qt::StringLiterals;

namespace
{

QString TooLong(const QString& What, const QString& Text, int Limit)
{
    return Text.size() <= Limit ? QString() : u"%1が長すぎます（%2文字まで）。"_s.arg(What).arg(Limit);
}

QString FirstOf(const QStringList& Faults)
{
    for (const QString& fault : Faults) {
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}

bool CopyNumber(const CFields& Form, QByteArrayView Name, CVisitor::Field Field, qint32 Lowest, qint32 Highest, CVisitor& Visitor)
{
    const std::optional<qint32> number = Form.Number(Name);
    if (!number || *number < Lowest || *number > Highest)
        return false;
    Visitor.SetNumber(Field, *number);
    return true;
}

} // namespace

CPostFields mdlPostChecks::Read(const CFields& Form)
{
    CPostFields post;
    post.Author = mdlRecord::OneLine(Form.Text("namae"));
    post.Mail = mdlRecord::OneLine(Form.Text("mail"));
    post.HomePage = mdlRecord::OneLine(Form.Text("homepage"));
    post.Password = mdlRecord::OneLine(Form.Text("password"));
    post.Title = mdlRecord::OneLine(Form.Text("daimei"));
    post.Body = mdlRecord::Lines(Form.Text("honbun"));
    post.ReplyTo = Form.Has("resno") ? Form.Number("resno") : 0;
    return post;
}

QString mdlPostChecks::PersonFault(const CPostFields& Post)
{
    return FirstOf({TooLong(u"お名前"_s, Post.Author, Limits::Name), TooLong(u"メールアドレス"_s, Post.Mail, Limits::Mail),
                    TooLong(u"ホームページ"_s, Post.HomePage, Limits::HomePage),
                    TooLong(u"パスワード"_s, Post.Password, Limits::Password)});
}

QString mdlPostChecks::Fault(const CPostFields& Post, const CBoardInfo& Board)
{
    if (Post.Author.isEmpty())
        return u"お名前が入っていません。"_s;
    if (Post.Body.trimmed().isEmpty())
        return u"本文が入っていません。"_s;
    if (!Post.ReplyTo)
        return u"返信先の番号が正しくありません。"_s;
    return FirstOf({PersonFault(Post), TooLong(u"題名"_s, Post.Title, Limits::Title),
                    TooLong(u"本文"_s, Post.Body, Board.IsTwoSided() ? Limits::ShortBody : Limits::Body)});
}

CBoardMessage mdlPostChecks::Message(const CPostFields& Post, const CBoardInfo& Board)
{
    CBoardMessage message;
    message.ReplyTo = Post.ReplyTo.value_or(0);
    message.Posted = mdlRecord::CurrentWallClock();
    if (!Board.IsTwoSided())
        message.Title = Post.Title.isEmpty() ? u"（無題）"_s : Post.Title;
    message.HomePage = Post.HomePage == u"http://" ? QString() : Post.HomePage;
    message.Mail = Post.Mail;
    message.Author = Post.Author;
    message.Body = Post.Body;
    return message;
}

bool mdlPostChecks::CopyNumbers(const CFields& Form, bool TwoSided, CVisitor& Visitor)
{
    constexpr qint32 any = std::numeric_limits<qint32>::max();
    return CopyNumber(Form, "viewcount", CVisitor::ViewCount, 1, CVisitor::MaxViewCount, Visitor) &&
           CopyNumber(Form, "vieworder", CVisitor::ViewOrder, 0, 1, Visitor) &&
           CopyNumber(Form, "noreadview", CVisitor::NoReadView, 0, 1, Visitor) &&
           CopyNumber(Form, "noreadpoint", CVisitor::NoReadPoint, 0, any, Visitor) &&
           (!TwoSided || CopyNumber(Form, "rightnoreadpoint", CVisitor::RightNoReadPoint, 0, any, Visitor)) &&
           CopyNumber(Form, "downloadcount", CVisitor::DownloadCount, 1, 10000, Visitor);
}

// boardd/SitePages.cpp
// The texts of the community's pages.

#include "boardd/SitePages.h"

#include "boardd/MessageHtml.h"
#include "boardd/Record.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

QString IndexRow(const CBoardInfo& Board, qsizetype Count)
{
    const QString side = Board.Side == 0 ? u"?leftonly=1"_s : Board.Side == 1 ? u"?rightonly=1"_s : QString();
    return u"<TR><TD><IMG SRC=\"/icon/%1.png\" WIDTH=32 HEIGHT=32 ALT=\"\"></TD><TD><A HREF=\"%2%3\">%4</A></TD>"
           "<TD ALIGN=right>%5件</TD><TD>%6</TD></TR>\n"_s.arg(Board.Identifier, mdlMessageHtml::ScriptPath(Board), side,
                                                               mdlMessageHtml::Escape(Board.Name), QString::number(Count),
                                                               mdlMessageHtml::Escape(Board.Topic));
}

const QString& CommonRules()
{
    static const QString rules =
        u"<H3>みんなの約束</H3>\n<UL>\n"
        "<LI>はじめての方も大歓迎です。「こんなことを聞いてもいいのかな」と思ったら、まず聞いてください。\n"
        "<LI>質問するときは、何をしたら、どうなったのかを順番に書いてください。画面に出た文はそのまま写すのがいちばんです。\n"
        "<LI>返信するときは「返信」を押してください。話の流れがつながります。引用は必要なところだけにしましょう。\n"
        "<LI>解決したら、そのことを一言書いてください。あとで読む人の役に立ちます。\n"
        "<LI>メールアドレスや電話番号など、人に知られて困ることは書かないでください。\n"
        "<LI>半角カナと機種依存文字は、なるべく使わないでください（使ってしまっても怒られません）。\n</UL>\n"_s;
    return rules;
}

const QString& OperationRules()
{
    static const QString rules =
        u"<H3>使い方</H3>\n<UL>\n"
        "<LI>「新規投稿」で新しい話題を、「返信」で返事を書きます。名前と本文は必ず書いてください。\n"
        "<LI>「スレッド」を押すと、ひとつの話題をはじめから続けて読めます。\n"
        "<LI>「表示カスタマイズ」で、名前や１ページの件数、表示順、未読位置を覚えさせられます。設定はクッキーに入ります。\n"
        "<LI>投稿のときにパスワードを付けておくと、あとで自分で消せます。\n"
        "<LI>古くなったメッセージは「過去ログ」に移ります。\n</UL>\n"_s;
    return rules;
}

QString TwoSidedRules()
{
    return u"<H3>やなぎ掲示板のこと</H3>\n<P>やなぎ掲示板は、左右ふたつに分かれたひとこと伝言板です。"
           "題名はありません。左には今日のできごとを、右にはちょっと聞きたいことを書いてください。</P>\n"
           "<P>返事は「ひ000012&gt; 」のように、相手の番号を頭に付けて書きます。</P>\n"_s;
}

} // namespace

QByteArray mdlSitePages::Index(const CCommunity& Community)
{
    const std::vector<CBoardInfo>& boards = mdlBoards::All();
    QString html = u"<H1>入門者ひろば</H1>\n<P>パソコンをはじめたばかりの人と、はじめたばかりの人を応援する人の広場です。</P>\n"
                   "<TABLE CELLPADDING=3>\n"_s;
    for (std::size_t index = 0; index < boards.size(); ++index) {
        const auto count = Community.Read(index, [](const CBoardLog& log) { return log.Messages().size(); });
        html += IndexRow(boards[index], static_cast<qsizetype>(count));
    }
    html += u"</TABLE>\n<UL>\n<LI><A HREF=\"/howto/kyoutsuu.html\">みんなの約束</A>\n"
            "<LI><A HREF=\"/kakolog/\">掲示板過去ログ保存庫</A>\n"
            "<LI><A HREF=\"/tavora/\">掲示板を読むプログラム Tavora</A>\n</UL>\n"_s;
    return mdlMessageHtml::Page(u"入門者ひろば"_s, mdlRecord::Encode(html));
}

QByteArray mdlSitePages::HowTo(QStringView Name)
{
    if (Name == u"kyoutsuu")
        return mdlMessageHtml::Page(u"みんなの約束"_s,
                                    mdlRecord::Encode(u"<H2>みんなの約束と使い方</H2>\n"_s + CommonRules() + OperationRules()));
    const std::vector<CBoardInfo>& boards = mdlBoards::All();
    const auto found =
        std::find_if(boards.begin(), boards.end(), [&](const CBoardInfo& board) { return board.HowTo == Name; });
    if (found == boards.end())
        return {};
    const QString name = found->IsTwoSided() ? u"やなぎ掲示板"_s : found->Name;
    QString html = u"<H2>"_s + name + u"のつかいかた</H2>\n<P>"_s;
    html += found->IsTwoSided() ? u"</P>\n"_s + TwoSidedRules() : mdlMessageHtml::Escape(found->Topic) + u"</P>\n"_s;
    html += u"<P>この掲示板は新しい方から%1件を保存しています。</P>\n"_s.arg(found->MaxCount);
    return mdlMessageHtml::Page(name + u"のつかいかた"_s, mdlRecord::Encode(html + OperationRules() + CommonRules()));
}

QString mdlSitePages::PastLogName(const CBoardInfo& Board)
{
    return Board.Identifier + u"_kako"_s;
}

QByteArray mdlSitePages::PastLogs(const CCommunity& Community)
{
    const std::vector<CBoardInfo>& boards = mdlBoards::All();
    QString html = u"<H2>掲示板過去ログ保存庫</H2>\n<P>掲示板から流れたメッセージです。ファイルを保存して、Tavora の"
                   "「ファイル」→「インポート」で読んでください。</P>\n<TABLE CELLPADDING=3>\n"_s;
    for (std::size_t index = 0; index < boards.size(); ++index) {
        const int count = Community.Read(index, [](const CBoardLog& log) { return log.PastCount(); });
        if (count > 0)
            html += u"<TR><TD>%1</TD><TD><A HREF=\"/kakolog/%2.txt\">%2.txt</A></TD><TD><A HREF=\"/kakolog/%2.lzh\">%2.lzh</A>"
                    "</TD><TD ALIGN=right>%3件</TD></TR>\n"_s.arg(mdlMessageHtml::Escape(boards[index].Name),
                                                                PastLogName(boards[index]), QString::number(count));
    }
    return mdlMessageHtml::Page(u"掲示板過去ログ保存庫"_s, mdlRecord::Encode(html + u"</TABLE>\n"_s));
}

QByteArray mdlSitePages::Program()
{
    const QString html =
        u"<H2>Tavora のページ</H2>\n<P>Tavora は、入門者ひろばの掲示板をまとめて受信して、ゆっくり読むためのプログラムです。</P>\n"
        "<H3>はじめに</H3>\n<OL>\n<LI>F5 を押すと、表示中の掲示板の未読のメッセージを受信します。\n"
        "<LI>一覧で題名を選ぶと、下に本文が出ます。読んだものは細い字に変わります。\n"
        "<LI>返信や新規投稿は、ブラウザーで掲示板のページを開いて書きます。\n"
        "<LI>流れてしまったメッセージは、<A HREF=\"/kakolog/\">過去ログ保存庫</A>のファイルを取り込めば読めます。\n</OL>\n"
        "<H3>うまくいかないとき</H3>\n<UL>\n"
        "<LI>受信できないときは、まずこのページがブラウザーで見えるかどうかを確かめてください。\n"
        "<LI>未読が出てこないときは、掲示板のプロパティーで未読位置を見てください。\n"
        "<LI>それでもわからないときは、<A HREF=\"/cgi-bin/enoki.cgi\">えのき掲示板</A>で聞いてください。\n</UL>\n"_s;
    return mdlMessageHtml::Page(u"Tavora のページ"_s, mdlRecord::Encode(html));
}

QByteArray mdlSitePages::NotFound()
{
    return mdlMessageHtml::Page(u"404 Not Found"_s,
                                mdlRecord::Encode(u"<H2>ページがありません</H2>\n<P>アドレスを確かめてください。</P>\n"_s));
}

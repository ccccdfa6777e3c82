// boardd/Content.cpp
// The reader for content files and the maker of messages for tests and benchmarks.

#include "boardd/Content.h"

#include "boardd/Record.h"

#include <QFile>
#include <QRegularExpression>

#include <array>

using namespace Qt::StringLiterals;

// Outside any namespace, as the macro asks: a static library's resources are otherwise left out by the linker.
static void InitialiseContentResource()
{
    Q_INIT_RESOURCE(boardd);
}

namespace
{

QString ReadResource(const QString& Name)
{
    InitialiseContentResource();
    QFile file(u":/boardd/"_s + Name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

std::optional<CBoardMessage> ReadHead(const QString& Line, const mdlContent::Posters& Known)
{
    static const QRegularExpression form(
        u"^@@ (\\d{1,9})(?: >(\\d{1,9}))? (\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d) (.+)$"_s);
    const QRegularExpressionMatch match = form.match(Line);
    CBoardMessage message;
    message.Posted = mdlRecord::ReadWallClock(match.captured(3));
    if (!match.hasMatch() || !message.Posted.isValid())
        return std::nullopt;
    message.Number = match.captured(1).toInt();
    message.ReplyTo = match.captured(2).toInt();
    message.Author = match.captured(4);
    const CPoster poster = Known.value(message.Author);
    message.Mail = poster.Mail;
    message.HomePage = poster.HomePage;
    return message;
}

/// Collects the lines of one message after another.
class CContentReader
{
public:
    CContentReader(const mdlContent::Posters& Known, bool TwoSided)
        : m_known(Known)
        , m_twoSided(TwoSided)
    {
    }

    void Line(const QString& Text)
    {
        if (Text == u"@@ past") {
            Finish();
            m_content.Past.swap(m_content.Served);
        } else if (Text.startsWith(u"@@ ")) {
            Finish();
            m_message = ReadHead(Text, m_known);
            m_titleWanted = !m_twoSided;
            if (!m_message)
                m_content.Errors += u"読めない行: %1"_s.arg(Text);
        } else if (m_message && m_titleWanted) {
            m_message->Title = mdlRecord::OneLine(Text);
            m_titleWanted = false;
        } else if (m_message) {
            m_body += Text;
        }
    }

    CContent Take()
    {
        Finish();
        return std::move(m_content);
    }

private:
    void Finish()
    {
        if (m_message) {
            m_message->Body = mdlRecord::Lines(m_body.join(u'\n'));
            m_content.Served.push_back(std::move(*m_message));
        }
        m_message.reset();
        m_body.clear();
    }

    const mdlContent::Posters& m_known;
    bool m_twoSided;
    bool m_titleWanted = false;
    std::optional<CBoardMessage> m_message;
    QStringList m_body;
    CContent m_content;
};

QString MadeUpBody(int Number, int Parent)
{
    static const std::array<QString, 6> texts = {
        u"昨日から設定を見直していますが、まだ原因がわかりません。\n同じような経験のある方はいらっしゃいますか？"_s,
        u"わたしの場合は、電源を入れ直したら直りました。\nケーブルの差し込みも確かめてみてください。"_s,
        u"表の並べ替えで困っています。ソートのキーを二つ指定するには、どうすればよいのでしょうか。\n① 日付\n② 名前\nの順にしたいのです。"_s,
        u"詳しい説明がここにありました。\nhttp://www.example.org/faq/index.html\n参考になれば幸いです。"_s,
        u"ありがとうございます。教えていただいた方法でうまくいきました。\n\nまた何かあったら、よろしくお願いします(^^)"_s,
        u"うーん、それだけでは何とも言えません。\n・機種\n・基本ソフトの版\n・いつから起きているか\nを書いてもらえると、答えやすいと思います。"_s,
    };
    const QString& text = texts[static_cast<std::size_t>(Number) % texts.size()];
    if (Parent == 0)
        return u"#%1番目の話題です。\nこんにちは。\n\n"_s.arg(Number) + text;
    return u"> %1番のメッセージについて\n\n"_s.arg(Parent) + text;
}

CBoardMessage MadeUpMessage(int Number, const QDateTime& Start)
{
    static const std::array<QString, 5> handles = {u"みかん"_s, u"そら豆"_s, u"ぽんた"_s, u"表六"_s, u"ｶﾓﾒ"_s};
    const bool opens = Number % 7 == 1;
    CBoardMessage message;
    message.Number = Number;
    message.ReplyTo = opens ? 0 : Number - (Number % 3 == 0 && Number % 7 != 2 ? 2 : 1);
    message.Posted = Start.addSecs(Number * 420LL);
    message.Title = (opens ? u"質問その%1"_s : u"Re: 質問その%1"_s).arg((Number - 1) / 7 + 1);
    message.Author = handles[static_cast<std::size_t>(Number) % handles.size()];
    message.Mail = u"user%1@example.com"_s.arg(Number % 97);
    if (Number % 4 == 0)
        message.HomePage = u"http://www.example.net/~user%1/"_s.arg(Number % 97);
    message.Body = MadeUpBody(Number, message.ReplyTo);
    return message;
}

} // namespace

mdlContent::Posters mdlContent::ReadPosters(const QString& Text)
{
    Posters posters;
    for (const QString& line : Text.split(u'\n')) {
        const QStringList parts = line.split(u'|');
        if (parts.size() == 3 && !line.startsWith(u"//"))
            posters.insert(parts[0].trimmed(), {parts[1].trimmed(), parts[2].trimmed()});
    }
    return posters;
}

CContent mdlContent::Read(const QString& Text, const Posters& Known, bool TwoSided)
{
    CContentReader reader(Known, TwoSided);
    for (const QString& line : Text.split(u'\n'))
        reader.Line(line);
    return reader.Take();
}

CContent mdlContent::ForBoard(const CBoardInfo& Board)
{
    const Posters posters = ReadPosters(ReadResource(u"posters.txt"_s));
    return Read(ReadResource(Board.Identifier + u".txt"_s), posters, Board.IsTwoSided());
}

std::vector<CBoardMessage> mdlContent::MakeUp(int Count)
{
    const QDateTime start(QDate(2001, 4, 1), QTime(9, 0), Qt::UTC);
    std::vector<CBoardMessage> messages;
    messages.reserve(static_cast<std::size_t>(std::max(0, Count)));
    for (int number = 1; number <= Count; ++number)
        messages.push_back(MadeUpMessage(number, start));
    return messages;
}

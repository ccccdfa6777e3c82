// boardd/Arguments.cpp
// Reading options by a table.

#include "boardd/Arguments.h"

#include "boardd/Faults.h"

#include <QStandardPaths>

#include <array>

using namespace Qt::StringLiterals;

namespace
{

/// Reads Text into Target; false when it is no number from Lowest to Highest.
template<typename Number>
bool ReadNumber(const QString& Text, int Lowest, int Highest, Number& Target)
{
    bool isNumber = false;
    const int number = Text.toInt(&isNumber);
    if (!isNumber || number < Lowest || number > Highest)
        return false;
    Target = static_cast<Number>(number);
    return true;
}

bool ReadText(const QString& Text, QString& Target)
{
    Target = Text;
    return !Text.isEmpty();
}

bool ReadFault(const QString& Text, CBoardServerOptions& Options)
{
    const auto fault = mdlFaults::Parse(Text);
    if (!fault)
        return false;
    Options.Fault = fault->first;
    Options.FaultFrom = fault->second;
    return true;
}

struct COption
{
    QLatin1StringView Name;
    bool (*Read)(const QString&, CBoardServerOptions&);
};

constexpr std::array<COption, 6> OptionTable = {{
    {"--port"_L1, [](const QString& t, CBoardServerOptions& o) { return ReadNumber(t, 0, 65535, o.Port); }},
    {"--bind"_L1, [](const QString& t, CBoardServerOptions& o) { return ReadText(t, o.BindAddress); }},
    {"--data"_L1, [](const QString& t, CBoardServerOptions& o) { return ReadText(t, o.DataFolder); }},
    {"--messages"_L1, [](const QString& t, CBoardServerOptions& o) { return ReadNumber(t, 1, 1000000, o.Messages); }},
    {"--delay"_L1, [](const QString& t, CBoardServerOptions& o) { return ReadNumber(t, 0, 600000, o.DelayMs); }},
    {"--fault"_L1, ReadFault},
}};

/// What is wrong with option Name and its Value; empty when it was taken.
QString Take(const QString& Name, const QString& Value, CBoardServerOptions& Options)
{
    for (const COption& option : OptionTable) {
        if (Name == option.Name)
            return option.Read(Value, Options) ? QString() : u"%1 の値 %2 は使えません。"_s.arg(Name, Value);
    }
    return u"%1 というオプションはありません。"_s.arg(Name);
}

bool IsHelp(const QString& Word)
{
    return Word == u"--help" || Word == u"-h";
}

} // namespace

CArguments mdlArguments::Parse(const QStringList& Words)
{
    CArguments arguments;
    arguments.Options.Port = CBoardServerOptions::DefaultPort;
    arguments.Options.DataFolder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/tavora-boardd"_s;
    for (qsizetype index = 0; index < Words.size() && arguments.Error.isEmpty(); ++index) {
        const QString& word = Words[index];
        const qsizetype equals = word.indexOf(u'=');
        if (IsHelp(word))
            arguments.Help = true;
        else if (equals > 0)
            arguments.Error = Take(word.left(equals), word.mid(equals + 1), arguments.Options);
        else if (index + 1 < Words.size())
            arguments.Error = Take(word, Words[++index], arguments.Options);
        else
            arguments.Error = u"%1 に値がないか、そのようなオプションはありません。"_s.arg(word);
    }
    return arguments;
}

QString mdlArguments::HelpText()
{
    return u"使い方: tavora-boardd [オプション]\n"
           "入門者ひろばの見本の掲示板を HTTP で公開します。止めるには Ctrl+C を押してください。\n\n"
           "  --port 番号       待ち受けるポート（省略すると %1、0 なら空いている番号）\n"
           "  --bind アドレス   待ち受けるアドレス（省略すると 127.0.0.1。0.0.0.0 で外からも見えます）\n"
           "  --data フォルダー 投稿を保存するフォルダー（省略すると利用者のデータフォルダーの tavora-boardd）\n"
           "  --messages 件数   けやき掲示板に、自動で作ったメッセージをこの件数だけ置きます（試験用）\n"
           "  --delay ミリ秒    ログの要求に答える前に待つ時間（試験用）\n"
           "  --fault 種類[:N]  N 番目（省略すると 1 番目）からのログの要求で、わざと失敗します（試験用）\n"
           "                    種類: %2\n"
           "  --help            この説明を表示します\n\n"
           "終了コード: 0 正常終了、1 開始できなかった（ポートやフォルダーが使えない）、2 オプションの間違い\n"_s.arg(
               QString::number(CBoardServerOptions::DefaultPort), mdlFaults::Names().join(u"、"_s));
}

// sqlshell/Arguments.cpp
// Reading options by a table.

#include "sqlshell/Arguments.h"

#include <QFile>

#include <array>

using namespace Qt::StringLiterals;

namespace sqlshell
{

namespace
{

/// Options by their names; those with a value get it, others get an empty one. False refuses the value.
struct COption
{
    QByteArrayView Name;
    bool HasValue;
    bool (*Take)(COptions&, const QByteArray&);
};

bool TakeFormat(COptions& To, Format Wanted)
{
    const bool isFirst = To.Output == Format::Table || To.Output == Wanted;
    To.Output = Wanted;
    return isFirst;
}

bool TakeParameter(COptions& To, const QByteArray& Value)
{
    const qsizetype equals = Value.indexOf('=');
    if (equals <= 0 || !Value.isValidUtf8())
        return false;
    QString name = QString::fromUtf8(Value.first(equals)).trimmed();
    if (name.startsWith(u'[') && name.endsWith(u']'))
        name = name.mid(1, name.size() - 2);
    To.Parameters.emplace_back(name, QString::fromUtf8(Value.sliced(equals + 1)));
    return true;
}

bool TakeWidth(COptions& To, const QByteArray& Value)
{
    bool isNumber = false;
    To.MaxWidth = Value.toInt(&isNumber);
    return isNumber && (To.MaxWidth == 0 || (To.MaxWidth >= 4 && To.MaxWidth <= 1000000));
}

constexpr std::array<COption, 10> OptionTable = {{
    {"--csv", false, [](COptions& o, const QByteArray&) { return TakeFormat(o, Format::Csv); }},
    {"--json", false, [](COptions& o, const QByteArray&) { return TakeFormat(o, Format::Json); }},
    {"--type-only", false, [](COptions& o, const QByteArray&) { return o.TypeOnly = true; }},
    {"--create", false, [](COptions& o, const QByteArray&) { return o.Create = true; }},
    {"--no-fail-on-error", false, [](COptions& o, const QByteArray&) { return o.SkipsRows = true; }},
    {"--help", false, [](COptions& o, const QByteArray&) { return o.Help = true; }},
    {"-h", false, [](COptions& o, const QByteArray&) { return o.Help = true; }},
    {"--version", false, [](COptions& o, const QByteArray&) { return o.Version = true; }},
    {"--param", true, TakeParameter},
    {"--width", true, TakeWidth},
}};

const COption* FindOption(QByteArrayView Name)
{
    for (const COption& option : OptionTable) {
        if (Name == option.Name)
            return &option;
    }
    return nullptr;
}

/// Takes the option Words[At] and its value, which may be the next word; At moves to the last word taken.
QString TakeOption(COptions& To, const QByteArrayList& Words, qsizetype& At)
{
    const QByteArray& word = Words[At];
    const qsizetype equals = word.indexOf('=');
    const QByteArray name = equals < 0 ? word : word.first(equals);
    const QString shown = QString::fromUtf8(name);
    const COption* option = FindOption(name);
    if (!option)
        return u"%1 というオプションはありません。"_s.arg(shown);
    if (!option->HasValue && equals >= 0)
        return u"%1 に値は付けられません。"_s.arg(shown);
    QByteArray value;
    if (equals >= 0)
        value = word.sliced(equals + 1);
    else if (option->HasValue && At + 1 < Words.size())
        value = Words[++At];
    else if (option->HasValue)
        return u"%1 に値がありません。"_s.arg(shown);
    if (option->Take(To, value))
        return {};
    return option->HasValue ? u"%1 の値 %2 は使えません。"_s.arg(shown, QString::fromUtf8(value))
                            : u"--csv と --json は一緒に使えません。"_s;
}

} // namespace

COptions mdlArguments::Parse(const QByteArrayList& Words)
{
    COptions options;
    QByteArrayList plain;
    bool isOption = true;
    for (qsizetype at = 0; at < Words.size() && options.Error.isEmpty(); ++at) {
        if (isOption && Words[at] == "--")
            isOption = false;
        else if (isOption && Words[at].startsWith('-'))
            options.Error = TakeOption(options, Words, at);
        else
            plain.append(Words[at]);
    }
    if (options.Help || options.Version || !options.Error.isEmpty())
        return options;
    if (plain.isEmpty() || plain.first().isEmpty())
        options.Error = u"データベースのファイル名がありません。"_s;
    else
        options.File = QFile::decodeName(plain.takeFirst());
    options.Statements = plain;
    return options;
}

QString mdlArguments::HelpText()
{
    return u"使い方: tavora-sql ファイル [\"SQL 文\"…] [オプション]\n"
           "データベースのファイルに SQL 文を実行します。文を書かなければ標準入力から読みます。\n"
           "文は「;」か入力の終わりまでです。途中で何度改行してもかまいません。\n\n"
           "  --csv               結果を CSV で出力します (UTF-8、先頭の行は列名)\n"
           "  --json              1 文につき 1 行の JSON で出力します (エラーも)\n"
           "  --width 桁数        表の列をこの桁数で切り詰めます (省略すると 40、0 なら切り詰めません)\n"
           "  --param 名前=値     パラメータに値を渡します。何度でも書けます。値が Null なら Null、\n"
           "                      '…' なら文字列、#…# なら日付です\n"
           "  --no-fail-on-error  規則に反する行を飛ばして続けます (省略すると文全体を取り消します)\n"
           "  --type-only         実行せずに文の種類だけを表示します\n"
           "  --create            新しい空のファイルを作ります (既にあればエラー 3204)\n"
           "  --help              この説明を表示します\n"
           "  --version           バージョンを表示します\n\n"
           "「.」で始まる行はコマンドです。.help で一覧を表示します。\n\n"
           "終了コード: 0 正常終了、1 エラーになった文がある、2 使い方の間違い、またはファイルを開けない\n"_s;
}

QString mdlArguments::VersionText() { return u"tavora-sql " TAVORA_VERSION "\n"_s; }

} // namespace sqlshell

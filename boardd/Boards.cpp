// boardd/Boards.cpp
// The table of boards and the look-ups in it.

#include "boardd/Boards.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

CBoardInfo Board(const QString& Identifier, const QString& Name, int MaxCount, const QString& Topic)
{
    return {Identifier, Identifier, Identifier, Name, Topic, MaxCount, -1};
}

CBoardInfo CommonRulesBoard(const QString& Identifier, const QString& Name, int MaxCount, const QString& Topic)
{
    return {Identifier, Identifier, u"kyoutsuu"_s, Name, Topic, MaxCount, -1};
}

CBoardInfo SideOf(const QString& Identifier, int Side, const QString& Name, const QString& Topic)
{
    return {Identifier, u"yanagi"_s, u"yanagi"_s, Name, Topic, 400, Side};
}

std::vector<CBoardInfo> MakeTable()
{
    return {
        Board(u"keyaki"_s, u"けやき掲示板"_s, 400, u"パソコンの「わからない」を何でもどうぞ。入門者歓迎です。"_s),
        CommonRulesBoard(u"keyaki2"_s, u"けやき掲示板２"_s, 400, u"けやき掲示板の続き。長くなりそうな質問はこちらで。"_s),
        Board(u"kaede"_s, u"かえで掲示板"_s, 400, u"プログラミング入門。言語は問いません。"_s),
        CommonRulesBoard(u"buna"_s, u"ぶな掲示板"_s, 400, u"表計算とワープロの使いこなし。"_s),
        Board(u"kusunoki"_s, u"くすのき掲示板"_s, 400, u"インターネットとメールの設定。"_s),
        Board(u"sugi"_s, u"すぎ掲示板"_s, 400, u"プリンター、スキャナーなど周辺機器。"_s),
        Board(u"hinoki"_s, u"ひのき掲示板"_s, 200, u"パソコンの組み立てと修理。"_s),
        Board(u"matsu"_s, u"まつ掲示板"_s, 200, u"ホームページ作り。"_s),
        SideOf(u"lyanagi"_s, 0, u"やなぎ掲示板（左）"_s, u"ひとこと伝言板。左は今日のできごと。"_s),
        SideOf(u"ryanagi"_s, 1, u"やなぎ掲示板（右）"_s, u"ひとこと伝言板。右はちょっと聞きたいこと。"_s),
        CommonRulesBoard(u"nire"_s, u"にれ掲示板"_s, 400, u"フリーソフトの紹介と感想。"_s),
        Board(u"ume"_s, u"うめ掲示板"_s, 200, u"料理とお菓子。"_s),
        Board(u"kuri"_s, u"くり掲示板"_s, 100, u"本と映画の話。"_s),
        Board(u"kashi"_s, u"かし掲示板"_s, 200, u"天気、季節、庭と散歩。"_s),
        Board(u"shii"_s, u"しい掲示板"_s, 100, u"音楽とラジオ。"_s),
        Board(u"enoki"_s, u"えのき掲示板"_s, 100, u"ひろばへの要望と管理人からのお知らせ。"_s),
    };
}

template<typename Matches>
std::optional<std::size_t> Find(Matches Wanted)
{
    const std::vector<CBoardInfo>& boards = mdlBoards::All();
    const auto found = std::find_if(boards.begin(), boards.end(), Wanted);
    if (found == boards.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - boards.begin());
}

} // namespace

const std::vector<CBoardInfo>& mdlBoards::All()
{
    static const std::vector<CBoardInfo> table = MakeTable();
    return table;
}

std::optional<std::size_t> mdlBoards::FindScript(QStringView Script, int Side)
{
    return Find([=](const CBoardInfo& board) {
        return board.Script == Script && (!board.IsTwoSided() || board.Side == Side);
    });
}

std::optional<std::size_t> mdlBoards::FindIdentifier(QStringView Identifier)
{
    return Find([=](const CBoardInfo& board) { return board.Identifier == Identifier; });
}

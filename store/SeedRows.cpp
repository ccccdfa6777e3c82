// store/SeedRows.cpp
// The first boards and marks.

#include "store/SeedRows.h"

namespace mdlSeedRows
{

using namespace Qt::StringLiterals;

namespace
{

struct Board
{
    int BBS_ID;
    QStringView Name;
    QStringView ShortName;
    int MaxCount;
    int Hitokoto;
    int ListOrder;
    bool HasPastLogs; // their files are named after the board: Identifier + "*"
    QStringView Identifier;
    QStringView Script;    // empty: the identifier; the two sides of a board share one script
    QStringView UsagePage; // empty: the identifier
};

constexpr Board Boards[] = {
    {3, u"けやき掲示板", u"けやき", 400, -1, 0, true, u"keyaki", u"", u""},
    {4, u"かえで掲示板", u"かえで", 400, -1, 2, true, u"kaede", u"", u""},
    {5, u"くすのき掲示板", u"くすのき", 400, -1, 4, true, u"kusunoki", u"", u""},
    {6, u"すぎ掲示板", u"すぎ", 400, -1, 5, false, u"sugi", u"", u""},
    {7, u"ひのき掲示板", u"ひのき", 200, -1, 6, false, u"hinoki", u"", u""},
    {8, u"まつ掲示板", u"まつ", 200, -1, 8, true, u"matsu", u"", u""},
    {9, u"うめ掲示板", u"うめ", 200, -1, 12, false, u"ume", u"", u""},
    {10, u"くり掲示板", u"くり", 100, -1, 13, false, u"kuri", u"", u""},
    {11, u"かし掲示板", u"かし", 200, -1, 14, false, u"kashi", u"", u""},
    {12, u"しい掲示板", u"しい", 100, -1, 15, false, u"shii", u"", u""},
    {13, u"やなぎ掲示板（左）", u"やなぎ左", 400, 0, 9, false, u"lyanagi", u"yanagi", u"yanagi"},
    {14, u"やなぎ掲示板（右）", u"やなぎ右", 400, 1, 10, false, u"ryanagi", u"yanagi", u"yanagi"},
    {15, u"えのき掲示板", u"えのき", 100, -1, 17, false, u"enoki", u"", u""},
    {16, u"けやき掲示板２", u"けやき２", 400, -1, 1, false, u"keyaki2", u"", u"kyoutsuu"},
    {17, u"ぶな掲示板", u"ぶな", 400, -1, 3, false, u"buna", u"", u"kyoutsuu"},
    {18, u"にれ掲示板", u"にれ", 400, -1, 11, false, u"nire", u"", u"kyoutsuu"},
};

struct Mark
{
    int ID;
    QStringView Name;
    int ForeColor; // red + 256 * green + 65536 * blue
};

constexpr Mark Marks[] = {
    {1, u"マーク&1", 128},
    {2, u"マーク&2", 32768},
    {3, u"マーク&3", 8388608},
    {4, u"マーク&4", 8421504},
};

/// The system's window background: 0x80000005.
constexpr int WindowBackground = -2147483643;

QStringView Or(QStringView Text, QStringView Otherwise) { return Text.isEmpty() ? Otherwise : Text; }

/// A text value of a statement with the comma in front of it.
QString TextItem(const QString& Text) { return u", '%1'"_s.arg(Text); }

QString BBSStatement(const Board& Row)
{
    const QString identifier = Row.Identifier.toString();
    const QString url = u"http://localhost:8932/cgi-bin/%1.cgi"_s.arg(Or(Row.Script, Row.Identifier));
    const QString usageUrl = u"http://localhost:8932/howto/%1.html"_s.arg(Or(Row.UsagePage, Row.Identifier));
    const QString pattern = Row.HasPastLogs ? identifier + u'*' : QString();
    return u"INSERT INTO BBS VALUES("_s + u"  "_s + QString::number(Row.BBS_ID) + TextItem(Row.Name.toString()) +
           TextItem(Row.ShortName.toString()) + TextItem(url) + TextItem(usageUrl) +
           u", %1, %2, True, %3"_s.arg(Row.MaxCount).arg(Row.Hitokoto).arg(Row.ListOrder) + TextItem(pattern) +
           TextItem(identifier) + u")"_s;
}

QString MarkStatement(const Mark& Row)
{
    return u"INSERT INTO Mark VALUES("_s + u"  "_s + QString::number(Row.ID) + TextItem(Row.Name.toString()) + u", "_s +
           QString::number(Row.ForeColor) + u", "_s + QString::number(WindowBackground) + u")"_s;
}

} // namespace

QStringList BBSStatements()
{
    QStringList statements;
    for (const Board& row : Boards)
        statements.append(BBSStatement(row));
    return statements;
}

QStringList MarkStatements()
{
    QStringList statements;
    for (const Mark& row : Marks)
        statements.append(MarkStatement(row));
    return statements;
}

} // namespace mdlSeedRows

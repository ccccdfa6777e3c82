// bench/bench_SqlCompile.cpp
// Reading, binding and writing a statement of 2 KB takes at most 3 million instructions. Instructions and not time,
// counted by valgrind, so that the figure is the same on any machine: the program runs itself under callgrind compiling
// the statement a few times and twice as often; the difference is what one compilation takes.

#include "platform/jetsql/Compile.h"
#include "tests/support/CSqlBench.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cstdio>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Times = 20;
constexpr qint64 Aim = 3'000'000;

const QString& Statement()
{
    static const QString text =
        u"SELECT T.ShortName AS 掲示板, T.投稿者, T.件数, T.最初, T.最後, Format(T.最後, 'ggge年m月d日(aaa) hh:nn') AS "
        u"最終投稿,\r\n"
        "  IIf(T.件数 >= 100, '常連', IIf(T.件数 >= 10, 'ときどき', '新人')) AS 区分,\r\n"
        "  Int((T.最後 - T.最初) / 7) + 1 AS 週数, Round(T.件数 / (Int((T.最後 - T.最初) / 7) + 1), 2) AS 週平均,\r\n"
        "  (SELECT Count(*) FROM Message AS R INNER JOIN Message AS Q ON R.InReplyTo = Q.ID AND R.BBS_ID = Q.BBS_ID\r\n"
        "     WHERE Q.PostName = T.投稿者 AND Q.BBS_ID = T.BBS_ID AND R.PostName <> T.投稿者) AS もらった返事,\r\n"
        "  (SELECT Count(*) FROM Message AS M2 WHERE M2.PostName = T.投稿者 AND M2.Read = False AND M2.InReplyTo <> 0) "
        "AS 未読の返事,\r\n"
        "  (SELECT Max(Len(M3.Body)) FROM Message AS M3 WHERE M3.PostName = T.投稿者 AND M3.BBS_ID = T.BBS_ID) AS "
        "最長\r\n"
        "FROM (SELECT B.BBS_ID, B.ShortName, M.PostName AS 投稿者, Count(*) AS 件数, Min(M.PostDate) AS 最初,\r\n"
        "        Max(M.PostDate) AS 最後, Sum(IIf(M.Read, 0, 1)) AS 未読\r\n"
        "      FROM (BBS AS B INNER JOIN Message AS M ON B.BBS_ID = M.BBS_ID) LEFT JOIN Mark AS K ON M.Mark = K.ID\r\n"
        "      WHERE M.PostDate BETWEEN #2001/04/01# AND #2002/03/31 23:59:59# AND (M.Subject Like '*文字化け*'\r\n"
        "        OR M.Subject Like '*ﾌﾟﾘﾝﾀ*' OR M.Body Like '*[[]?#]*設定*' OR M.Body Like "
        "'*http://*.example.com/*')\r\n"
        "        AND M.PostName NOT IN ('管理人', '名無し', 'ゲスト', '通りすがり') AND Trim(M.PostName & '') <> ''\r\n"
        "        AND (K.Name IS NULL OR K.Name <> '不要') AND Left(M.Subject, 3) <> 'Re:' AND InStr(M.Body, '解決') > "
        "0\r\n"
        "        AND EXISTS (SELECT * FROM Message AS A WHERE A.RootThread = M.RootThread AND A.BBS_ID = M.BBS_ID\r\n"
        "          AND A.ID <> M.ID AND A.PostDate > M.PostDate AND DateDiff('d', M.PostDate, A.PostDate) <= 14)\r\n"
        "        AND M.ID IN (SELECT Max(X.ID) FROM Message AS X WHERE X.Mark Mod 2 = 0 GROUP BY X.RootThread, "
        "X.BBS_ID\r\n"
        "          HAVING Count(*) BETWEEN 2 AND 200)\r\n"
        "      GROUP BY B.BBS_ID, B.ShortName, M.PostName\r\n"
        "      HAVING Count(*) > 1 AND Max(M.PostDate) > DateAdd('m', -6, #2002/04/01#)) AS T\r\n"
        "WHERE T.未読 * 100 \\ T.件数 < 50 AND Year(T.最後) = 2002 AND Switch(Month(T.最後) <= 3, 1, Month(T.最後) <= "
        "6, 2, True, 3) < 3\r\n"
        "ORDER BY T.件数 DESC, T.ShortName, UCase(T.投稿者), DateSerial(Year(T.最後), Month(T.最後), 1)"_s;
    return text;
}

/// What the run under valgrind does. The catalogue takes the same part of every run.
int CompileOnly(int Count)
try {
    const CSqlBench catalog;
    for (int i = 0; i < Count; ++i)
        jetsql::Compile(jetsql::TakeShape(Statement()), catalog);
    return 0;
} catch (const jetsql::Error& refused) {
    std::fprintf(stderr, "refused at %d: %s\n", refused.Offset, qPrintable(refused.Description));
    return 1;
}

std::optional<qint64> CountedInstructions(const QString& Program, int Count)
{
    const QTemporaryDir folder;
    QProcess valgrind;
    valgrind.setWorkingDirectory(folder.path());
    valgrind.start(u"valgrind"_s, {u"--tool=callgrind"_s, u"--callgrind-out-file=/dev/null"_s, Program, u"--compile"_s,
                                   QString::number(Count)});
    if (!valgrind.waitForFinished(-1) || valgrind.exitCode() != 0)
        return std::nullopt;
    const auto collected =
        QRegularExpression(u"Collected : (\\d+)"_s).match(QString::fromLocal8Bit(valgrind.readAllStandardError()));
    return collected.hasMatch() ? std::optional(collected.captured(1).toLongLong()) : std::nullopt;
}
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--compile"_s)
        return CompileOnly(arguments.value(2).toInt());
    const auto once = CountedInstructions(QCoreApplication::applicationFilePath(), Times);
    const auto twice = CountedInstructions(QCoreApplication::applicationFilePath(), 2 * Times);
    if (!once || !twice) {
        std::puts("valgrind is needed to count instructions");
        return 1;
    }
    std::printf("compiling a statement of %d units: %lld instructions (aim: at most %lld)\n", int(Statement().size()),
                (*twice - *once) / Times, Aim);
    return 0;
}

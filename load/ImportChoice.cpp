// load/ImportChoice.cpp
// What the user is asked before log files are imported: which files, and whether they are meant for this board.

#include "load/ImportChoice.h"

#include "board/CBBSProperty.h"
#include "board/SqlText.h"
#include "platform/dao/Database.h"
#include "platform/dao/Recordset.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
QString AllTypes()
{
    return u"テキストファイル(*.txt;*.log)|*.txt;*.log|LHA書庫ファイル(*.lzh)|*.lzh|全てのファイル(*.*)|*.*"_s;
}

/// Name of another board whose log files are named like FileName, empty when there is none. Among is a further
/// condition.
QString OtherBoard(dao::Database& Database, qint32 BBS_ID, const QString& FileName, const QString& Among = {})
{
    const auto rows = Database.OpenRecordset(u"SELECT BBS_ID, BBS_Name"_s + u"  FROM BBS"_s + u" WHERE BBS_ID <> "_s +
                                             QString::number(BBS_ID) + u"   AND "_s + mdlSqlText::Quoted(FileName) +
                                             u" Like DefaultLogFile"_s + Among);
    return rows->Eof() ? QString() : rows->Text(1);
}

std::vector<qint32> AllBoards(dao::Database& Database)
{
    std::vector<qint32> boards;
    for (const auto rows = Database.OpenRecordset(u"SELECT BBS_ID FROM BBS ORDER BY BBS_ID"_s); !rows->Eof();
         rows->MoveNext())
        boards.push_back(rows->Long(0));
    return boards;
}

/// One pattern that cannot be read makes a statement over all boards fail; then each board is asked by itself.
QString OtherBoardOneByOne(dao::Database& Database, qint32 BBS_ID, const QString& FileName)
{
    for (const qint32 board : AllBoards(Database)) {
        try {
            const QString name = OtherBoard(Database, BBS_ID, FileName, u"   AND BBS_ID = "_s + QString::number(board));
            if (!name.isEmpty())
                return name;
        } catch (const dao::Error&) {
            continue; // this is the one
        }
    }
    return {};
}

QString OtherBoardOf(dao::Database& Database, qint32 BBS_ID, const QStringList& Paths)
{
    for (const QString& path : Paths) {
        const QString fileName = QFileInfo(path).fileName();
        QString name;
        try {
            name = OtherBoard(Database, BBS_ID, fileName);
        } catch (const dao::Error&) {
            name = OtherBoardOneByOne(Database, BBS_ID, fileName);
        }
        if (!name.isEmpty())
            return name;
    }
    return {};
}

/// A file's name may hold line breaks, and nobody should be able to write the question himself.
QString OnOneLine(QString Path)
{
    std::replace_if(
        Path.begin(), Path.end(), [](QChar Unit) { return Unit.category() == QChar::Other_Control; }, u'?');
    return Path;
}

QString Listed(const QStringList& Paths)
{
    QString list;
    for (const QString& path : Paths.first(qMin(Paths.size(), mdlImportChoice::MaxListedPaths)))
        list += u"\r\n"_s + OnOneLine(path);
    if (Paths.size() > mdlImportChoice::MaxListedPaths)
        list += u"\r\nほか"_s + QString::number(Paths.size() - mdlImportChoice::MaxListedPaths) + u"件"_s;
    return list;
}
} // namespace

QString mdlImportChoice::Filter(const CBBSProperty& Board)
{
    QString name = Board.Name;
    QString pattern = Board.DefaultLogFile.trimmed();
    pattern.remove(u'|');
    if (pattern.isEmpty())
        return AllTypes();
    return name.replace(u'|', u'｜') + u"用ログファイル("_s + pattern + u")|"_s + pattern + u'|' + AllTypes();
}

mdlImportChoice::Question mdlImportChoice::Ask(dao::Database& Database, const CBBSProperty& Board,
                                               const QStringList& Paths)
{
    const QString other = OtherBoardOf(Database, Board.ID(), Paths);
    const QString end = u"\r\n"_s + Listed(Paths);
    if (other.isEmpty())
        return {Board.Name + u"に下記のファイルをインポートします。\r\nよろしいですか？"_s + end, Desktop::Answer::Yes};
    return {other + u"用のログファイルと思われるファイルが指定されています。\r\nこのまま"_s + Board.Name +
                u"に下記のファイルをインポートしてもよろしいですか？"_s + end,
            Desktop::Answer::No};
}

// tests/app/tst_CFile.cpp
// Parts of paths, the file behind a path, separators, the folder to work in and reserved names.

#include "app/AppPath.h"
#include "app/CFile.h"
#include "app/Path.h"
#include "app/Shell.h"
#include "platform/text/DateTime.h"
#include "tests/support/Files.h"
#include "tests/support/Table.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_CFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Parts_data();
    void Parts();
    void SetParts_data();
    void SetParts();
    void EmptyPathStaysEmpty();
    void ExistingFile();
    void FolderIsNoFile();
    void Move();
    void MoveNeverReplaces();
    void MakeDirAndDelete();
    void DrivePathIsOnlyText();
    void BackslashesFindFolders();
    void AddBackslash_data();
    void AddBackslash();
    void TempFileName();
    void FindAppPath();
    void FindProgramFile();
};

void tst_CFile::Parts_data()
{
    // wanted: drive, path, name, name without extension, extension
    mdlTable::AddRows<QString, QStringList>("file-names.json", "Parts", {"full", "wanted"});
}

void tst_CFile::Parts()
{
    QFETCH(QString, full);
    QFETCH(QStringList, wanted);
    const CFile file(full);
    QCOMPARE(QStringList({file.Drive(), file.Path(), file.Name(), file.NameNotExt(), file.Ext()}), wanted);
}

void tst_CFile::SetParts_data()
{
    // wanted: from C:\data\log.mdb
    mdlTable::AddRows<QString, QString, QString>("file-names.json", "SetParts", {"part", "value", "wanted"});
}

void tst_CFile::SetParts()
{
    QFETCH(QString, part);
    QFETCH(QString, value);
    QFETCH(QString, wanted);
    CFile file(u"C:\\data\\log.mdb"_s);
    if (part == u"Drive")
        file.SetDrive(value);
    else if (part == u"Path")
        file.SetPath(value);
    else if (part == u"Name")
        file.SetName(value);
    else if (part == u"NameNotExt")
        file.SetNameNotExt(value);
    else
        file.SetExt(value);
    QCOMPARE(file.FullPath(), wanted);
}

void tst_CFile::EmptyPathStaysEmpty()
{
    CFile file;
    file.SetDrive(u"C:"_s);
    file.SetPath(u"C:\\"_s);
    file.SetName(u"a"_s);
    file.SetNameNotExt(u"a"_s);
    file.SetExt(u"b"_s);
    QVERIFY(file.FullPath().isEmpty());
    QVERIFY(!file.IsExist() && !file.Move() && !file.MakeDir() && !file.Delete());
    QCOMPARE(file.Size(), 0);

    file.SetFullPath(u"C:\\README"_s);
    file.SetExt(u"txt"_s);
    QCOMPARE(file.FullPath(), u"C:\\README.txt"_s);
}

void tst_CFile::ExistingFile()
{
    const QTemporaryDir folder;
    CFile file(folder.filePath(u"表.txt"_s));
    QVERIFY(!file.IsExist());
    QVERIFY(file.IsExistDir());
    QCOMPARE(file.DateLastModified(), 0.0);
    const double before = text::ToSerial(QDateTime::currentDateTime().addSecs(-60));
    mdlFiles::Write(file.FullPath(), "12345");
    QVERIFY(file.IsExist());
    QCOMPARE(file.Size(), 5);
    const double after = text::ToSerial(QDateTime::currentDateTime().addSecs(60));
    for (const double date : {file.DateCreated(), file.DateLastAccessed(), file.DateLastModified()})
        QVERIFY(before < date && date < after);
}

void tst_CFile::FolderIsNoFile()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"sub.d"_s));
    CFile file(folder.filePath(u"sub.d"_s));
    QVERIFY(!file.IsExist());
    QCOMPARE(file.Size(), 0);
    QCOMPARE(file.Ext(), u"[DIR]"_s);
    file.SetExt(u"x"_s);
    QCOMPARE(file.FullPath(), folder.filePath(u"sub.d"_s));
    file.SetFullPath(folder.filePath(u"sub.d/"_s));
    QVERIFY(file.IsExistDir());
    file.SetFullPath(folder.filePath(u"missing/"_s));
    QVERIFY(!file.IsExistDir());
}

void tst_CFile::Move()
{
    const QTemporaryDir folder;
    mdlFiles::Write(folder.filePath(u"log.mdb"_s), "12345");
    CFile file(folder.filePath(u"log.mdb"_s));
    QVERIFY(!file.Move()); // nothing was edited
    file.SetExt(u"bak"_s);
    QVERIFY(file.Move());
    QVERIFY(QFile::exists(folder.filePath(u"log.bak"_s)));
    QVERIFY(!QFile::exists(folder.filePath(u"log.mdb"_s)));
    QVERIFY(!file.Move()); // it is there already
    file.SetName(u"again"_s);
    QVERIFY(file.Move()); // from where the first move put it
    QVERIFY(QFile::exists(folder.filePath(u"again"_s)));
}

void tst_CFile::MoveNeverReplaces()
{
    const QTemporaryDir folder;
    mdlFiles::Write(folder.filePath(u"log.mdb"_s), "new");
    mdlFiles::Write(folder.filePath(u"log.bak"_s), "old");
    CFile file(folder.filePath(u"log.mdb"_s));
    file.SetExt(u"bak"_s);
    QVERIFY(!file.Move());
    QCOMPARE(CFile(folder.filePath(u"log.bak"_s)).Size(), 3);
    QVERIFY(QFile::exists(folder.filePath(u"log.mdb"_s)));
    file.SetName(u"log.ba2"_s);
    QVERIFY(file.Move());

    CFile missing(folder.filePath(u"missing"_s));
    missing.SetExt(u"bak"_s);
    QVERIFY(!missing.Move());
}

void tst_CFile::MakeDirAndDelete()
{
    const QTemporaryDir folder;
    const CFile file(folder.filePath(u"a/b/c/file.txt"_s));
    QVERIFY(file.MakeDir());
    QVERIFY(file.MakeDir()); // once more is no error
    QVERIFY(QDir(folder.filePath(u"a/b/c"_s)).exists());
    QVERIFY(!QFile::exists(file.FullPath()));
    QVERIFY(!file.Delete());
    mdlFiles::Write(file.FullPath(), "12345");
    QVERIFY(file.Delete());
    QVERIFY(!file.IsExist());

    mdlFiles::Write(folder.filePath(u"plain"_s), "12345");
    QVERIFY(!CFile(folder.filePath(u"plain/below/"_s)).MakeDir());
}

void tst_CFile::DrivePathIsOnlyText()
{
#ifdef Q_OS_WIN
    QSKIP("Drives exist here.");
#endif
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.path()));
    CFile file(u"D:\\data\\log.mdb"_s);
    QVERIFY(!file.IsExistDir() && !file.IsExist() && !file.MakeDir() && !file.Delete());
    QVERIFY(!CFile(u"\\\\server\\share\\"_s).MakeDir());
    QVERIFY(mdlPath::DiskPath(u"D:\\data\\"_s).isEmpty());
    QVERIFY(QDir(folder.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot));
    QVERIFY(QDir::setCurrent(before));
}

void tst_CFile::BackslashesFindFolders()
{
#ifdef Q_OS_WIN
    QSKIP("A backslash is no part of a name here.");
#endif
    const QTemporaryDir folder;
    QVERIFY(CFile(folder.path() + u"/a\\b\\"_s).MakeDir());
    QVERIFY(QDir(folder.filePath(u"a/b"_s)).exists());
    QVERIFY(CFile(folder.path() + u"\\a\\b\\"_s).IsExistDir());

    // A folder whose name really has one is not looked for elsewhere.
    QVERIFY(QDir(folder.path()).mkdir(u"x\\y"_s));
    mdlFiles::Write(folder.filePath(u"x\\y/f"_s), "12345");
    QVERIFY(CFile(folder.filePath(u"x\\y/f"_s)).IsExist());
    QVERIFY(!CFile(folder.filePath(u"x\\y/new"_s)).IsExist());
}

void tst_CFile::AddBackslash_data()
{
    mdlTable::AddRows<QString, QString>("file-names.json", "AddBackslash", {"path", "wanted"});
}

void tst_CFile::AddBackslash()
{
    QFETCH(QString, path);
    QFETCH(QString, wanted);
    QCOMPARE(mdlPath::AddBackslash(path), wanted);
}

void tst_CFile::TempFileName()
{
    const QTemporaryDir folder;
    const QString reserved = mdlShellServices::TempFileName(folder.path(), u"TVRX"_s);
    QCOMPARE(QFileInfo(reserved).path(), folder.path());
    QVERIFY(QFileInfo(reserved).fileName().startsWith(u"TVR"));
    QVERIFY(reserved.endsWith(u".tmp"));
    QVERIFY(!QFile::exists(reserved));

    const QString written = mdlShellServices::TempFileName(folder.path(), u"TVR"_s, quint8(65));
    QFile file(written);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("A"));

    const QString elsewhere = mdlShellServices::TempFileName(folder.filePath(u"missing"_s), u"TVR"_s);
    QCOMPARE(QFileInfo(elsewhere).absolutePath(), QFileInfo(QDir::tempPath()).absoluteFilePath());
    QVERIFY(!QFile::exists(elsewhere));
}

void tst_CFile::FindAppPath()
{
    const QTemporaryDir program;
    const QTemporaryDir user;
    const QString data = user.filePath(u"share/Tavora"_s);
    QCOMPARE(mdlAppPath::Find(program.path(), u"tavora"_s, data), program.path() + u'/');
    QVERIFY(!QDir(data).exists());
    QVERIFY(QDir(program.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot)); // trying left nothing behind

    QCOMPARE(mdlAppPath::Find(u"/usr/bin"_s, u"tavora"_s, data), data + u'/');
    QVERIFY(QDir(data).exists());
    QCOMPARE(mdlAppPath::Find(u"/"_s, u"tavora"_s, data), data + u'/');
    QCOMPARE(mdlAppPath::Find(program.filePath(u"missing"_s), u"tavora"_s, data), data + u'/');

    // Data that is there already wins over not being able to write.
    const QString readOnly = program.filePath(u"sub"_s);
    QVERIFY(QDir().mkpath(readOnly));
    mdlFiles::Write(readOnly + u"/tavora.ini"_s, "12345");
    QVERIFY(QFile::setPermissions(readOnly, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    QCOMPARE(mdlAppPath::Find(readOnly, u"tavora"_s, data), readOnly + u'/');
    QVERIFY(QFile::setPermissions(readOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
}

void tst_CFile::FindProgramFile()
{
    const QTemporaryDir app;
    const QTemporaryDir program;
    QVERIFY(mdlAppPath::FindProgramFile(u"ReadMe.txt"_s, app.path(), program.path()).isEmpty());
    mdlFiles::Write(program.filePath(u"ReadMe.txt"_s), "12345");
    QCOMPARE(mdlAppPath::FindProgramFile(u"ReadMe.txt"_s, app.path(), program.path()),
             program.filePath(u"ReadMe.txt"_s));
    mdlFiles::Write(app.filePath(u"ReadMe.txt"_s), "12345");
    QCOMPARE(mdlAppPath::FindProgramFile(u"ReadMe.txt"_s, app.path() + u'/', program.path()),
             app.filePath(u"ReadMe.txt"_s));
}

QTEST_GUILESS_MAIN(tst_CFile)
#include "tst_CFile.moc"

// tests/platform/tst_DesktopShellTarget.cpp
// What of a message's text may be opened, and what may not.

#include "platform/desktop/FileFilter.h"
#include "platform/desktop/ShellTarget.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_DesktopShellTarget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void AcceptTarget_data();
    void AcceptTarget();
    void FileTypes_data();
    void FileTypes();
};

void tst_DesktopShellTarget::AcceptTarget_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("wanted"); // empty: refused

    const auto taken = [](const char* name, const QString& text) { QTest::newRow(name) << text << text; };
    const auto refused = [](const char* name, const QString& text) { QTest::newRow(name) << text << QString(); };
    taken("http", u"http://example.jp/a.cgi?b=%83%5C&c#d"_s);
    taken("https, capitals", u"HTTPS://Example.JP"_s);
    taken("ftp", u"ftp://ftp.example.jp/pub/"_s);
    taken("mail", u"mailto:hana@example.jp?subject=%82%A0"_s);
    taken("address of numbers with port", u"http://127.0.0.1:8932/"_s);
    taken("Japanese host and path", u"http://日本語.jp/表/ソ"_s);
    taken("long", u"http://a/"_s + QString(4000, u'x'));
    QTest::newRow("www") << u"www.example.jp/x"_s << u"http://www.example.jp/x"_s;
    QTest::newRow("WWW") << u"WWW.example.jp"_s << u"http://WWW.example.jp"_s;
    QTest::newRow("blanks around") << u"\t http://a.jp/ \r\n"_s << u"http://a.jp/"_s;

    refused("empty", QString());
    refused("blanks", u" \u3000 "_s);
    refused("words", u"今日は"_s);
    refused("host without scheme", u"example.jp/x"_s);
    refused("file", u"file:///etc/passwd"_s);
    refused("file, capitals", u"FILE://host/share"_s);
    refused("path", u"/bin/sh"_s);
    refused("drive path", u"C:\\Windows\\notepad.exe"_s);
    refused("share", u"\\\\host\\share\\a.exe"_s);
    refused("script", u"javascript:alert(1)"_s);
    refused("script behind http", u"javascript://http://a.jp/%0aalert(1)"_s);
    refused("data", u"data:text/html,<b>x"_s);
    refused("terminal", u"ssh://host"_s);
    refused("settings page", u"ms-settings:display"_s);
    refused("http without host", u"http:///x"_s);
    refused("http with nothing", u"http://"_s);
    refused("http as a path", u"http:/x"_s);
    refused("option of a program", u"--help"_s);
    refused("line break inside", u"http://a.jp/\nfile:///x"_s);
    refused("NUL inside", u"http://a.jp/"_s + QChar(u'\0') + u"x"_s);
    refused("turns the reading direction", u"http://a.jp/\u202Egpj.exe"_s);
    refused("too long", u"http://a/"_s + QString(5000, u'x'));
    refused("bad port", u"http://a.jp:99999999/"_s);
    refused("mail to nobody", u"mailto:"_s);
    refused("mail with only a subject", u"mailto:?subject=x"_s);
    refused("mail that attaches", u"mailto:a@b.jp?subject=x&attach=/etc/passwd"_s);
    refused("mail that attaches, hidden", u"mailto:a@b.jp?%41ttachment=/etc/passwd"_s);
}

void tst_DesktopShellTarget::AcceptTarget()
{
    QFETCH(QString, text);
    QFETCH(QString, wanted);
    QCOMPARE(mdlShell::AcceptTarget(text).value_or(QString()), wanted);
}

void tst_DesktopShellTarget::FileTypes_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("wanted");

    QTest::newRow("two pairs") << u"ログ|*.txt;*.log|すべてのファイル|*.*"_s
                               << QStringList{u"ログ (*.txt *.log)"_s, u"すべてのファイル (*)"_s};
    QTest::newRow("patterns said already") << u"ログ(*.lzh)|*.lzh"_s << QStringList{u"ログ (*.lzh)"_s};
    QTest::newRow("brackets of another kind") << u"ログ(旧)|*.lzh"_s << QStringList{u"ログ(旧) (*.lzh)"_s};
    QTest::newRow("separator at the end") << u"ログ|*.txt|"_s << QStringList{u"ログ (*.txt)"_s};
    QTest::newRow("no pattern") << u"ログ"_s << QStringList{u"ログ (*)"_s};
    QTest::newRow("empty") << QString() << QStringList();
}

void tst_DesktopShellTarget::FileTypes()
{
    QFETCH(QString, filter);
    QFETCH(QStringList, wanted);
    QCOMPARE(mdlFileFilter::NameFilters(filter), wanted);
}

QTEST_GUILESS_MAIN(tst_DesktopShellTarget)
#include "tst_DesktopShellTarget.moc"

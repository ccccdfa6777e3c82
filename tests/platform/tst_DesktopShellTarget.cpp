// tests/platform/tst_DesktopShellTarget.cpp
// What of a message's text may be opened, and what may not.

#include "platform/desktop/FileFilter.h"
#include "platform/desktop/ShellTarget.h"
#include "tests/support/Table.h"

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
    // wanted: empty: refused
    mdlTable::AddRows<QString, QString>("shell-target.json", "AcceptTarget", {"text", "wanted"});
    QTest::newRow("long") << u"http://a/"_s + QString(4000, u'x') << u"http://a/"_s + QString(4000, u'x');
    QTest::newRow("too long") << u"http://a/"_s + QString(5000, u'x') << QString();
}

void tst_DesktopShellTarget::AcceptTarget()
{
    QFETCH(QString, text);
    QFETCH(QString, wanted);
    QCOMPARE(mdlShell::AcceptTarget(text).value_or(QString()), wanted);
}

void tst_DesktopShellTarget::FileTypes_data()
{
    mdlTable::AddRows<QString, QStringList>("shell-target.json", "FileTypes", {"filter", "wanted"});
}

void tst_DesktopShellTarget::FileTypes()
{
    QFETCH(QString, filter);
    QFETCH(QStringList, wanted);
    QCOMPARE(mdlFileFilter::NameFilters(filter), wanted);
}

QTEST_GUILESS_MAIN(tst_DesktopShellTarget)
#include "tst_DesktopShellTarget.moc"

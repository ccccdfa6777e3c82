// tests/settings_ui/tst_frmProperty.cpp
// The options dialog over a real database and settings file: what keys and mouse do, what OK keeps, what Cancel leaves.

#include "tests/settings_ui/CDialogFixture.h"
#include "tests/support/CReadOnlyUser.h"
#include "tests/support/Table.h"

#include <QInputMethodEvent>
#include <QLabel>
#include <QListWidget>
#include <QRegularExpression>
#include <QTabBar>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

class tst_frmProperty : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
        m_fixture = std::make_unique<CDialogFixture>();
    }
    void cleanup()
    {
        QVERIFY(F().Desk.Verify());
        m_fixture.reset();
    }
    void Fields_data();
    void Fields();
    void OddSettingsStay();
    void Refusals_data();
    void Refusals();
    void TabKeys_data();
    void TabKeys();
    void Opening();
    void Dependent_data();
    void Dependent();
    void NewSearches_data();
    void NewSearches();
    void EditingSearches();
    void TakesEverythingBack_data();
    void TakesEverythingBack();
    void ReadOnlyDatabase();
    void SettingsFileNotWritable();
    void VisitFlagOnTwoPages();
    void ComposingKeepsItsKeys();

private:
    CDialogFixture& F() { return *m_fixture; }
    std::unique_ptr<CDialogFixture> m_fixture;
};

void tst_frmProperty::Fields_data()
{
    mdlTable::AddRows<int, QString, QString, QString>("options.json", "Fields", {"tab", "field", "text", "wanted"});
}

void tst_frmProperty::Fields()
{
    QFETCH(int, tab);
    QFETCH(QString, field);
    QFETCH(QString, text);
    QFETCH(QString, wanted);
    QStringList before = F().Options();
    const QByteArray file = mdlFiles::Read(F().App.IniFileName());
    QVERIFY(F().Show([&] {
        F().GoTo(tab);
        F().Change(field, text);
        F().Find<QWidget>(field)->setFocus();
        F().Key(u"Return"_s);
    }));
    QCOMPARE(mdlFiles::Read(F().App.IniFileName()), file); // the section is written when the program ends
    QStringList after = F().Options();
    QCOMPARE(after.size(), before.size());
    for (qsizetype line = after.size() - 1; line >= 0; --line) {
        if (before.removeOne(after[line]))
            after.removeAt(line);
    }
    QCOMPARE(after.join(u'\n'), wanted.replace(u'@', F().Folder.path()));
}

/// Numbers beyond what the arrows offer were typed into the file by hand.
void tst_frmProperty::OddSettingsStay()
{
    F().App.Option().ReadTiming = 5'000'000;
    F().App.Option().Timeout = 2'147'483'647;
    F().App.Option().Interval = 120;
    const QStringList before = F().Options();
    QVERIFY(F().Show([&] { F().Press(u"cmdOK"_s); }));
    QCOMPARE(F().Options(), before);
}

void tst_frmProperty::Refusals_data()
{
    mdlTable::AddRows<int, QString, QString, QString>("options.json", "Refusals", {"tab", "field", "text", "message"});
}

void tst_frmProperty::Refusals()
{
    QFETCH(int, tab);
    QFETCH(QString, field);
    QFETCH(QString, text);
    QFETCH(QString, message);
    const QString before = F().State();
    F().Tab = tab;
    QVERIFY(!F().Show([&] {
        F().Change(field, text);
        for (const QString& way : {u"Return"_s, u"Ctrl+Tab"_s}) {
            F().Tabs().tabBar()->setFocus();
            F().Desk.Expect(message);
            F().Key(way);
            QVERIFY(F().Dialog->isVisible());
            QCOMPARE(F().Tabs().currentIndex(), tab - 1);
            QCOMPARE(QApplication::focusWidget(), F().Find<QWidget>(field));
            QCOMPARE(F().LastIcon(), Desktop::Icon::Information);
        }
    }));
    QCOMPARE(F().Tab, tab);
    QCOMPARE(F().State(), before);
}

void tst_frmProperty::TabKeys_data() { mdlTable::AddRows<QString, int>("options.json", "TabKeys", {"way", "wanted"}); }

void tst_frmProperty::TabKeys()
{
    QFETCH(QString, way);
    QFETCH(int, wanted);
    const auto go = [&] {
        QTabBar* bar = F().Tabs().tabBar();
        if (way == u"click") {
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(wanted - 1).center());
            return;
        }
        QWidget* const from = way == u"Right" ? bar : F().Find<QWidget>(u"cmdCancel"_s);
        from->setFocus();
        F().Key(way);
    };
    F().Show([&] {
        const QString header = F().Find<QLineEdit>(u"txtReplyHeader"_s)->text();
        F().Change(u"txtReplyHeader"_s);
        F().Desk.Expect(u"返信ヘッダ"_s);
        go();
        QCOMPARE(F().Tabs().currentIndex(), 0);
        QVERIFY(F().Find<QWidget>(u"fraTabStrip3"_s)->isVisible());
        F().Change(u"txtReplyHeader"_s, header);
        go();
        QCOMPARE(F().Tabs().currentIndex(), wanted - 1);
        QVERIFY(!F().Find<QWidget>(u"fraTabStrip3"_s)->isVisible());
    });
    QCOMPARE(F().Tab, wanted);
}

void tst_frmProperty::Opening()
{
    F().Desk.IsTrayThere = false;
    const auto tabs = [&] {
        QStringList names;
        for (int tab = 0; tab < F().Tabs().count(); ++tab)
            names << F().Tabs().tabText(tab) + F().Tabs().widget(tab)->objectName().right(1);
        return names.join(u' ');
    };
    F().Tab = 99;
    F().Show([&] {
        QCOMPARE(F().Dialog->windowTitle(), u"設定 - "_s + F().App.AppTitle());
        QCOMPARE(tabs(), u"全般3 送受信8 検索4 WebSearch5 巡回受信6 表示順7"_s);
        QVERIFY(F().Find<QWidget>(u"fraTabStrip7"_s)->isVisible());
        QVERIFY(F().Find<QLabel>(u"lblNoTray"_s));
        F().Change(u"txtDateFormat"_s, u"m/d h:n"_s);
        QCOMPARE(F().Find<QLabel>(u"lblDateSample"_s)->text(), u"例: 1/5 9:7"_s);
        F().Desk.ExpectFiles(u"アイコンフォルダ"_s, {F().Folder.filePath(u"other"_s)});
        F().Press(u"cmdBrowseIconFilePath"_s);
        QCOMPARE(F().Find<QLineEdit>(u"txtIconFilePath"_s)->text(), F().Folder.filePath(u"other/"_s));
    });
    QCOMPARE(F().Tab, 6);
    F().Tab = 2;
    F().Show(
        [&] {
            QCOMPARE(F().Dialog->windowTitle(), F().Board.Name + u"のプロパティ - "_s + F().App.AppTitle());
            QCOMPARE(tabs(), u"全般1 クッキーの情報2 巡回受信6 表示順7"_s);
            QVERIFY(F().Find<QWidget>(u"fraTabStrip2"_s)->isVisible());
        },
        true);
}

void tst_frmProperty::Dependent_data()
{
    mdlTable::AddRows<QString, QString, bool>("options.json", "Dependent", {"steps", "name", "wanted"});
}

void tst_frmProperty::Dependent()
{
    QFETCH(QString, steps);
    QFETCH(QString, name);
    QFETCH(bool, wanted);
    QStringList keys = steps.split(u' ', Qt::SkipEmptyParts);
    if (!keys.isEmpty() && keys.first().contains(u'=')) {
        const QStringList setting = keys.takeFirst().split(u'=');
        F().App.SettingsIni().SetNowSection(u"Option"_s);
        F().App.SettingsIni().SetData(setting[0], setting[1]);
        mdlSettings::ReadSettings(F().App);
    }
    F().Show([&] {
        for (const QString& key : keys)
            F().Change(key);
        QCOMPARE(F().Find<QWidget>(name)->isEnabled(), wanted);
    });
}

void tst_frmProperty::NewSearches_data()
{
    mdlTable::AddRows<QString, QString, QString, QString>("options.json", "NewSearches",
                                                          {"name", "url", "box", "wanted"});
}

void tst_frmProperty::NewSearches()
{
    QFETCH(QString, name);
    QFETCH(QString, url);
    QFETCH(QString, box);
    QFETCH(QString, wanted);
    QStringList lines = F().Section(u"WebSearch"_s);
    F().Tab = 4;
    QVERIFY(F().Show([&] {
        F().Change(u"txtWebSearchURL"_s, url);
        F().Change(u"txtWebSearchName"_s, name);
        const bool isQuestion = box.contains(u"既に");
        if (!box.isEmpty())
            F().Desk.Expect(isQuestion ? box.section(u' ', 1) : box, box.startsWith(u"Yes") ? Desktop::Answer::Yes
                                                                     : isQuestion           ? Desktop::Answer::No
                                                                                            : Desktop::Answer::Ok);
        F().Press(u"cmdAddSearch"_s);
        if (!box.isEmpty())
            QCOMPARE(F().LastIcon() == Desktop::Icon::Exclamation, !box.contains(u"保存"));
        F().Press(u"cmdOK"_s);
    }));
    const qsizetype place = lines.indexOf(u"one(&1)=http://www.example.com/?q=%s"_s);
    if (box.startsWith(u"Yes"))
        lines[place] = wanted;
    else if (!wanted.isEmpty())
        lines << wanted;
    F().Restart(); // the section is written at once
    QCOMPARE(F().Section(u"WebSearch"_s), lines);
}

void tst_frmProperty::EditingSearches()
{
    F().Tab = 4;
    QVERIFY(F().Show([&] {
        auto* list = F().Find<QTreeWidget>(u"lsvWebSearch"_s);
        auto* note = F().Find<QLabel>(u"lblUrlNote"_s);
        F().Press(u"cmdDelSearch"_s); // nothing is selected
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->topLevelItem(1)).center());
        QCOMPARE(F().Find<QLineEdit>(u"txtWebSearchName"_s)->text(), u"two(&2)"_s);
        F().Desk.Expect(u"two(&2)を削除します。\nよろしいですか？"_s, Desktop::Answer::Cancel);
        F().Desk.Expect(u"two(&2)を削除します。"_s);
        F().Key(u"Del"_s);
        F().Key(u"Del"_s);
        F().Change(u"txtWebSearchName"_s, u"four"_s);
        F().Change(u"txtWebSearchURL"_s, u"javascript:%s"_s);
        QVERIFY(!note->text().isEmpty());
        F().Change(u"txtWebSearchURL"_s, u"www.example.com/%s"_s);
        QVERIFY(note->text().isEmpty());
        F().Key(u"Return"_s); // into the list
        QVERIFY(F().Dialog->isVisible());
        QCOMPARE(list->currentItem()->text(0), u"four"_s);
        F().Key(u"Return"_s);
        QVERIFY(!F().Dialog->isVisible());
    }));
    QCOMPARE(F().Section(u"WebSearch"_s).join(u'\n'), u"one(&1)=http://www.example.com/?q=%s\n"
                                                      "three(&3)=http://www.example.com/?q=%s\n"
                                                      "four=www.example.com/%s"_s);
    QVERIFY(F().Show([&] {
        for (int left = 3; left > 0; --left) {
            F().Find<QTreeWidget>(u"lsvWebSearch"_s)->topLevelItem(0)->setSelected(true);
            F().Desk.Expect(u"を削除します。"_s);
            F().Press(u"cmdDelSearch"_s);
        }
        F().Press(u"cmdOK"_s);
    }));
    mdlSettings::InitWebSearchList(F().App);
    QVERIFY(F().Section(u"WebSearch"_s).isEmpty()); // the first ones do not come back
}

void tst_frmProperty::TakesEverythingBack_data()
{
    mdlTable::AddRows<bool, bool>("options.json", "TakesBack", {"isOfBoard", "isFolderMissing"});
}

void tst_frmProperty::TakesEverythingBack()
{
    QFETCH(bool, isOfBoard);
    QFETCH(bool, isFolderMissing); // else the database is held by another program
    if (isFolderMissing)
        F().App.Option().CacheFilePath = F().Folder.filePath(u"missing"_s); // and without its separator
    const QString before = F().State();
    const auto other = dao::Database::Open(F().App.DatabaseFileName());
    F().App.LogDB()->SetBusyTimeout(1);
    if (!isFolderMissing) {
        other->BeginTrans();
        other->Execute(u"UPDATE BBS SET VisitLoad = True"_s);
    }
    const bool isKept = F().Show(
        [&] {
            if (isOfBoard) {
                F().Change(u"txtURL"_s, u"http://www.example.com/other.cgi"_s);
                F().Change(u"txtPostName"_s, u"投稿者"_s);
            } else {
                F().Change(u"uspnAddMax"_s, u"7"_s);
                F().Change(u"chkUseRegExp"_s);
                delete F().Find<QTreeWidget>(u"lsvWebSearch"_s)->topLevelItem(0);
            }
            auto* visits = F().Find<QListWidget>(u"lstVisitLoad"_s);
            visits->item(0)->setCheckState(visits->item(0)->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
            F().Find<QListWidget>(u"lstOrder"_s)->setCurrentRow(2);
            F().Press(u"cmdDelete"_s);
            F().Desk.Expect(isFolderMissing ? u"作成しますか？"_s : u"'3260'"_s,
                            isFolderMissing ? Desktop::Answer::No : Desktop::Answer::Ok);
            F().Press(u"cmdOK"_s);
            QVERIFY(F().Dialog->isVisible());
            QCOMPARE(F().State(), before);
            F().Key(u"Esc"_s);
            QVERIFY(!F().Dialog->isVisible());
        },
        isOfBoard);
    QVERIFY(!isKept);
    QCOMPARE(F().State(), before);
}

void tst_frmProperty::ReadOnlyDatabase()
{
    F().App.SetLogDB(nullptr);
    QVERIFY(QFile::setPermissions(F().App.DatabaseFileName(), QFile::Permissions(0x4444)));
    QVERIFY(QFile::setPermissions(F().Folder.path(), QFile::Permissions(0x5555)));
    const CReadOnlyUser user;
    F().App.SetLogDB(dao::Database::Open(F().App.DatabaseFileName()));
    QVERIFY(F().App.LogDB()->IsReadOnly());
    QVERIFY(F().Show([&] {
        F().Change(u"uspnAddMax"_s, u"7"_s);
        F().Press(u"cmdOK"_s);
    }));
    QCOMPARE(F().App.Option().AddMax, 7);
    F().Show([&] {
        F().Find<QListWidget>(u"lstVisitLoad"_s)->item(0)->setCheckState(Qt::Unchecked);
        F().Desk.Expect(u"'3027'"_s);
        F().Press(u"cmdOK"_s);
        QVERIFY(F().Dialog->isVisible());
    });
}

void tst_frmProperty::SettingsFileNotWritable()
{
    QFile::remove(F().App.IniFileName());
    QDir().mkdir(F().App.IniFileName());
    QVERIFY(F().Show([&] {
        delete F().Find<QTreeWidget>(u"lsvWebSearch"_s)->topLevelItem(0);
        F().Desk.Expect(u"書き込めませんでした"_s);
        F().Press(u"cmdOK"_s);
    }));
    QCOMPARE(F().Section(u"WebSearch"_s).size(), 2);
}

void tst_frmProperty::VisitFlagOnTwoPages()
{
    QVERIFY(F().Board.VisitLoad);
    QVERIFY(F().Show(
        [&] {
            auto* visits = F().Find<QListWidget>(u"lstVisitLoad"_s);
            F().Change(u"chkVisitLoad"_s);
            F().GoTo(3);
            QCOMPARE(visits->item(0)->checkState(), Qt::Unchecked);
            visits->item(1)->setCheckState(Qt::Unchecked); // another board
            visits->item(0)->setCheckState(Qt::Checked);
            QVERIFY(F().Find<QCheckBox>(u"chkVisitLoad"_s)->isChecked());
            F().Change(u"txtPostName"_s, u"投稿者"_s);
            F().Change(u"txtName"_s, u"新しい名前"_s);
            F().Press(u"cmdOK"_s);
        },
        true));
    QCOMPARE(F().Board.Name + F().Board.PostName(), u"新しい名前投稿者"_s);
    const auto rows = F().App.LogDB()->OpenRecordset(u"SELECT COUNT(*) FROM BBS WHERE VisitLoad = False"_s);
    QCOMPARE(rows->Long(0), 1);
}

void tst_frmProperty::ComposingKeepsItsKeys()
{
    F().Show([&] {
        auto* field = F().Find<QLineEdit>(u"txtReplyHeader"_s);
        field->setFocus();
        QInputMethodEvent composing(u"いんよう"_s, {});
        QApplication::sendEvent(field, &composing);
        F().Key(u"Return"_s);
        F().Key(u"Esc"_s);
        QVERIFY(F().Dialog->isVisible());
    });
}

QTEST_MAIN(tst_frmProperty)
#include "tst_frmProperty.moc"

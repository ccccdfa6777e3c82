// tests/query/tst_frmSQL.cpp
// The query dialog over a real database: statement, tables, saved queries, keys, place.

#include "app/Application.h"
#include "controls/uSeparator.h"
#include "platform/dao/Database.h"
#include "query/CStatementBox.h"
#include "query/frmSQL.h"
#include "tests/support/CScriptedDesktop.h"
#include "tests/support/Table.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using dao::FieldType;

namespace
{

dao::FieldDef Field(const QString& Name, FieldType Type, const QString& Description = {})
{
    dao::FieldDef field;
    field.Name = Name;
    field.Type = Type;
    field.Description = Description;
    return field;
}

struct CDialogFixture
{
    QTemporaryDir Folder;
    CScriptedDesktop Desk;
    Application App{Desk, Folder.path(), u"Tavora"_s};
    frmSQL Dialog{App};

    CDialogFixture()
    {
        auto db = dao::Database::Create(App.DatabaseFileName());
        db->AppendTable({u"Secret"_s, {Field(u"x"_s, FieldType::Long)}, {}, dao::TableDef::HiddenAttributes});
        db->AppendTable(
            {u"BBS"_s, {Field(u"名前 全部"_s, FieldType::Text), Field(u"Table"_s, FieldType::Boolean)}, {}, 0});
        db->AppendTable({u"Message"_s,
                         {Field(u"ID"_s, FieldType::Long, u"番号"_s), Field(u"Subject"_s, FieldType::Text),
                          Field(u"PostDate"_s, FieldType::Date), Field(u"Body"_s, FieldType::Memo, u"本文"_s)},
                         {},
                         0});
        db->CreateQueryDef(u"古い順"_s, u"SELECT *\r\nFROM Message"_s);
        db->CreateQueryDef(u"abc"_s, u"SELECT 1"_s);
        App.SetLogDB(std::move(db));
        App.SettingsIni().Load(App.IniFileName());
    }

    template<typename Widget> Widget* Find(const QString& Name) const { return Dialog.findChild<Widget*>(Name); }
    CStatementBox& Box() const { return *Find<CStatementBox>(u"txtSQL"_s); }
    QComboBox& Names() const { return *Find<QComboBox>(u"cmbQuery"_s); }
    QPushButton& Button(const QString& Name) const { return *Find<QPushButton>(Name); }
    QStringList Items(const QString& Name) const
    {
        QStringList texts;
        for (int row = 0; row < Find<QComboBox>(Name)->count(); ++row)
            texts << Find<QComboBox>(Name)->itemText(row);
        return texts;
    }
    QString Saved(const QString& Name)
    {
        const auto query = App.LogDB()->FindQueryDef(Name);
        return query ? query->Name() + u':' + query->Sql() : QString();
    }
    void Choose(const QString& Name)
    {
        Names().setCurrentIndex(Names().findText(Name));
        Q_EMIT Names().activated(Names().currentIndex());
    }
    /// Shows the dialog, does Work with it and closes it if Work has not.
    template<typename Function> QString Show(const QString& Sql, Function Work, int ErrorOffset = -1)
    {
        QTimer::singleShot(0, &Dialog, [&] {
            QVERIFY(QTest::qWaitForWindowActive(&Dialog));
            Work();
            Dialog.close();
        });
        return Dialog.ShowSQL(Sql, nullptr, ErrorOffset);
    }
};

} // namespace

class tst_frmSQL : public QObject
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
    void Opening();
    void CaretAtTheError();
    void Conditions_data();
    void Conditions();
    void Keys();
    void TextStaysAsItIs();
    void Save_data();
    void Save();
    void RefusedSaveShowsThePlace();
    void ChooseWhileModified_data();
    void ChooseWhileModified();
    void Delete();
    void PlaceIsKept();
    void PlaceIsForgotten();
    void WithoutADatabase();

private:
    CDialogFixture& F() { return *m_fixture; }
    std::unique_ptr<CDialogFixture> m_fixture;
};

void tst_frmSQL::Opening()
{
    F().Show(u"SELECT 1"_s, [&] {
        QVERIFY(F().Box().hasFocus());
        QCOMPARE(F().Dialog.windowTitle(), u"クエリー検索 - Tavora Ver.0.50"_s);
        QCOMPARE(F().Items(u"cmbQuery"_s), QStringList({u"abc"_s, u"古い順"_s}));
        QCOMPARE(F().Names().currentText(), QString());
        QVERIFY(!F().Button(u"cmdDelete"_s).isEnabled());
        QCOMPARE(F().Items(u"cmbTable"_s), QStringList({u"BBS"_s, u"Message"_s}));
        QCOMPARE(F().Find<QComboBox>(u"cmbTable"_s)->currentText(), u"Message"_s);
        auto* fields = F().Find<QListWidget>(u"lstField"_s);
        QCOMPARE(fields->count(), 4);
        fields->setFocus();
        QTest::keyClick(fields, Qt::Key_End);
        QCOMPARE(F().Find<QLabel>(u"lblInfo"_s)->text(), u"本文"_s);
        QCOMPARE(fields->item(3)->toolTip(), u"本文"_s);
        QTest::keyClick(fields, Qt::Key_Up);
        QTest::keyClick(fields, Qt::Key_Up);
        QCOMPARE(F().Find<QLabel>(u"lblInfo"_s)->text(), QString());
        QCOMPARE(F().Box().textCursor().selectedText(), u"SELECT 1"_s);
        F().Find<QComboBox>(u"cmbTable"_s)->setCurrentIndex(0);
        QCOMPARE(fields->item(0)->text(), u"名前 全部"_s);
        F().Names().setEditText(u"x"_s);
        QVERIFY(F().Button(u"cmdDelete"_s).isEnabled());
    });
    F().Show(u"SELECT 2"_s, [&] { QCOMPARE(F().Names().currentText(), QString()); }); // and nothing is left of before
}

void tst_frmSQL::CaretAtTheError()
{
    const QString sql = u"SELECT *\r\n  FROM Message\r\n WHERE 1 +* 2"_s;
    const auto place = [&] {
        return F().Box().textCursor().block().text().mid(F().Box().textCursor().positionInBlock());
    };
    F().Show(
        sql, [&] { QCOMPARE(place(), u"* 2"_s); }, int(sql.lastIndexOf(u'*')));
    F().Show(
        sql, [&] { QCOMPARE(place(), QString()); }, int(sql.size()) + 50);
    const QString tall = u"SELECT *\r\n"_s + u"\r\n"_s.repeated(200) + sql;
    F().Show(
        tall,
        [&] {
            QVERIFY(F().Box().rect().contains(F().Box().cursorRect()));
            QTest::keyClicks(&F().Box(), u"3"_s);
        },
        int(tall.lastIndexOf(u'*')));
    const QString written = QString(tall).insert(tall.lastIndexOf(u'*'), u'3');
    F().Show(
        written,
        [&] { // run in vain: what was written can be undone
            F().Box().undo();
            QCOMPARE(F().Box().Statement(), tall);
            F().Box().redo();
        },
        0);
    F().Show(written, [&] { QVERIFY(!F().Box().document()->isUndoAvailable()); });
}

void tst_frmSQL::Conditions_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("wanted"); // "|" is the caret
    QTest::newRow("number") << u"Message"_s << 0 << u"WHERE ID = |"_s;
    QTest::newRow("text") << u"Message"_s << 1 << u"WHERE Subject Like '*|*'"_s;
    QTest::newRow("date") << u"Message"_s << 2 << u"WHERE PostDate = #|#"_s;
    QTest::newRow("memo") << u"Message"_s << 3 << u"WHERE Body Like '*|*'"_s;
    QTest::newRow("name with a blank") << u"BBS"_s << 0 << u"WHERE [名前 全部] Like '*|*'"_s;
    QTest::newRow("word of the dialect") << u"BBS"_s << 1 << u"WHERE [Table] = |"_s;
}

void tst_frmSQL::Conditions()
{
    QFETCH(QString, table);
    QFETCH(int, row);
    F().Show(u"WHERE x"_s, [&] {
        F().Find<QComboBox>(u"cmbTable"_s)->setCurrentText(table);
        QTextCursor selected = F().Box().textCursor();
        selected.setPosition(6);
        selected.setPosition(7, QTextCursor::KeepAnchor);
        F().Box().setTextCursor(selected);
        auto* fields = F().Find<QListWidget>(u"lstField"_s);
        fields->setFocus();
        const QPoint place = fields->visualItemRect(fields->item(row)).center();
        QTest::mouseClick(fields->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(fields->viewport(), Qt::LeftButton, {}, place);
        QVERIFY(F().Box().hasFocus());
        QTEST(F().Box().Statement().insert(F().Box().textCursor().position(), u'|'), "wanted");
        F().Box().undo();
        QCOMPARE(F().Box().Statement(), u"WHERE x"_s);
        fields->setCurrentRow(row);
        QTest::keyClick(fields, Qt::Key_Return); // by the keyboard, where the caret is
        QVERIFY(F().Box().Statement().size() > 7);
    });
}

void tst_frmSQL::Keys()
{
    const auto press = [&](QWidget* Target, Qt::Key Key) { QTest::keyClick(Target, Key); };
    QCOMPARE(F().Show(u"SELECT\r\n1"_s, [&] { press(&F().Names(), Qt::Key_F5); }), u"SELECT\r\n1"_s);
    QCOMPARE(F().Show(u"SELECT 1"_s, [&] { press(&F().Box(), Qt::Key_Escape); }), QString());
    QCOMPARE(F().Show(u"SELECT 1"_s, [&] { F().Button(u"cmdCancel"_s).click(); }), QString());
    QCOMPARE(F().Show(u"SELECT 1"_s,
                      [&] {
                          press(F().Names().lineEdit(), Qt::Key_Return); // runs nothing
                          QVERIFY(F().Dialog.isVisible());
                          F().Box().setFocus();
                          F().Box().moveCursor(QTextCursor::End);
                          press(&F().Box(), Qt::Key_Return);
                          QTest::keyClicks(&F().Box(), u"+ 1"_s);
                          F().Names().setEditText(u"q"_s);
                          QTest::keyClick(&F().Box(), Qt::Key_S, Qt::ControlModifier);
                          QTest::keyClick(&F().Box(), Qt::Key_A, Qt::ControlModifier);
                          F().Box().cut();
                          QTest::keyClicks(&F().Box(), u"SELECT 2"_s);
                          F().Button(u"cmdExec"_s).click();
                      }),
             u"SELECT 2"_s);
    QCOMPARE(F().Saved(u"q"_s), u"q:SELECT 1\r\n+ 1"_s);
}

void tst_frmSQL::TextStaysAsItIs()
{
    const QString sql = u"SELECT '\u00a0|\t<b>'\r\n\r\nFROM 表ソ①\U00020b9f"_s;
    QCOMPARE(F().Show(sql, [&] { QTest::keyClick(&F().Box(), Qt::Key_F5); }), sql);
}

void tst_frmSQL::Save_data()
{
    // box: what is asked or told; empty: nothing
    mdlTable::AddRows<QString, QString, bool, QString>("query-dialog.json", "Save",
                                                       {"name", "box", "agrees", "wanted"});
}

void tst_frmSQL::Save()
{
    QFETCH(QString, name);
    QFETCH(QString, box);
    QFETCH(bool, agrees);
    if (!box.isEmpty())
        F().Desk.Expect(box, agrees ? Desktop::Answer::Ok : Desktop::Answer::Cancel);
    F().Show(u"SELECT 5"_s, [&] {
        F().Names().setEditText(name);
        F().Button(u"cmdSave"_s).click();
        QCOMPARE(F().Names().currentText(), name.trimmed());
        QTEST(F().Saved(name.trimmed()), "wanted");
        QCOMPARE(F().Items(u"cmbQuery"_s), F().App.LogDB()->QueryDefs());
    });
    if (!F().Desk.Boxes.empty()) {
        QVERIFY(F().Desk.Boxes[0].Icon == Desktop::Icon::Information);
        QCOMPARE(F().Desk.Boxes[0].Caption, u"Tavora Ver.0.50"_s);
    }
}

void tst_frmSQL::RefusedSaveShowsThePlace()
{
    F().Desk.ExpectInput(u"クエリー名を入力してください。"_s, u" abc "_s);
    F().Desk.Expect(u"既にabcは"_s);
    F().Desk.Expect(u"\r\n\r\nクエリーを保存できませんでした。"_s);
    F().Show(u"SELECT *\r\nFROM (Message"_s, [&] {
        F().Button(u"cmdSave"_s).setFocus();
        F().Button(u"cmdSave"_s).click();
        QVERIFY(F().Box().hasFocus() && !F().Box().textCursor().hasSelection());
        QCOMPARE(F().Saved(u"abc"_s), u"abc:SELECT 1"_s); // the old one is still there
        F().Desk.Expect(u"クエリー名を入力"_s, Desktop::Answer::Cancel);
        F().Names().clearEditText();
        F().Button(u"cmdSave"_s).click();
    });
}

void tst_frmSQL::ChooseWhileModified_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("name");   // typed into the box of names
    QTest::addColumn<QString>("wanted"); // the statement then
    const QString chosen = u"SELECT *\r\nFROM Message"_s;
    QTest::newRow("cancel") << int(Desktop::Answer::Cancel) << QString() << u"SELECT 7"_s;
    QTest::newRow("no") << int(Desktop::Answer::No) << QString() << chosen;
    QTest::newRow("saved") << int(Desktop::Answer::Yes) << u"seven"_s << chosen;
    QTest::newRow("no name after all") << int(Desktop::Answer::Yes) << QString() << u"SELECT 7"_s;
}

void tst_frmSQL::ChooseWhileModified()
{
    QFETCH(int, answer);
    QFETCH(QString, name);
    F().Desk.Expect(u"現在編集中のSQLを保存しますか？"_s, Desktop::Answer(answer));
    if (Desktop::Answer(answer) == Desktop::Answer::Yes)
        F().Desk.ExpectInput(u"クエリー名を入力"_s, name);
    F().Show(u"SELECT "_s, [&] {
        F().Choose(u"abc"_s); // nothing was written yet, so nothing is asked
        QCOMPARE(F().Box().Statement(), u"SELECT 1"_s);
        F().Box().ReplaceStatement(u"SELECT 7"_s);
        F().Choose(u"古い順"_s);
        QTEST(F().Box().Statement(), "wanted");
        if (F().Box().Statement() != u"SELECT 7"_s) {
            F().Box().undo();
            QCOMPARE(F().Box().Statement(), u"SELECT 7"_s);
        }
    });
    QCOMPARE(F().Saved(u"seven"_s), name.isEmpty() ? QString() : u"seven:SELECT 7"_s);
}

void tst_frmSQL::Delete()
{
    F().Desk.Expect(u"abcを削除してもよろしいですか？\r\n"_s, Desktop::Answer::Cancel);
    F().Desk.Expect(u"abcを削除しても"_s);
    F().Desk.Expect(u"ABCを削除しても"_s);
    F().Desk.Expect(u"クエリーABCは存在しませんでした。"_s);
    F().Show(u"SELECT 1"_s, [&] {
        F().Names().setEditText(u"abc"_s);
        F().Button(u"cmdDelete"_s).click();
        QCOMPARE(F().Saved(u"abc"_s), u"abc:SELECT 1"_s);
        F().Button(u"cmdDelete"_s).click();
        QCOMPARE(F().Saved(u"abc"_s), QString());
        QCOMPARE(F().Items(u"cmbQuery"_s), QStringList({u"古い順"_s}));
        QCOMPARE(F().Names().currentText(), QString());
        F().Names().setEditText(u"ABC"_s);
        F().Button(u"cmdDelete"_s).click();
    });
    for (const CShownBox& box : F().Desk.Boxes)
        QVERIFY(box.Buttons == Desktop::Buttons::Ok || box.Default == Desktop::Answer::Cancel);
}

void tst_frmSQL::PlaceIsKept()
{
    const QRect place(30, 40, 700, 350);
    int barBefore = 0;
    F().Show(u"SELECT 1"_s, [&] {
        auto* bar = F().Find<uSeparator>(u"sep"_s);
        QVERIFY2(qAbs(bar->Parsent() - 70) < 1, qPrintable(QString::number(bar->Parsent())));
        F().Dialog.setGeometry(place);
        QCoreApplication::processEvents();
        QTest::keyClick(bar->focusProxy(), Qt::Key_Home);
        QVERIFY(F().Box().width() > F().Box().verticalScrollBar()->sizeHint().width());
        bar->SetOffset(300 * 15);
        barBefore = F().Box().width();
    });
    CIniFile file;
    file.Load(F().App.IniFileName());
    file.SetNowSection(u"SQLDialogPosition"_s);
    QCOMPARE(file.Keys(), QStringList({u"Left"_s, u"Top"_s, u"Width"_s, u"Height"_s, u"Separator"_s}));
    QCOMPARE(file.Data(u"Width"_s), u"10500"_s);
    QCOMPARE(file.Data(u"Separator"_s), u"4500"_s);
    F().Show(u"SELECT 1"_s, [&] {
        QCOMPARE(F().Dialog.geometry(), place);
        QCOMPARE(F().Box().width(), barBefore);
    });
}

void tst_frmSQL::PlaceIsForgotten()
{
    CIniFile& ini = F().App.SettingsIni();
    ini.SetNowSection(u"SQLDialogPosition"_s);
    for (const QString& key : {u"Left"_s, u"Top"_s, u"Width"_s, u"Height"_s})
        ini.SetData(key, u"6000"_s);
    ini.SetData(u"Left"_s, u"x"_s);
    ini.SetData(u"Top"_s, u"3000"_s);
    QSize designed;
    F().Show(u"SELECT 1"_s, [&] {
        QCOMPARE(F().Dialog.size(), QSize(400, 400).expandedTo(F().Dialog.minimumSizeHint()));
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QVERIFY(qAbs(F().Dialog.geometry().center().x() - screen.center().x()) <= 1); // no number: centred on that axis
        QCOMPARE(F().Dialog.geometry().top(), 200);
    });
    F().App.Option().SaveSQLDialogPosition = false;
    F().Show(u"SELECT 1"_s, [&] {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QVERIFY((F().Dialog.geometry().center() - screen.center()).manhattanLength() <= 2);
    });
    ini.SetNowSection(u"SQLDialogPosition"_s);
    QCOMPARE(ini.Keys(), QStringList());
}

void tst_frmSQL::WithoutADatabase()
{
    F().App.LogDB()->Close(); // as one that cannot be read
    F().Show(u"SELECT 1"_s, [&] { QCOMPARE(F().Items(u"cmbQuery"_s) + F().Items(u"cmbTable"_s), QStringList()); });
    F().App.SetLogDB(nullptr);
    QCOMPARE(F().Show(u"SELECT 1"_s,
                      [&] {
                          F().Names().setEditText(u"q"_s);
                          F().Button(u"cmdSave"_s).click();
                          F().Button(u"cmdExec"_s).click();
                      }),
             u"SELECT 1"_s);
}

QTEST_MAIN(tst_frmSQL)
#include "tst_frmSQL.moc"

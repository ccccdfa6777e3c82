// tests/gui/tst_Import.cpp
// Log files by the menu and by dropping them, in the real window.

#include "load/frmLoadDlg.h"
#include "tests/board/Records.h"
#include "tests/gui/CWindowFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QTreeView>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{
struct CImportWindow : CWindowFixture
{
    QString LogFile(const QString& Name, const QString& Text)
    {
        QFile file(Folder.filePath(Name));
        return file.open(QIODevice::WriteOnly) && file.write(mdlRecords::Bytes(Text)) >= 0 ? file.fileName()
                                                                                           : QString();
    }
    frmLoadDlg* Dialog() const { return Find<frmLoadDlg>(u"frmLoadDlg"_s); }
    QString Log() const { return Dialog()->findChild<QPlainTextEdit*>(u"txtLog"_s)->toPlainText(); }

    /// Drags Data over Target and lets it go; whether it was taken.
    static bool Drop(QWidget& Target, QMimeData& Data)
    {
        const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter(QPoint(4, 4), actions, &Data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&Target, &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent drop(QPointF(4, 4), actions, &Data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&Target, &drop);
        return drop.isAccepted();
    }
    static bool DropUrls(QWidget& Target, const QList<QUrl>& Urls)
    {
        QMimeData data;
        data.setUrls(Urls);
        return Drop(Target, data);
    }
};
} // namespace

class tst_Import : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void ByTheMenu();
    void TheListTakesNewerAndOlderMessages();
    void ByDropping();
    void WhatIsNotDropped();
    void ClosingTheWindowEndsIt();
};

void tst_Import::ByTheMenu()
{
    CImportWindow w;
    QVERIFY(w.Start());
    const QString file = w.LogFile(u"a.txt"_s, mdlRecords::Plain(1, 150) + mdlRecords::Block({u"こわれた"_s}) +
                                                   mdlRecords::Plain(151, 160));
    QString during;
    connect(&w.Window->Board(), &CBBS::AddMessage, this, [&](const CMessage& Msg) {
        if (Msg.ID == 80)
            during = w.Window->windowTitle() + (w.Action(u"mnuFileImport"_s)->isEnabled() ? u" on"_s : u" off"_s) +
                     u' ' + w.Dialog()->windowTitle() + u' ' + QString::number(w.List().Count());
    });
    w.Desk.ExpectFiles({}, {file});
    w.Desk.Expect(u"けやき掲示板に下記のファイルをインポートします。"_s, Desktop::Answer::Yes);
    w.Action(u"mnuFileImportFile"_s)->trigger();
    QVERIFY(w.Desk.Verify());
    QCOMPARE(during, u"けやき掲示板 - Tavora Ver.0.50 off インポート中... - Tavora Ver.0.50 0"_s);
    QCOMPARE(w.Window->windowTitle(), u"けやき掲示板 - Tavora Ver.0.50"_s);
    QCOMPARE(w.List().Count(), 100);
    QCOMPARE(w.List().Item(99).Message.ID, 61);
    QVERIFY(w.Action(u"mnuFileImport"_s)->isEnabled());
    QVERIFY(w.Action(u"mnuBBSViewSub2"_s)->isEnabled()); // the older ones
    QVERIFY(w.Action(u"mnuTrayBBSSub1"_s)->text().endsWith(u"(160)"_s));
    QCOMPARE(w.Log(), u"150件目のログが壊れていました。\n"_s + file +
                          u"には取り込めない記録が1件ありました。取り込んだ新しいメッセージは160件です。\n"
                          "160件インポートしました。\n"_s);
    QFile bad(w.Folder.filePath(u"keyaki.bad"_s));
    QVERIFY(bad.open(QIODevice::ReadOnly) && bad.readAll().startsWith(mdlRecords::Bytes(u"こわれた\r\n"_s)));
}

void tst_Import::TheListTakesNewerAndOlderMessages()
{
    CImportWindow w;
    w.Add(500, 510);
    QVERIFY(w.Start());
    w.Run(u"DELETE FROM Message WHERE ID = 505"_s);
    w.Viewer().ShowViewMode(0);
    w.Desk.Expect(u"インポート"_s, Desktop::Answer::Yes);
    QVERIFY(CImportWindow::DropUrls(
        *w.Window, {QUrl::fromLocalFile(w.LogFile(u"a"_s, mdlRecords::Plain(1, 3) + mdlRecords::Plain(505, 512)))}));
    QTRY_COMPARE(w.Rows(u"SELECT Count(*) FROM Message"_s), u"16"_s);
    QStringList shown;
    for (int row = 0; row < w.List().Count(); ++row)
        shown << QString::number(w.List().Item(row).Message.ID);
    QCOMPARE(shown.join(u' '), u"512 511 510 509 508 507 506 505 504 503 502 501 500 3 2 1"_s);
}

void tst_Import::ByDropping()
{
    CImportWindow w;
    QVERIFY(w.Start());
    int number = 1;
    for (QWidget* target : {static_cast<QWidget*>(w.Window.get()),
                            static_cast<QWidget*>(w.Find<QComboBox>(u"cmbFindText"_s)->lineEdit())}) {
        const QUrl file = QUrl::fromLocalFile(w.LogFile(u"%1.txt"_s.arg(number), mdlRecords::Plain(number, number)));
        w.Desk.Expect(u"インポート"_s, Desktop::Answer::Yes);
        QVERIFY(CImportWindow::DropUrls(*target, {file}));
        QCOMPARE(w.Desk.Boxes.size(), std::size_t(number - 1)); // never within the drop
        QTRY_COMPARE(w.List().Count(), number);
        QVERIFY(w.Desk.Verify());
        ++number;
    }
    QVERIFY(!w.Find<QTreeView>(u"lsvMsgList0"_s)->viewport()->acceptDrops());
    QMimeData text;
    text.setText(u"さがす"_s);
    QVERIFY(CImportWindow::Drop(*w.Find<QComboBox>(u"cmbFindText"_s)->lineEdit(), text));
    QCOMPARE(w.Find<QComboBox>(u"cmbFindText"_s)->currentText(), u"さがす"_s);
}

void tst_Import::WhatIsNotDropped()
{
    CImportWindow w;
    QVERIFY(w.Start());
    const QUrl file = QUrl::fromLocalFile(w.LogFile(u"a.txt"_s, mdlRecords::Plain(1, 1)));
    QMimeData text;
    text.setText(u"a"_s);
    QVERIFY(!CImportWindow::Drop(*w.Window, text));
    for (const QUrl& url : {QUrl::fromLocalFile(w.Folder.path()), QUrl(u"http://localhost/a.txt"_s),
                            QUrl::fromLocalFile(w.Folder.filePath(u"none"_s)), QUrl(u"file://server/share/a.txt"_s)}) {
        QVERIFY2(!CImportWindow::DropUrls(*w.Window, {url}), qPrintable(url.toString()));
        QVERIFY(!CImportWindow::DropUrls(*w.Window, {file, url}));
    }
    bool wasTaken = true;
    connect(&w.Window->Board(), &CBBS::AddMessage, this,
            [&] { wasTaken = CImportWindow::DropUrls(*w.Window, {file}); });
    w.Desk.Expect(u"インポート"_s, Desktop::Answer::Yes);
    QVERIFY(CImportWindow::DropUrls(*w.Window, {file}));
    QTRY_COMPARE(w.List().Count(), 1);
    QVERIFY(!wasTaken);
}

void tst_Import::ClosingTheWindowEndsIt()
{
    CImportWindow w;
    QVERIFY(w.Start());
    const QString file = w.LogFile(u"a.txt"_s, mdlRecords::Plain(1, 3000));
    connect(&w.Window->Board(), &CBBS::AddMessage, this, [&](const CMessage& Msg) {
        if (Msg.ID == 2100)
            w.Window->close();
    });
    w.Desk.ExpectFiles({}, {file, file});
    w.Desk.Expect(u"インポート"_s, Desktop::Answer::Yes);
    w.Action(u"mnuFileImportFile"_s)->trigger();
    QTRY_COMPARE(w.ClosedCount, 1);
    w.Window.reset();
    w.App.reset();
    QVERIFY(w.Start());
    QCOMPARE(w.Rows(u"SELECT Count(*) FROM Message WHERE RootThread = ID"_s), u"2100"_s);
}

QTEST_MAIN(tst_Import)
#include "tst_Import.moc"

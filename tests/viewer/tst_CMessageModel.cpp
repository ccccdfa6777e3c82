// tests/viewer/tst_CMessageModel.cpp
// The item model over a message list, watched by Qt's own checker.

#include "app/Settings.h"
#include "tests/viewer/Messages.h"
#include "viewer/CMessageModel.h"
#include "viewer/mdlColumns.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using Order = CMessageList::Order;

class tst_CMessageModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void EveryChangePassesTheChecker();
    void PersistentIndexesFollow();
    void BodyIsOneLine_data();
    void BodyIsOneLine();
    void Roles();
    void TipsAreNeverTags();
    void OneChangeTouchesOneRow();

private:
    QString Cell(int Row, int Column) const { return m_model->index(Row, Column).data().toString(); }

    Settings m_option;
    std::unique_ptr<CMessageList> m_list;
    std::unique_ptr<CMessageModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void tst_CMessageModel::init()
{
    m_option = Settings();
    m_option.DateFormat = u"yyyy/mm/dd hh:nn"_s;
    m_list = std::make_unique<CMessageList>(m_option, mdlColumns::BoardHeaders());
    m_model = std::make_unique<CMessageModel>(*m_list, m_option);
    m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get(),
                                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
}

void tst_CMessageModel::cleanup()
{
    m_tester.reset();
    m_model.reset();
    m_list.reset();
}

void tst_CMessageModel::EveryChangePassesTheChecker()
{
    m_list->Fill(MakeItems({MakeMessage(3, 1), MakeMessage(3, 2, {}, 1), MakeMessage(3, 3, {}, 1)}), {});
    m_list->Add(MakeItem(MakeMessage(3, 9)));
    m_list->Add(MakeItem(MakeMessage(3, 5)));
    m_list->Sort(mdlColumns::Subject, Order::Ascending);
    m_list->Add(MakeItem(MakeMessage(3, 7, u"あ"_s)));
    m_list->ArrangeThreads();
    m_list->Add(MakeItem(MakeMessage(3, 6)));
    m_list->SetRead({m_list->Item(0).Id()}, true);
    m_list->SetMark({m_list->Item(1).Id()}, 2, 128U);
    m_list->ClearIndent();
    m_list->Remove({{3, 1}});
    m_list->Remove({{3, 6}});
    m_list->SetSortMark(1, Order::Descending);
    QCOMPARE(m_model->rowCount(), 5);
    QCOMPARE(m_model->headerData(1, Qt::Horizontal).toString(), u"番号 ▽"_s);
    m_list->FillRaw({u"a"_s, u"b"_s}, {u"1"_s, u"2"_s});
    QCOMPARE(m_model->columnCount(), 2);
    QCOMPARE(Cell(0, 1), u"2"_s);
    m_list->FillRaw({u"a"_s}, {});
    m_list->Fill({}, mdlColumns::BoardHeaders());
    QCOMPARE(m_model->columnCount(), 11);
    m_list->Clear();
    QCOMPARE(m_model->rowCount(), 0);
}

void tst_CMessageModel::PersistentIndexesFollow()
{
    m_list->Fill(MakeItems({MakeMessage(3, 1), MakeMessage(3, 2, {}, 1), MakeMessage(3, 3, {}, 1)}), {});
    const QPersistentModelIndex two(m_model->index(1, mdlColumns::ID));
    QCOMPARE(two.data().toString(), u"000002"_s);
    m_list->ArrangeThreads(); // 1 3 2
    QCOMPARE(two.row(), 2);
    m_list->Sort(mdlColumns::ID, Order::Ascending);
    QCOMPARE(two.row(), 1);
    QCOMPARE(two.data().toString(), u"000002"_s);
    m_list->Remove({{3, 1}});
    QCOMPARE(two.row(), 0);
}

void tst_CMessageModel::BodyIsOneLine_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("line ends") << u"一\r\n二\n三\r四"_s << u"一 二 三 四"_s;
    QTest::newRow("two hundred stay") << QString(200, u'あ') << QString(200, u'あ');
    QTest::newRow("cut") << QString(201, u'あ') << QString(200, u'あ');
    QTest::newRow("no half character") << QString(199, u'a') + u"𠮷"_s << QString(199, u'a');
    QTest::newRow("a whole one at the end") << QString(198, u'a') + u"𠮷"_s << QString(198, u'a') + u"𠮷"_s;
    QTest::newRow("empty") << QString() << QString();
}

void tst_CMessageModel::BodyIsOneLine()
{
    QFETCH(QString, body);
    CMessage message = MakeMessage(3, 1);
    message.Body = body;
    m_list->Fill(MakeItems({message}), {});
    QTEST(Cell(0, mdlColumns::Body), "wanted");
    QCOMPARE(m_list->Text(0, mdlColumns::Body), body); // the find looks at all of it
}

void tst_CMessageModel::Roles()
{
    CMessage read = MakeMessage(14, 1);
    read.Read = true;
    m_list->Fill(MakeItems({read, MakeMessage(3, 2)}), {});
    m_list->SetMark({m_list->Item(0).Id()}, 1, 128U);
    const auto data = [this](int Row, int Column, int Role) { return m_model->index(Row, Column).data(Role); };
    QCOMPARE(data(0, 1, CMessageModel::BoldRole).toBool(), true);
    QCOMPARE(data(1, 1, CMessageModel::BoldRole).toBool(), false);
    QCOMPARE(data(0, 1, CMessageModel::ColorRole).toUInt(), 128U);
    QVERIFY(!data(0, 0, CMessageModel::ColorRole).isValid()); // the read mark keeps its colour
    QVERIFY(!data(1, 1, CMessageModel::ColorRole).isValid());
    QCOMPARE(data(1, 0, CMessageModel::BoardRole).toInt(), 14);
    QVERIFY(!data(1, 1, CMessageModel::BoardRole).isValid());
    m_option.NoReadBold = false;
    QCOMPARE(data(0, 1, CMessageModel::BoldRole).toBool(), false);
    m_list->SetMark({m_list->Item(0).Id()}, 0, CMessageItem::NormalColor);
    QVERIFY(!data(0, 1, CMessageModel::ColorRole).isValid());
    QVERIFY(!(m_model->flags(m_model->index(0, 2)) & Qt::ItemIsEditable));
    m_list->FillRaw({u"a"_s}, {u"1"_s});
    QVERIFY(!data(0, 0, CMessageModel::BoardRole).isValid());
    QCOMPARE(data(0, 0, CMessageModel::BoldRole).toBool(), false);
}

void tst_CMessageModel::TipsAreNeverTags()
{
    CMessage message = MakeMessage(3, 1, u"<img src='file:///etc/passwd'>"_s);
    message.PostName = u"花子 & 太郎"_s;
    std::vector<CMessageItem> items = MakeItems({message});
    items[0].Indent = 2;
    m_list->Fill(std::move(items), {});
    const auto tip = [this](int Column) { return m_model->index(0, Column).data(Qt::ToolTipRole).toString(); };
    QCOMPARE(tip(mdlColumns::Subject), u"<qt>&lt;img src='file:///etc/passwd'&gt;</qt>"_s);
    QCOMPARE(tip(mdlColumns::Name), u"花子 & 太郎"_s);
    QCOMPARE(tip(mdlColumns::Body), QString());
}

void tst_CMessageModel::OneChangeTouchesOneRow()
{
    m_list->Fill(MakeItems({MakeMessage(3, 1), MakeMessage(3, 2)}), {});
    QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
    m_list->SetRead({m_list->Item(1).Id()}, true);
    m_list->SetRead({m_list->Item(1).Id()}, true);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed[0][0].toModelIndex().row(), 1);
    QCOMPARE(changed[0][1].toModelIndex().row(), 1);
    QCOMPARE(changed[0][1].toModelIndex().column(), 10);
    QCOMPARE(Cell(1, 0), u" "_s);
    QCOMPARE(Cell(0, 0), u"*"_s);
}

QTEST_GUILESS_MAIN(tst_CMessageModel)
#include "tst_CMessageModel.moc"

// tests/platform/tst_DaoTextEquality.cpp
// Every way in which a statement tells texts apart, on random texts, against folds compared one by one.

#include "platform/dao/Database.h"
#include "platform/dao/Recordset.h"
#include "platform/text/Fold.h"
#include "tests/support/DaoHelpers.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;

class tst_DaoTextEquality : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void Grouped();
    void Distinct();
    void Compared();
    void Joined();
    void Sorted();
    void Searched();

private:
    QString Word();
    QString Literal(const QString& Text) const { return u'\'' + QString(Text).replace(u'\'', u"''"_s) + u'\''; }
    int Count(const QString& Condition);
    template<class Takes> int CountPlainly(Takes&& IsTaken) const
    {
        return int(std::count_if(m_texts.begin(), m_texts.end(), IsTaken));
    }

    QTemporaryDir m_folder;
    std::unique_ptr<dao::Database> m_db;
    QStringList m_texts;
    QRandomGenerator m_random;
};

/// Short, of few units and their look-alikes, so that many are the same text in different clothes.
QString tst_DaoTextEquality::Word()
{
    static const QString units = u"aAＡａあアｱｶﾞカガかﾊﾟﾞ゛パーｰ-－1１①っツつ〜～表 \u3000'"_s;
    QString word;
    for (int i = m_random.bounded(1, 5); i > 0; --i)
        word += units[m_random.bounded(int(units.size()))];
    return word;
}

void tst_DaoTextEquality::initTestCase()
{
    const quint32 seed = qEnvironmentVariableIsSet("SEED") ? qEnvironmentVariable("SEED").toUInt()
                                                           : QRandomGenerator::global()->generate();
    qInfo("SEED=%u", seed);
    m_random.seed(seed);
    m_db = dao::Database::Create(m_folder.path() + u"/log.mdb"_s);
    dao::TableDef table;
    table.Name = u"T"_s;
    // The number in front moves the text to odd and even addresses of a page.
    table.Fields = {Field(u"N"_s, dao::FieldType::Long), Field(u"A"_s, dao::FieldType::Text, 255)};
    m_db->AppendTable(table);
    m_db->BeginTrans();
    const auto rows = m_db->OpenRecordset(u"T"_s, dao::RecordsetType::Table);
    for (int i = 0; i < 1500; ++i) {
        m_texts.append(Word());
        rows->AddNew();
        rows->Set(u"N", dao::Value::FromLong(m_random.bounded(100'000)));
        rows->Set(u"A", dao::Value::FromText(m_texts.back()));
        rows->Update();
    }
    m_db->CommitTrans();
}

int tst_DaoTextEquality::Count(const QString& Condition)
{
    return Rows(*m_db, u"SELECT Count(*) FROM T WHERE "_s + Condition).front().toInt();
}

void tst_DaoTextEquality::Grouped()
{
    std::map<QString, int> wanted, found;
    for (const QString& text : std::as_const(m_texts))
        ++wanted[text::Fold(text)];
    const auto rows = m_db->OpenRecordset(u"SELECT A, Count(*) FROM T GROUP BY A"_s, dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext())
        found[text::Fold(rows->Text(0))] += rows->Long(1);
    QCOMPARE(found, wanted);
    QCOMPARE(rows->RecordCount(), qint32(wanted.size()));   // no group twice
}

void tst_DaoTextEquality::Distinct()
{
    QSet<QString> folds;
    for (const QString& text : std::as_const(m_texts))
        folds.insert(text::Fold(text));
    for (const QString& sql : {u"SELECT DISTINCT A FROM T"_s, u"SELECT A FROM T UNION SELECT A FROM T"_s,
                               u"SELECT A FROM T GROUP BY A, A & ''"_s})
        QCOMPARE(Rows(*m_db, sql).size(), folds.size());
}

void tst_DaoTextEquality::Compared()
{
    for (int round = 0; round < 80; ++round) {
        const QString word = Word(), other = Word();
        const auto isWord = [&](const QString& text) { return text::EqualText(text, word); };
        const auto isEither = [&](const QString& text) { return isWord(text) || text::EqualText(text, other); };
        QCOMPARE(Count(u"A = "_s + Literal(word)), CountPlainly(isWord));
        QCOMPARE(Count(u"A <> "_s + Literal(word)), 1500 - CountPlainly(isWord));
        QCOMPARE(Count(u"A IN ("_s + Literal(word) + u", "_s + Literal(other) + u", 'もう一つ')"_s), CountPlainly(isEither));
        QCOMPARE(Count(u"A < "_s + Literal(word)),
                 CountPlainly([&](const QString& text) { return text::CompareText(text, word) < 0; }));
    }
}

void tst_DaoTextEquality::Joined()
{
    qint64 pairs = 0;
    std::map<QString, int> counts;
    for (const QString& text : std::as_const(m_texts))
        ++counts[text::Fold(text)];
    for (const auto& [text, count] : counts)
        pairs += qint64(count) * count;
    QCOMPARE(Rows(*m_db, u"SELECT Count(*) FROM T AS X INNER JOIN T AS Y ON X.A = Y.A"_s).front().toLongLong(), pairs);
    QCOMPARE(Count(u"A IN (SELECT UCase(A) FROM T)"_s), 1500);
    QCOMPARE(Count(u"A = ANY (SELECT A & '' FROM T WHERE N >= 0)"_s), 1500);
}

void tst_DaoTextEquality::Sorted()
{
    const QStringList found = Rows(*m_db, u"SELECT A FROM T ORDER BY A"_s);
    const auto isBefore = [](const QString& left, const QString& right) { return text::CompareText(left, right) < 0; };
    QVERIFY(std::is_sorted(found.begin(), found.end(), isBefore));
    // More rows tie than are read at once.
    QCOMPARE(Rows(*m_db, u"SELECT TOP 2 A FROM T ORDER BY N * 0"_s).size(), 1500);
}

void tst_DaoTextEquality::Searched()
{
    for (int round = 0; round < 100; ++round) {
        const QString word = Word();
        QCOMPARE(Count(u"A Like '*"_s + QString(word).replace(u'\'', u"''"_s) + u"*'"_s),
                 CountPlainly([&](const QString& text) { return text::Fold(text).contains(text::Fold(word)); }));
    }
}

QTEST_GUILESS_MAIN(tst_DaoTextEquality)
#include "tst_DaoTextEquality.moc"

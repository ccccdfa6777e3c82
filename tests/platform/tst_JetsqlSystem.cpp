// tests/platform/tst_JetsqlSystem.cpp
// Every statement that the program itself sends.

#include "tests/support/CSqlBench.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Each statement runs on a database that was itself filled by the program's statements, and its whole outcome counts.
class tst_JetsqlSystem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Queries_data();
    void Queries();
    void Changes_data();
    void Changes();
    void EditableRows_data();
    void EditableRows();
};

void tst_JetsqlSystem::Queries_data()
{
    mdlTable::AddRows<QString, QStringList>("sql-system.json", "Queries", {"statement", "rows"});
}

void tst_JetsqlSystem::Queries()
{
    QFETCH(QString, statement);
    QFETCH(QStringList, rows);
    CSqlBench bench;
    for (const QJsonValue& seed : mdlTable::Rows("sql-system.json", "Seed"))
        QCOMPARE(bench.Run(seed.toString()).ErrorText, QString());
    const CSqlBench::Outcome outcome = bench.Run(statement);
    QCOMPARE(outcome.ErrorText, QString());
    QCOMPARE(outcome.Rows, rows);
    QVERIFY(outcome.Parameters.isEmpty());
}

void tst_JetsqlSystem::Changes_data()
{
    mdlTable::AddRows<QString, int, QString, QStringList>("sql-system.json", "Changes",
                                                          {"statement", "changed", "query", "rows"});
}

void tst_JetsqlSystem::Changes()
{
    QFETCH(QString, statement);
    QFETCH(int, changed);
    QFETCH(QString, query);
    QFETCH(QStringList, rows);
    CSqlBench bench;
    for (const QJsonValue& seed : mdlTable::Rows("sql-system.json", "Seed"))
        QCOMPARE(bench.Run(seed.toString()).ErrorText, QString());
    const CSqlBench::Outcome outcome = bench.Run(statement);
    QCOMPARE(outcome.ErrorText, QString());
    QCOMPARE(outcome.Affected, changed);
    QCOMPARE(bench.Run(query).Rows, rows);
}

// The rows that the program edits must say which table they are of.
void tst_JetsqlSystem::EditableRows_data()
{
    mdlTable::AddRows<QString, QString>("sql-system.json", "EditableRows", {"statement", "table"});
}

void tst_JetsqlSystem::EditableRows()
{
    QFETCH(QString, statement);
    QFETCH(QString, table);
    CSqlBench bench;
    const auto compiled = jetsql::Compile(jetsql::TakeShape(statement), bench);
    QCOMPARE(compiled->EditableTable, table);
    QCOMPARE(compiled->TargetTable, QString());
}

QTEST_GUILESS_MAIN(tst_JetsqlSystem)
#include "tst_JetsqlSystem.moc"

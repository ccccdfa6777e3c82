// tests/sqlshell/tst_SqlPage.cpp
// Runs everything that docs/sql.md shows, so that the page cannot say what is not so.

#include "platform/jetsql/FunctionTable.h"
#include "store/Store.h"
#include "sqlshell/CShell.h"
#include "sqlshell/CTableOutput.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace sqlshell;

namespace
{

QString ReadSource(const QString& Name)
{
    QFile file(QStringLiteral(TAVORA_SOURCE_DIR) + u'/' + Name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// A fenced block of the page, with the block of kind "text" that follows it as what it prints.
struct CBlock
{
    QString Kind;
    QString Text;
    QString Prints;
    bool HasPrint = false;
};

std::vector<CBlock> Blocks()
{
    static const QRegularExpression fence(u"^```([a-z]+)\n(.*?)^```\n\n?"_s,
                                          QRegularExpression::MultilineOption |
                                              QRegularExpression::DotMatchesEverythingOption);
    std::vector<CBlock> blocks;
    qsizetype end = 0;
    for (auto found = fence.globalMatch(ReadSource(u"docs/sql.md"_s)); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        if (match.captured(1) == u"text" && match.capturedStart() == end && !blocks.empty()) {
            blocks.back().Prints = match.captured(2);
            blocks.back().HasPrint = true;
        } else {
            blocks.push_back({match.captured(1), match.captured(2), {}, false});
        }
        end = match.capturedEnd();
    }
    return blocks;
}

/// The first two cells in code marks of every line of a table that has them.
std::vector<std::pair<QString, QString>> Rows(const QString& Pattern)
{
    std::vector<std::pair<QString, QString>> rows;
    const QRegularExpression line(Pattern, QRegularExpression::MultilineOption);
    for (auto found = line.globalMatch(ReadSource(u"docs/sql.md"_s)); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        rows.emplace_back(match.captured(1), match.captured(2));
    }
    return rows;
}

/// The database of the page: a new one with the sample messages.
void MakeSample(const QString& FileName)
{
    const auto database = mdlStore::CreateNewDatabase(FileName);
    CSplitter script;
    script.Add(ReadSource(u"tests/data/sql/boards.sql"_s).toUtf8());
    while (const auto piece = script.Next(true))
        database->Execute(QString::fromUtf8(piece->Text));
}

} // namespace

class tst_SqlPage : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void EveryBlockRuns_data();
    void EveryBlockRuns();
    void EveryExpressionGivesWhatItSays();
    void EveryFunctionIsThere();
    void EveryErrorIsRaised();

private:
    QString RunSql(const QString& Text, bool& HasRefused) const;
    QString RunShell(const QString& Text, bool& HasRefused) const;

    QTemporaryDir m_folder;
    QString m_file;
};

void tst_SqlPage::initTestCase()
{
    m_file = m_folder.filePath(u"log.mdb"_s);
    MakeSample(m_file);
}

QString tst_SqlPage::RunSql(const QString& Text, bool& HasRefused) const
{
    QByteArray written;
    CSink sink([&](QByteArrayView bytes) { written.append(bytes); });
    COptions options;
    options.File = m_file;
    CTableOutput output(sink, sink, {}, options.MaxWidth);
    CShell shell(options, output, {});
    CSplitter script;
    script.Add(Text.toUtf8());
    while (const auto piece = script.Next(true))
        shell.Run(*piece);
    sink.Flush();
    HasRefused = shell.HasRefused();
    return QString::fromUtf8(written);
}

QString tst_SqlPage::RunShell(const QString& Text, bool& HasRefused) const
{
    QProcess bash;
    bash.setWorkingDirectory(m_folder.path());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PATH"_s, QStringLiteral(TAVORA_BINARY_DIR "/sqlshell:") + environment.value(u"PATH"_s));
    bash.setProcessEnvironment(environment);
    bash.setProcessChannelMode(QProcess::MergedChannels);
    bash.start(u"bash"_s, {u"-ec"_s, Text});
    HasRefused = !bash.waitForFinished(60000) || bash.exitCode() != 0;
    return QString::fromUtf8(bash.readAllStandardOutput());
}

void tst_SqlPage::EveryBlockRuns_data()
{
    QTest::addColumn<int>("block");
    int number = 0;
    for (const CBlock& block : Blocks())
        QTest::newRow(qPrintable(block.Text.section(u'\n', 0, 0).left(60))) << number++;
    QVERIFY(number > 12);
}

// In the order of the page: later examples use what earlier ones made.
void tst_SqlPage::EveryBlockRuns()
{
    QFETCH(int, block);
    const CBlock shown = Blocks()[size_t(block)];
    QVERIFY2(shown.Kind == u"sql" || shown.Kind == u"sh", qPrintable(shown.Kind));
    bool hasRefused = false;
    const QString printed = shown.Kind == u"sql" ? RunSql(shown.Text, hasRefused) : RunShell(shown.Text, hasRefused);
    QVERIFY2(!hasRefused, qPrintable(printed));
    if (shown.HasPrint)
        QVERIFY2(printed.trimmed() == shown.Prints.trimmed(), qPrintable(u"\n"_s + printed));
}

void tst_SqlPage::EveryExpressionGivesWhatItSays()
{
    const auto database = dao::Database::Open(m_file);
    const auto rows = Rows(u"^\\| `([^`]+)` \\| `([^`]*)` \\|[^|\n]*\\|$"_s);
    QVERIFY(rows.size() > 60);
    QStringList faults;
    for (const auto& [expression, wanted] : rows) {
        try {
            const auto result = database->OpenRecordset(u"SELECT "_s + expression);
            const QString given = result->IsNull(0) ? u"Null"_s : result->Get(0).ToText();
            if (given != wanted && wanted != u"…")
                faults << expression + u" gives "_s + given;
        } catch (const dao::Error& error) {
            faults << expression + u": "_s + error.Description;
        }
    }
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
}

void tst_SqlPage::EveryFunctionIsThere()
{
    using namespace jetsql;
    const QString page = ReadSource(u"docs/sql.md"_s);
    QStringList missing;
    for (const auto& group : {TextFunctions(), SearchFunctions(), FormatFunctions(), DateFunctions(), MathFunctions(),
                              FinancialFunctions(), ConversionFunctions(), FormFunctions()}) {
        for (const FunctionInfo& function : group) {
            const QString name = QString::fromLatin1(function.Name);
            if (!page.contains(QRegularExpression(u"`[^`\n]*\\b"_s + name + u"\\b[^`\n]*`"_s)))
                missing << name;
        }
    }
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(u' ')));
}

void tst_SqlPage::EveryErrorIsRaised()
{
    const auto rows = Rows(u"^\\| (\\d+) \\| `([^`]+)` \\|"_s);
    QVERIFY(rows.size() > 15);
    QStringList faults;
    for (const auto& [number, statement] : rows) {
        bool hasRefused = false;
        const QString printed = RunSql(statement, hasRefused);
        if (!printed.startsWith(u"エラー %1"_s.arg(number)))
            faults << statement + u": "_s + printed;
    }
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
}

QTEST_GUILESS_MAIN(tst_SqlPage)
#include "tst_SqlPage.moc"

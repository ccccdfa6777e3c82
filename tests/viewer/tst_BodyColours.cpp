// tests/viewer/tst_BodyColours.cpp
// Which lines of a message are quotations and comments.

#include "viewer/mdlBodyLines.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;
using LineKind = ViewerHost::LineKind;

class tst_BodyColours : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Kinds_data();
    void Kinds();
    void Lines_data();
    void Lines();
};

void tst_BodyColours::Kinds_data() { mdlTable::AddRows<QString, int>("body-lines.json", "Kinds", {"line", "wanted"}); }

void tst_BodyColours::Kinds()
{
    QFETCH(QString, line);
    QTEST(int(mdlBodyLines::KindOf(line)), "wanted");
}

void tst_BodyColours::Lines_data()
{
    // wanted: "P:text/Q:text"
    mdlTable::AddRows<QString, QString>("body-lines.json", "Lines", {"body", "wanted"});
}

void tst_BodyColours::Lines()
{
    QFETCH(QString, body);
    QStringList words;
    for (const auto& line : mdlBodyLines::Split(body)) {
        const QChar kind = line.Kind == LineKind::Quote ? u'Q' : line.Kind == LineKind::Comment ? u'C' : u'P';
        words.append(kind + u":"_s + line.Text);
    }
    QTEST(words.join(u'/'), "wanted");
}

QTEST_GUILESS_MAIN(tst_BodyColours)
#include "tst_BodyColours.moc"

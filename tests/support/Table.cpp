// tests/support/Table.cpp
// Reads the tables of cases.

#include "tests/support/Table.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace mdlTable
{

QJsonArray Rows(const char* FileName, const char* Table)
{
    QFile file(QStringLiteral(TAVORA_TEST_DATA "/tables/") + QLatin1StringView(FileName));
    QJsonParseError error;
    const bool isOpen = file.open(QIODevice::ReadOnly);
    const QJsonArray rows =
        QJsonDocument::fromJson(file.readAll(), &error).object().value(QLatin1StringView(Table)).toArray();
    if (!isOpen || rows.isEmpty())
        qFatal("no rows of %s in %s: %s", Table, qPrintable(file.fileName()), qPrintable(error.errorString()));
    return rows;
}

} // namespace mdlTable

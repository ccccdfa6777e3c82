// tests/support/Table.cpp
// Reads the tables and blocks of cases.

#include "tests/support/Table.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

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

std::vector<CBlock> Blocks(const char* Folder)
{
    const QDir folder(QStringLiteral(TAVORA_TEST_DATA "/") + QLatin1StringView(Folder));
    std::vector<CBlock> blocks;
    for (const QString& name : folder.entryList({u"*.txt"_s}, QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s cannot be read", qPrintable(file.fileName()));
        int number = 0;
        bool isOpen = false;
        for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n')) {
            ++number;
            if (line.isEmpty())
                isOpen = false;
            if (line.isEmpty() || line.startsWith(u'#'))
                continue;
            if (!std::exchange(isOpen, true))
                blocks.push_back({u"%1:%2"_s.arg(name).arg(number), {}});
            blocks.back().Lines.append(line);
        }
    }
    if (blocks.empty())
        qFatal("no cases in %s", qPrintable(folder.path()));
    return blocks;
}

} // namespace mdlTable

// tests/support/Table.h
// Cases that are values and nothing else stand in tests/data: tables with one to a line, and blocks of lines.

#ifndef SUPPORT_TABLE_H
#define SUPPORT_TABLE_H

#include <QJsonArray>
#include <QJsonValue>
#include <QTest>

#include <array>
#include <vector>

namespace mdlTable
{

/// The rows of Table in tests/data/tables/FileName, each an array of values. A file or table that is missing or cannot
/// be read ends the program: no rows would mean no test.
QJsonArray Rows(const char* FileName, const char* Table);

/// Lines of a file that belong together, from one empty line to the next; those that begin with "#" are left out.
struct CBlock
{
    QString Place; ///< "file:line" of the first one
    QStringList Lines;
};

/// The blocks of all text files of a folder in tests/data.
std::vector<CBlock> Blocks(const char* Folder);

template<class Type> Type Cell(const QJsonValue& Value)
{
    if constexpr (std::is_same_v<Type, QList<int>>) {
        QList<int> numbers;
        for (const QJsonValue& number : Value.toArray())
            numbers.append(number.toInt());
        return numbers;
    } else if constexpr (std::is_same_v<Type, QByteArray>) {
        return Value.toString().toLatin1();
    } else if constexpr (std::is_same_v<Type, QByteArrayList>) {
        return Value.toVariant().toStringList().join(u'\n').toLatin1().split('\n');
    } else {
        return Value.toVariant().value<Type>();
    }
}

/// Adds a column of each type and fills them from a table. A cell is a text, a number, a truth value or a list of
/// texts or numbers; bytes are written as the text of these codes. One cell more than there are columns names the row,
/// and stands first.
template<class... Types>
void AddRows(const char* FileName, const char* Table, const std::array<const char*, sizeof...(Types)>& Columns)
{
    int column = 0;
    (QTest::addColumn<Types>(Columns[std::size_t(column++)]), ...);
    int number = 0;
    for (const QJsonValue& row : Rows(FileName, Table)) {
        const QJsonArray cells = row.toArray();
        auto next = cells.begin() + (cells.size() - qsizetype(sizeof...(Types)));
        QTestData& data = QTest::addRow("%d %s", ++number, qPrintable(cells.first().toVariant().toString()));
        ((data << Cell<Types>(*next++)), ...);
    }
}

} // namespace mdlTable

#endif

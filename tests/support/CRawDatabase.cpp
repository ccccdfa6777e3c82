// tests/support/CRawDatabase.cpp
// Statements without the database layer.

#include "tests/support/CRawDatabase.h"

#include <sqlite3.h>

using namespace Qt::StringLiterals;

void CRawDatabase::Close::operator()(sqlite3* Handle) const { sqlite3_close_v2(Handle); }

CRawDatabase::CRawDatabase(const QString& FileName)
{
    sqlite3* handle = nullptr;
    sqlite3_open(FileName.toUtf8().constData(), &handle);
    m_handle.reset(handle);
}

QString CRawDatabase::Run(const QString& Sql)
{
    const int code = sqlite3_exec(m_handle.get(), Sql.toUtf8().constData(), nullptr, nullptr, nullptr);
    return code == SQLITE_OK ? QString() : QString::fromUtf8(sqlite3_errmsg(m_handle.get()));
}

QStringList CRawDatabase::Rows(const QString& Sql)
{
    QStringList rows;
    const auto add = [](void* Rows, int Count, char** Values, char**) {
        QStringList row;
        for (int column = 0; column < Count; ++column)
            row.append(Values[column] ? QString::fromUtf8(Values[column]) : u"NULL"_s);
        static_cast<QStringList*>(Rows)->append(row.join(u'|'));
        return 0;
    };
    if (sqlite3_exec(m_handle.get(), Sql.toUtf8().constData(), add, &rows, nullptr) != SQLITE_OK)
        rows.append(u"ERROR "_s + QString::fromUtf8(sqlite3_errmsg(m_handle.get())));
    return rows;
}

// sqlshell/CCsvOutput.cpp
// Lines of fields.

#include "sqlshell/CCsvOutput.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace sqlshell
{

QString CsvField(const QString& Text)
{
    const auto needsQuotes = [](QChar unit) { return unit == u'"' || unit == u',' || unit == u'\r' || unit == u'\n'; };
    const bool isPlain = !Text.isEmpty() && !Text.front().isSpace() && !Text.back().isSpace() &&
                         std::none_of(Text.begin(), Text.end(), needsQuotes);
    return isPlain ? Text : u'"' + QString(Text).replace(u"\""_s, u"\"\""_s) + u'"';
}

void CCsvOutput::BeginResult()
{
    if (std::exchange(m_hasResult, true))
        Out().Put(u"\r\n");
}

void CCsvOutput::Row(const QStringList& Fields) { Out().Put(Fields.join(u',') + u"\r\n"_s); }

bool CCsvOutput::Rows(dao::QueryType, dao::Recordset& Source)
{
    BeginResult();
    QStringList fields;
    for (int field = 0; field < Source.FieldCount(); ++field)
        fields.append(CsvField(Source.Field(field).Name));
    Row(fields);
    for (; !Source.Eof() && !IsStopped(); Source.MoveNext()) {
        for (int field = 0; field < Source.FieldCount(); ++field)
            fields[field] = Source.IsNull(field) ? QString() : CsvField(Source.Get(field).ToText());
        Row(fields);
    }
    if (!Source.Eof())
        Refused({jetsql::MakeError(3059), {}, 1, {}});
    return Source.Eof();
}

void CCsvOutput::Type(dao::QueryType Type) { Row({QString::number(int(Type))}); }

void CCsvOutput::List(const CListing& Listing)
{
    BeginResult();
    std::vector<QStringList> rows = Listing.Rows;
    if (!Listing.Columns.isEmpty())
        rows.insert(rows.begin(), Listing.Columns);
    for (QStringList& row : rows) {
        std::transform(row.begin(), row.end(), row.begin(), CsvField);
        Row(row);
    }
}

void CCsvOutput::Text(const QString& Text, const QString&, const QJsonValue&) { Out().Put(Text); }

} // namespace sqlshell

// sqlshell/CCsvOutput.h
// Results for spreadsheets.

#ifndef SQLSHELL_CCSVOUTPUT_H
#define SQLSHELL_CCSVOUTPUT_H

#include "sqlshell/COutput.h"

namespace sqlshell
{

/// RFC 4180: a line of column names, lines end with CR LF, quotes where they are needed. Null is nothing, an empty text
/// is "". An empty line parts the results of several statements. What an action did is not told.
class CCsvOutput : public COutput
{
public:
    using COutput::COutput;

    bool Rows(dao::QueryType Type, dao::Recordset& Source) override;
    void Affected(dao::QueryType, int) override {}
    void Type(dao::QueryType Type) override;
    void List(const CListing& Listing) override;
    void Done(const QString&, const QString&, const QString&) override {}
    void Text(const QString& Text, const QString& Key, const QJsonValue& Json) override;
    void Refused(const CRefusal& Refusal) override { WriteRefusal(Refusal); }

private:
    void BeginResult();
    void Row(const QStringList& Fields);

    bool m_hasResult = false;
};

/// A field of a line: as it is, or in quotes where it holds one, a comma, a line break or blanks at an end, or is
/// empty.
QString CsvField(const QString& Text);

} // namespace sqlshell

#endif

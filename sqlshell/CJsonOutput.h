// sqlshell/CJsonOutput.h
// Results for programs: one JSON object a line.

#ifndef SQLSHELL_CJSONOUTPUT_H
#define SQLSHELL_CJSONOUTPUT_H

#include "sqlshell/COutput.h"

namespace sqlshell
{

/// {"type":0,"columns":["ID"],"rows":[[1]]} for rows, {"type":48,"affected":4} for an action, {"error":3061,
/// "message":"…"} for a refusal, with "offset" where the place is known (UTF-16 units from the statement's beginning)
/// and "parameters" where values are missing. Everything goes to Out.
class CJsonOutput : public COutput
{
public:
    using COutput::COutput;

    bool Rows(dao::QueryType Type, dao::Recordset& Source) override;
    void Affected(dao::QueryType Type, int Count) override;
    void Type(dao::QueryType Type) override;
    void List(const CListing& Listing) override;
    void Done(const QString& Key, const QString& Name, const QString& Sentence) override;
    void Text(const QString& Text, const QString& Key, const QJsonValue& Json) override;
    void Refused(const CRefusal& Refusal) override;

private:
    void Row(const dao::Recordset& Source);
};

/// A text in quotes, with what JSON wants escaped; always valid UTF-8.
QByteArray JsonText(QStringView Text);
/// A value: numbers as short as they read back the same, Boolean as true or false, a date as the general date text,
/// Null (and what is no finite number) as null.
QByteArray JsonValue(const dao::Value& Source);

} // namespace sqlshell

#endif

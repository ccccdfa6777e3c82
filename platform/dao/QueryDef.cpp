// platform/dao/QueryDef.cpp
// Compiling, filling and running a saved query.

#include "platform/dao/QueryDef.h"

#include "platform/dao/CSession.h"
#include "platform/dao/Database.h"
#include "platform/dao/Values.h"

namespace dao
{

QueryDef::QueryDef(Database& Owner, QString Name, QString Sql)
    : m_owner(Owner)
    , m_name(std::move(Name))
    , m_sql(std::move(Sql))
    , m_shape(jetsql::TakeShape(m_sql))
{}

void QueryDef::SetSql(const QString& Sql)
{
    jetsql::Shape shape = jetsql::TakeShape(Sql);
    m_owner.Session().Compile(shape);
    if (!m_name.isEmpty())
        Save(Sql, shape);
    m_sql = Sql;
    m_shape = std::move(shape);
    m_values.clear();
}

// Only with the new text in place does it show that a query reads itself.
void QueryDef::Save(const QString& Sql, const jetsql::Shape& Shape)
{
    CSession& session = m_owner.Session();
    session.QueriesToChange().SaveQuery(m_name, Sql);
    try {
        session.Compile(Shape);
    } catch (const Error&) {
        session.QueriesToChange().SaveQuery(m_name, m_sql);
        throw;
    }
}

std::shared_ptr<const jetsql::Statement> QueryDef::Statement() { return m_owner.Session().Compile(m_shape); }

QueryType QueryDef::Type() { return Statement()->Type; }

std::vector<ParameterInfo> QueryDef::Parameters() { return Statement()->Parameters; }

void QueryDef::SetParameter(int Parameter, const Value& NewValue)
{
    const auto parameters = Parameters();
    if (Parameter < 0 || size_t(Parameter) >= parameters.size())
        throw jetsql::MakeError(3265);
    m_values.resize(parameters.size());
    m_values[size_t(Parameter)] =
        NewValue.IsNull() ? NewValue : mdlValues::ConvertTo(parameters[size_t(Parameter)].Type, NewValue);
}

std::vector<Value> QueryDef::FilledParameters(const jetsql::Statement& Statement) const
{
    std::vector<Value> values;
    for (const std::optional<Value>& value : m_values) {
        if (value)
            values.push_back(*value);
    }
    const size_t wanted = Statement.Parameters.size();
    if (values.size() != wanted)
        throw jetsql::MakeError(3061, {QString::number(wanted - std::min(wanted, values.size()))});
    return values;
}

void QueryDef::Execute(ExecuteOption Option)
{
    m_recordsAffected = 0;
    const auto statement = Statement();
    if (jetsql::ReturnsRows(statement->Type))
        throw jetsql::MakeError(3065);
    const std::vector<Value> parameters = FilledParameters(*statement);
    m_recordsAffected = m_owner.Session().Run({*statement, m_shape, parameters}, Option);
    m_owner.m_recordsAffected = m_recordsAffected;
}

std::unique_ptr<Recordset> QueryDef::OpenRecordset(RecordsetType Type)
{
    const auto statement = Statement();
    const std::vector<Value> parameters = FilledParameters(*statement);
    return m_owner.Session().Open({*statement, m_shape, parameters}, Type);
}

} // namespace dao

// query/CSavedQueries.h
// The saved queries of the database: what can be chosen, and the questions before one is replaced or deleted.

#ifndef QUERY_CSAVEDQUERIES_H
#define QUERY_CSAVEDQUERIES_H

#include <QString>
#include <QStringList>

#include <optional>

class Application;

/// Works on the database that is open at each call; without one there are no queries. Asks and tells by boxes; what
/// the database refuses is told and never thrown.
class CSavedQueries
{
public:
    explicit CSavedQueries(Application& App);

    /// In the order of the database's collection; none where it cannot be read.
    QStringList Names() const;
    std::optional<QString> Statement(const QString& Name) const;

    /// A name from the user, without blanks around it; empty when he gave none.
    QString AskName() const;
    /// Keeps Sql under Name; one of that name is asked about and replaced whole or not at all. False: nothing was
    /// changed, for an empty name without a word.
    bool Save(const QString& Name, const QString& Sql);
    /// The user agrees to the deletion of Name.
    bool AskDelete(const QString& Name) const;
    /// Ignores a name that is not there.
    void Delete(const QString& Name);
    void Tell(const QString& Text) const;

    /// Where in its statement the last Save was refused, in UTF-16 units; -1: nowhere known, or it was not.
    int ErrorOffset() const { return m_errorOffset; }

private:
    bool AskReplace(const QString& Name) const;
    void Store(const QString& Name, const QString& Sql) const;

    Application& m_app;
    int m_errorOffset = -1;
};

#endif // QUERY_CSAVEDQUERIES_H

// platform/jetsql/CSearch.h
// Looks for one text in others, in a time that no choice of texts can stretch.

#ifndef JETSQL_CSEARCH_H
#define JETSQL_CSEARCH_H

#include <QString>

#include <vector>

namespace jetsql {

/// A text to look for, unit by unit. A search takes at most about 16 steps for each unit of the text searched: longer
/// parts are found by a table of the part's own beginnings, made once.
class CSearch
{
public:
    explicit CSearch(QString Part) : m_part(std::move(Part)) {}

    qsizetype Size() const { return m_part.size(); }

    /// The first place at or after From, or -1. An empty part is found at once.
    qsizetype First(QStringView Text, qsizetype From) const;
    /// The last place of all, or -1.
    qsizetype Last(QStringView Text) const;

private:
    QString m_part;
    mutable std::vector<qsizetype> m_borders;   ///< for First; made when it is needed
};

}

#endif

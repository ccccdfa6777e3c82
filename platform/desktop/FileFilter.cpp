// platform/desktop/FileFilter.cpp
// File types of a file dialog, as the program writes them and as the toolkit wants them.

#include "platform/desktop/FileFilter.h"

using namespace Qt::StringLiterals;

namespace mdlFileFilter
{
namespace
{
QString Patterns(const QString& Text)
{
    QStringList patterns;
    const QStringList parts = Text.split(u';', Qt::SkipEmptyParts);
    for (const QString& part : parts)
        patterns << (part.trimmed() == u"*.*" ? u"*"_s : part.trimmed());
    patterns.removeAll(QString());
    return patterns.isEmpty() ? u"*"_s : patterns.join(u' ');
}

/// The toolkit takes the last brackets for the patterns, so a description's own ones at its end have to go.
QString Description(QString Text)
{
    Text = Text.trimmed();
    const qsizetype bracket = Text.lastIndexOf(u'(');
    if (Text.endsWith(u')') && bracket >= 0 && Text.indexOf(u'*', bracket) >= 0)
        Text.truncate(bracket);
    return Text.trimmed();
}
} // namespace

QStringList NameFilters(const QString& Filter)
{
    QStringList filters;
    const QStringList parts = Filter.split(u'|');
    for (qsizetype i = 0; i < parts.size(); i += 2) {
        const QString description = Description(parts[i]);
        if (!description.isEmpty())
            filters << description + u" ("_s + Patterns(parts.value(i + 1)) + u')';
    }
    return filters;
}
} // namespace mdlFileFilter

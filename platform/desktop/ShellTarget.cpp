// platform/desktop/ShellTarget.cpp
// Which text out of a message may be handed to the desktop, and in which form.

#include "platform/desktop/ShellTarget.h"

#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace mdlShell
{
namespace
{
bool HasControlCharacter(const QString& Text)
{
    return std::any_of(Text.begin(), Text.end(), [](QChar c) {
        const QChar::Category category = c.category();
        // Format characters can turn the reading direction, so that an address shows as another one.
        return category == QChar::Other_Control || category == QChar::Other_Format ||
               category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
    });
}

/// Some mail programs attach the file that a link names without asking.
bool AttachesFile(const QUrl& Url)
{
    const auto items = QUrlQuery(Url).queryItems(QUrl::FullyDecoded);
    return std::any_of(items.begin(), items.end(), [](const auto& item) {
        return item.first.trimmed().startsWith(u"attach", Qt::CaseInsensitive);
    });
}

bool IsMailTarget(const QUrl& Url)
{
    return !Url.path().trimmed().isEmpty() && Url.host().isEmpty() && !AttachesFile(Url);
}
} // namespace

std::optional<QString> AcceptTarget(const QString& Target)
{
    QString target = Target.trimmed();
    if (target.isEmpty() || target.size() > MaxTargetLength || HasControlCharacter(target))
        return std::nullopt;
    if (target.startsWith(u"www.", Qt::CaseInsensitive))
        target.prepend(u"http://");
    const QUrl url(target, QUrl::TolerantMode);
    if (!url.isValid())
        return std::nullopt;
    const QString scheme = url.scheme(); // in lower case
    if (scheme == u"mailto")
        return IsMailTarget(url) ? std::optional(target) : std::nullopt;
    const bool isNet = scheme == u"http" || scheme == u"https" || scheme == u"ftp";
    return isNet && !url.host().isEmpty() ? std::optional(target) : std::nullopt;
}
} // namespace mdlShell

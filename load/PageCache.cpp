// load/PageCache.cpp
// The file that keeps a board's page, so that a run within a day need not fetch it again.

#include "load/PageCache.h"

#include "load/CBoardPageView.h"
#include "app/Path.h"
#include "platform/text/Codepage932.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace
{
constexpr int FreshDays = 1;
} // namespace

std::optional<QByteArray> mdlPageCache::Read(const QString& FileName)
{
    QFile file(mdlPath::DiskPath(FileName));
    const QFileInfo info(file);
    if (file.fileName().isEmpty() || !info.isFile())
        return {};
    if (info.lastModified() <= QDateTime::currentDateTime().addDays(-FreshDays) || !file.open(QIODevice::ReadOnly))
        return {};
    return file.read(CBoardPageView::MaxPageBytes + 1); // one more: the view then sees that it is too long
}

bool mdlPageCache::Write(const QString& FileName, const QByteArray& Page)
{
    const QString path = mdlPath::DiskPath(FileName);
    if (path.isEmpty())
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray bytes = text::IsValid932(Page) ? Page : text::To932(CBoardPageView::Decode(Page));
    // What fails while the last of the bytes leave the buffer, commit() does not notice.
    return file.write(bytes) == bytes.size() && file.flush() && file.commit();
}

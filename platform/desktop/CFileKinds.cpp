// platform/desktop/CFileKinds.cpp
// What dialogs show of a file: its icon and its kind, by its name alone.

#include "platform/desktop/CFileKinds.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMimeDatabase>

namespace
{
QMimeType KindOf(const QFileInfo& File)
{
    return QMimeDatabase().mimeTypeForFile(File.fileName(), QMimeDatabase::MatchExtension);
}
} // namespace

QString CFileKinds::FirstFolder() { return QDir::rootPath(); }

void CFileKinds::Serve(QFileDialog& Dialog, const QString& InitialDir)
{
    Dialog.setOption(QFileDialog::DontUseNativeDialog);
    Dialog.setIconProvider(this);
    Dialog.setDirectory(!InitialDir.isEmpty() && QFileInfo(InitialDir).isDir() ? InitialDir : QDir::currentPath());
    Dialog.setHistory({});
}

QIcon CFileKinds::icon(const QFileInfo& File) const
{
    if (!File.isFile())
        return QFileIconProvider::icon(File);
    return QIcon::fromTheme(KindOf(File).iconName(), QFileIconProvider::icon(QFileIconProvider::File));
}

QString CFileKinds::type(const QFileInfo& File) const
{
    return File.isFile() ? KindOf(File).comment() : QFileIconProvider::type(File);
}

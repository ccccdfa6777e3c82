// platform/desktop/CFileKinds.cpp
// What dialogs show of a file: its icon and its kind, by its name alone.

#include "platform/desktop/CFileKinds.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLocale>
#include <QMimeDatabase>
#include <QScreen>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace
{
enum Column : quint8 { NameColumn, SizeColumn, KindColumn, DateColumn };

/// The toolkit's own widths cut kinds, sizes and dates; a dialog as wide as its columns shows them all where the screen
/// has the room.
void FitColumns(QFileDialog& Dialog)
{
    auto* tree = Dialog.findChild<QTreeView*>(u"treeView"_s);
    if (!tree)
        return;
    const QFontMetrics metrics(tree->font());
    const auto fit = [&](Column Place, const QString& Longest) {
        tree->header()->resizeSection(Place, metrics.horizontalAdvance(Longest + u"　"_s)); // room at both sides
    };
    fit(NameColumn, QString(20, u'あ'));
    fit(SizeColumn, u"1023.99 MiB"_s);
    fit(KindColumn, u"平文テキストドキュメント"_s);
    fit(DateColumn, QLocale::system().toString(QDateTime({2000, 12, 30}, {20, 20, 20}), QLocale::ShortFormat));
    const int wanted = tree->header()->length() + metrics.horizontalAdvance(QString(13, u'あ'));
    Dialog.resize(qMin(wanted, Dialog.screen()->availableGeometry().width() * 9 / 10), Dialog.height());
}

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
    FitColumns(Dialog);
}

QIcon CFileKinds::icon(const QFileInfo& File) const
{
    if (!File.isFile())
        return QFileIconProvider::icon(File);
    return QIcon::fromTheme(KindOf(File).iconName(), QFileIconProvider::icon(QFileIconProvider::File));
}

QString CFileKinds::type(const QFileInfo& File) const
{
    if (File.isDir())
        return u"フォルダ"_s; // the toolkit's translation leaves it English
    return File.isFile() ? KindOf(File).comment() : QFileIconProvider::type(File);
}

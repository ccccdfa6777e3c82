// platform/desktop/CFileKinds.h
// What dialogs show of a file: its icon and its kind, by its name alone.

#ifndef DESKTOP_CFILEKINDS_H
#define DESKTOP_CFILEKINDS_H

#include <QFileIconProvider>

class QFileDialog;

/// Keeps a file dialog from looking into the files of the folder on view. Who opens and closes a file gives up all
/// locks that his process has on it: the open database would lose its own, another program on the same database would
/// think itself alone, and the two would damage it.
class CFileKinds : public QFileIconProvider
{
public:
    using QFileIconProvider::icon;

    /// What a dialog has to be made with: a folder without files, as it looks into them before it can be told not to.
    static QString FirstFolder();

    /// Serves Dialog, which was made with FirstFolder and is not shown yet, and lets it begin in InitialDir, or in the
    /// current folder where that is none. It must live longer than Dialog. The dialogs of desktops look into files of
    /// the same process too, so Dialog becomes the toolkit's own.
    void Serve(QFileDialog& Dialog, const QString& InitialDir);

    QIcon icon(const QFileInfo& File) const override;
    QString type(const QFileInfo& File) const override;
};

#endif

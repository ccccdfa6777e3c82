// platform/desktop/CDesktopQt.h
// The real desktop: boxes and dialogs of the toolkit, in Japanese.

#ifndef DESKTOP_CDESKTOPQT_H
#define DESKTOP_CDESKTOPQT_H

#include "platform/desktop/desktop.h"

#include <QPointer>
#include <QWidget>

/// Shows boxes over the window that the user is in. Texts are plain: markup in a message shows as it stands.
class CDesktopQt : public Desktop
{
public:
    /// The window that boxes belong to when none of ours is active (borrowed, may end earlier).
    void SetParent(QWidget* Parent);
    /// Caption of the boxes that this class shows by itself.
    void SetCaption(const QString& Caption);

    Answer MessageBox(const QString& Text, const QString& Caption, Icon BoxIcon, Buttons BoxButtons,
                      Answer Default) override;
    std::optional<QString> InputBox(const QString& Prompt, const QString& Title, const QString& Text) override;
    QStringList OpenFileDialog(const QString& Title, const QString& InitialDir, const QString& InitialFile,
                               const QString& Filter) override;
    QString FolderDialog(const QString& Title, const QString& InitialDir) override;
    bool ShellOpen(const QString& Target) override;
    bool ShellOpenOwn(const QString& PathOrUrl) override;
    void SetClipboard(const QString& Text) override;
    QString Clipboard() const override;
    bool HasTray() const override;

private:
    QWidget* BoxParent() const;

    QPointer<QWidget> m_parent;
    QString m_caption;
};

#endif

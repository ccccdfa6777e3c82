// tests/support/CScriptedDesktop.h
// A desktop whose user follows a script, for tests of whatever asks questions.

#ifndef SUPPORT_CSCRIPTEDDESKTOP_H
#define SUPPORT_CSCRIPTEDDESKTOP_H

#include "platform/desktop/desktop.h"

#include <vector>

/// What the user does when a box comes whose text holds Part.
struct CScriptedAnswer
{
    QString Part;
    Desktop::Answer Answer = Desktop::Answer::Ok;
    QString Text = {};      ///< what is typed into an input box (an Answer of Cancel or No cancels it)
    QStringList Files = {}; ///< what is chosen in a file dialog
};

/// One box that was shown.
struct CShownBox
{
    QString Text;
    QString Caption;
    Desktop::Icon Icon = Desktop::Icon::None;
    Desktop::Buttons Buttons = Desktop::Buttons::Ok;
    Desktop::Answer Default = Desktop::Answer::Ok;
};

/// Answers boxes in the order of the script. A box that the script does not expect fails the running test and gets the
/// cancelling answer; answers left over fail it in Verify, which the destructor calls too.
class CScriptedDesktop : public Desktop
{
public:
    explicit CScriptedDesktop(std::vector<CScriptedAnswer> Script = {});
    ~CScriptedDesktop() override;

    /// Adds to the script.
    void Expect(const QString& Part, Desktop::Answer Answer = Desktop::Answer::Ok);
    void ExpectInput(const QString& Part, const QString& Text);
    void ExpectFiles(const QString& Part, const QStringList& Files);

    /// True when every answer was used and no unexpected box came; else fails the test. Forgets both.
    bool Verify();

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
    bool HasTray() const override { return IsTrayThere; }

    std::vector<CShownBox> Boxes; ///< every box, expected or not
    QStringList Opened;           ///< what ShellOpen and ShellOpenOwn were given, in order
    QString LastFolder;           ///< where the last file dialog began
    QString LastFilter;           ///< what it offered
    QString ClipboardText;
    bool IsTrayThere = true;
    bool OpenSucceeds = true; ///< what the two opening calls return

private:
    std::optional<CScriptedAnswer> Take(const QString& Text);

    std::vector<CScriptedAnswer> m_script;
    QStringList m_unexpected;
};

#endif

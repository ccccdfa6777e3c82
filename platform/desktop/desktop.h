// platform/desktop/desktop.h
// What the program asks of the desktop around it: questions, file names, opening things, the clipboard.

#ifndef DESKTOP_DESKTOP_H
#define DESKTOP_DESKTOP_H

#include <QString>
#include <QStringList>

#include <optional>

/// The one door through which the program talks to its user by a box, or hands something to another program.
///
/// Rooms without windows get a reference to it, so that a test can answer in the user's place. All calls return when
/// the user has answered; they may run an event loop meanwhile, so a caller must not rely on state that an event
/// could change. User-interface thread only.
class Desktop
{
public:
    enum class Icon { None, Information, Question, Exclamation, Critical };
    enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
    enum class Answer { Ok, Cancel, Yes, No };

    virtual ~Desktop() = default;

    /// Shows Text and waits for the answer. Default names the button that Enter presses; where Buttons does not
    /// offer it, the first button is the default. Closing the box or Esc gives the cancelling answer: Cancel where
    /// there is one, else No, else Ok.
    virtual Answer MessageBox(const QString& Text, const QString& Caption, Icon BoxIcon,
                              Buttons BoxButtons = Buttons::Ok, Answer Default = Answer::Ok) = 0;

    /// Asks for one line of text, beginning with Text. Nothing when the user cancelled; empty when he left it empty.
    virtual std::optional<QString> InputBox(const QString& Prompt, const QString& Title, const QString& Text = {}) = 0;

    /// Lets the user choose one or more existing files; full paths, none when he cancelled.
    ///
    /// Filter is a run of descriptions and patterns, all separated by "|" ("ログ|*.txt;*.log|すべて|*.*").
    /// An empty Title becomes "ﾌｧｲﾙを開く".
    virtual QStringList OpenFileDialog(const QString& Title, const QString& InitialDir, const QString& InitialFile,
                                       const QString& Filter) = 0;

    /// Lets the user choose an existing folder, beginning with InitialDir where that exists. Its full path; empty when
    /// he cancelled.
    virtual QString FolderDialog(const QString& Title, const QString& InitialDir) = 0;

    /// Opens what a message or a web page named. Only http, https, ftp and mailto are handed on ("www.…" becomes
    /// "http://www.…"); for anything else the user is told and nothing is opened. False: nothing was opened.
    virtual bool ShellOpen(const QString& Target) = 0;

    /// Opens a file or page of the program's own; never call it with text from outside. False: nothing was opened.
    virtual bool ShellOpenOwn(const QString& PathOrUrl) = 0;

    virtual void SetClipboard(const QString& Text) = 0;
    virtual QString Clipboard() const = 0;

    /// Whether there is a place for status icons at the moment.
    virtual bool HasTray() const = 0;
};

#endif

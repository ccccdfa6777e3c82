// platform/desktop/CDesktopQt.cpp
// The real desktop: boxes and dialogs of the toolkit, in Japanese.

#include "platform/desktop/CDesktopQt.h"

#include "platform/desktop/CFileKinds.h"
#include "platform/desktop/FileFilter.h"
#include "platform/desktop/ShellTarget.h"
#include "platform/desktop/TallBox.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSystemTrayIcon>
#include <QUrl>

#include <vector>

using namespace Qt::StringLiterals;

namespace
{

constexpr int LeastInputWidth = 340; // pixels at 100 %: a name and the title are to be seen whole

struct ButtonText
{
    Desktop::Answer Answer;
    QMessageBox::ButtonRole Role;
    const char16_t* Text;
};

constexpr ButtonText OkButton = {Desktop::Answer::Ok, QMessageBox::AcceptRole, u"OK"};
constexpr ButtonText CancelButton = {Desktop::Answer::Cancel, QMessageBox::RejectRole, u"キャンセル"};
constexpr ButtonText YesButton = {Desktop::Answer::Yes, QMessageBox::YesRole, u"はい(&Y)"};
constexpr ButtonText NoButton = {Desktop::Answer::No, QMessageBox::NoRole, u"いいえ(&N)"};

/// The last one is the cancelling answer.
std::vector<ButtonText> ButtonsOf(Desktop::Buttons Buttons)
{
    switch (Buttons) {
    case Desktop::Buttons::Ok:
        return {OkButton};
    case Desktop::Buttons::OkCancel:
        return {OkButton, CancelButton};
    case Desktop::Buttons::YesNo:
        return {YesButton, NoButton};
    case Desktop::Buttons::YesNoCancel:
        break;
    }
    return {YesButton, NoButton, CancelButton};
}

QMessageBox::Icon IconOf(Desktop::Icon Icon)
{
    switch (Icon) {
    case Desktop::Icon::None:
        return QMessageBox::NoIcon;
    case Desktop::Icon::Information:
        return QMessageBox::Information;
    case Desktop::Icon::Question:
        return QMessageBox::Question;
    case Desktop::Icon::Exclamation:
        return QMessageBox::Warning;
    case Desktop::Icon::Critical:
        break;
    }
    return QMessageBox::Critical;
}

void TakeTextsAsPlain(QWidget& Dialog)
{
    const auto labels = Dialog.findChildren<QLabel*>();
    for (QLabel* label : labels)
        label->setTextFormat(Qt::PlainText);
}
} // namespace

void CDesktopQt::SetParent(QWidget* Parent) { m_parent = Parent; }
void CDesktopQt::SetCaption(const QString& Caption) { m_caption = Caption; }

QWidget* CDesktopQt::BoxParent() const
{
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    QWidget* active = QApplication::activeWindow();
    // The splash window goes away by itself and would take the box with it.
    if (active && active->windowType() != Qt::SplashScreen && active->windowType() != Qt::Popup)
        return active;
    return m_parent;
}

Desktop::Answer CDesktopQt::MessageBox(const QString& Text, const QString& Caption, Icon BoxIcon, Buttons BoxButtons,
                                       Answer Default)
{
    const std::vector<ButtonText> buttons = ButtonsOf(BoxButtons);
    QMessageBox box(BoxParent());
    box.setObjectName(u"MessageBox"_s);
    box.setWindowTitle(Caption);
    box.setTextFormat(Qt::PlainText);
    box.setText(Text);
    box.setIcon(IconOf(BoxIcon));
    std::vector<QPushButton*> made;
    for (const ButtonText& button : buttons) {
        made.push_back(box.addButton(QString::fromUtf16(button.Text), button.Role));
        if (button.Answer == Default)
            box.setDefaultButton(made.back());
    }
    if (!box.defaultButton())
        box.setDefaultButton(made.front());
    box.setEscapeButton(made.back());
    mdlTallBox::KeepOnScreen(box);
    box.exec();
    for (std::size_t i = 0; i < made.size(); ++i) {
        if (box.clickedButton() == made[i])
            return buttons[i].Answer;
    }
    return buttons.back().Answer;
}

std::optional<QString> CDesktopQt::InputBox(const QString& Prompt, const QString& Title, const QString& Text)
{
    QInputDialog dialog(BoxParent());
    dialog.setObjectName(u"InputBox"_s);
    dialog.setWindowTitle(Title);
    dialog.setLabelText(Prompt);
    dialog.setTextValue(Text);
    dialog.setOkButtonText(u"OK"_s);
    dialog.setCancelButtonText(u"キャンセル"_s);
    TakeTextsAsPlain(dialog);
    for (QPushButton* button : dialog.findChildren<QPushButton*>())
        button->setIcon({}); // as in every other box
    dialog.resize(dialog.sizeHint().expandedTo({LeastInputWidth, 0}));
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

QStringList CDesktopQt::OpenFileDialog(const QString& Title, const QString& InitialDir, const QString& InitialFile,
                                       const QString& Filter)
{
    CFileKinds kinds;
    QFileDialog dialog(BoxParent(), Title.isEmpty() ? u"ﾌｧｲﾙを開く"_s : Title, CFileKinds::FirstFolder());
    kinds.Serve(dialog, InitialDir);
    dialog.setObjectName(u"OpenFileDialog"_s);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.setNameFilters(mdlFileFilter::NameFilters(Filter));
    if (!InitialFile.isEmpty())
        dialog.selectFile(InitialFile);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    QStringList files;
    const QStringList chosen = dialog.selectedFiles();
    for (const QString& file : chosen)
        files << QDir::toNativeSeparators(file);
    return files;
}

QString CDesktopQt::FolderDialog(const QString& Title, const QString& InitialDir)
{
    CFileKinds kinds;
    QFileDialog dialog(BoxParent(), Title, CFileKinds::FirstFolder());
    kinds.Serve(dialog, InitialDir);
    dialog.setObjectName(u"FolderDialog"_s);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

bool CDesktopQt::ShellOpen(const QString& Target)
{
    const std::optional<QString> target = mdlShell::AcceptTarget(Target);
    if (target)
        return QDesktopServices::openUrl(QUrl(*target, QUrl::TolerantMode));
    constexpr qsizetype Shown = 200;
    MessageBox(u"開けるのは http、https、ftp のアドレスとメールアドレスだけです。\r\n"_s + Target.left(Shown),
               m_caption.isEmpty() ? QGuiApplication::applicationDisplayName() : m_caption, Icon::Information,
               Buttons::Ok, Answer::Ok);
    return false;
}

bool CDesktopQt::ShellOpenOwn(const QString& PathOrUrl)
{
    if (QFileInfo::exists(PathOrUrl))
        return QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(PathOrUrl).absoluteFilePath()));
    const QUrl url(PathOrUrl, QUrl::TolerantMode);
    const bool isPage = url.scheme() == u"http" || url.scheme() == u"https" || url.scheme() == u"mailto";
    return isPage && QDesktopServices::openUrl(url);
}

void CDesktopQt::SetClipboard(const QString& Text) { QGuiApplication::clipboard()->setText(Text); }
QString CDesktopQt::Clipboard() const { return QGuiApplication::clipboard()->text(); }

bool CDesktopQt::HasTray() const { return QSystemTrayIcon::isSystemTrayAvailable(); }

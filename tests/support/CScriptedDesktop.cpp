// tests/support/CScriptedDesktop.cpp
// A desktop whose user follows a script, for tests of whatever asks questions.

#include "tests/support/CScriptedDesktop.h"

#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
Desktop::Answer CancellingAnswer(Desktop::Buttons Buttons)
{
    switch (Buttons) {
    case Desktop::Buttons::Ok:
        return Desktop::Answer::Ok;
    case Desktop::Buttons::YesNo:
        return Desktop::Answer::No;
    case Desktop::Buttons::OkCancel:
    case Desktop::Buttons::YesNoCancel:
        break;
    }
    return Desktop::Answer::Cancel;
}

bool IsOffered(Desktop::Answer Answer, Desktop::Buttons Buttons)
{
    switch (Answer) {
    case Desktop::Answer::Ok:
        return Buttons == Desktop::Buttons::Ok || Buttons == Desktop::Buttons::OkCancel;
    case Desktop::Answer::Cancel:
        return Buttons == Desktop::Buttons::OkCancel || Buttons == Desktop::Buttons::YesNoCancel;
    case Desktop::Answer::Yes:
    case Desktop::Answer::No:
        break;
    }
    return Buttons == Desktop::Buttons::YesNo || Buttons == Desktop::Buttons::YesNoCancel;
}

void FailTest(const QString& Reason) { QTest::qFail(qPrintable(Reason), __FILE__, __LINE__); }
} // namespace

CScriptedDesktop::CScriptedDesktop(std::vector<CScriptedAnswer> Script)
    : m_script(std::move(Script))
{}

CScriptedDesktop::~CScriptedDesktop() { Verify(); }

void CScriptedDesktop::Expect(const QString& Part, Desktop::Answer Answer) { m_script.push_back({Part, Answer}); }

void CScriptedDesktop::ExpectInput(const QString& Part, const QString& Text)
{
    m_script.push_back({Part, Answer::Ok, Text});
}

void CScriptedDesktop::ExpectFiles(const QString& Part, const QStringList& Files)
{
    m_script.push_back({Part, Answer::Ok, {}, Files});
}

bool CScriptedDesktop::Verify()
{
    const auto left = std::exchange(m_script, {});
    const auto unexpected = std::exchange(m_unexpected, {});
    for (const CScriptedAnswer& answer : left)
        FailTest(u"nobody asked: "_s + answer.Part);
    return left.empty() && unexpected.isEmpty();
}

/// The script's next answer when it fits Text; else the test has failed.
std::optional<CScriptedAnswer> CScriptedDesktop::Take(const QString& Text)
{
    if (m_script.empty() || !Text.contains(m_script.front().Part)) {
        m_unexpected << Text;
        FailTest(u"unexpected box: "_s + Text +
                 (m_script.empty() ? QString() : u" (awaited: "_s + m_script.front().Part + u')'));
        return std::nullopt;
    }
    CScriptedAnswer answer = m_script.front();
    m_script.erase(m_script.begin());
    return answer;
}

Desktop::Answer CScriptedDesktop::MessageBox(const QString& Text, const QString& Caption, Icon BoxIcon,
                                             Buttons BoxButtons, Answer Default)
{
    Boxes.push_back({Text, Caption, BoxIcon, BoxButtons, Default});
    const auto answer = Take(Text);
    if (!answer)
        return CancellingAnswer(BoxButtons);
    if (!IsOffered(answer->Answer, BoxButtons)) {
        FailTest(u"the box has no such button: "_s + Text);
        return CancellingAnswer(BoxButtons);
    }
    return answer->Answer;
}

std::optional<QString> CScriptedDesktop::InputBox(const QString& Prompt, const QString& Title, const QString&)
{
    Boxes.push_back({Prompt, Title});
    const auto answer = Take(Prompt);
    if (!answer || answer->Answer == Answer::Cancel || answer->Answer == Answer::No)
        return std::nullopt;
    return answer->Text;
}

QStringList CScriptedDesktop::OpenFileDialog(const QString& Title, const QString& InitialDir, const QString&,
                                             const QString& Filter)
{
    LastFolder = InitialDir;
    LastFilter = Filter;
    Boxes.push_back({Title, Title});
    const auto answer = Take(Title);
    return answer ? answer->Files : QStringList();
}

QString CScriptedDesktop::FolderDialog(const QString& Title, const QString& InitialDir)
{
    return OpenFileDialog(Title, InitialDir, {}, {}).value(0);
}

bool CScriptedDesktop::ShellOpen(const QString& Target)
{
    Opened << Target;
    return OpenSucceeds;
}

bool CScriptedDesktop::ShellOpenOwn(const QString& PathOrUrl)
{
    Opened << PathOrUrl;
    return OpenSucceeds;
}

void CScriptedDesktop::SetClipboard(const QString& Text) { ClipboardText = Text; }
QString CScriptedDesktop::Clipboard() const { return ClipboardText; }

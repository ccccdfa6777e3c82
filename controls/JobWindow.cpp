// controls/JobWindow.cpp
// A progress dialog that lives as long as the function that moves it.

#include "controls/JobWindow.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressDialog>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

constexpr int AppearsAfterMs = 250;
constexpr int EventsEveryMs = 30;
constexpr int MinimumWidth = 380; // pixels at 100 %

class CJobWindow
{
public:
    CJobWindow(QWidget* Owner, const QString& Text)
        : m_dialog(Text, u"キャンセル"_s, 0, 100, Owner)
    {
        m_dialog.setObjectName(u"frmJob"_s);
        m_dialog.setWindowModality(Qt::ApplicationModal);
        m_dialog.setWindowTitle(QCoreApplication::applicationName());
        m_dialog.setMinimumWidth(MinimumWidth);
        m_dialog.setAutoClose(false);
        m_dialog.setAutoReset(false);
        m_dialog.setMinimumDuration(3600000); // shown from here and not by its own guess
        m_clock.start();
    }

    bool Report(int Percent)
    {
        if (m_clock.elapsed() < m_due)
            return !m_dialog.wasCanceled();
        if (!m_dialog.isVisible() && !m_dialog.wasCanceled())
            m_dialog.show();
        m_dialog.setValue(Percent);
        QCoreApplication::processEvents();
        m_due = m_clock.elapsed() + EventsEveryMs;
        return !m_dialog.wasCanceled();
    }

private:
    QProgressDialog m_dialog;
    QElapsedTimer m_clock;
    qint64 m_due = AppearsAfterMs;
};

} // namespace

std::function<bool(int)> mdlJobWindow::Open(QWidget* Owner, const QString& Text)
{
    const auto window = std::make_shared<CJobWindow>(Owner, Text);
    return [window](int Percent) { return window->Report(Percent); };
}

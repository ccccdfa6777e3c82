// tests/settings_ui/CPageFixture.h
// One page of the settings dialogs in a window of its own, over a new database.

#ifndef TESTS_SETTINGS_UI_CPAGEFIXTURE_H
#define TESTS_SETTINGS_UI_CPAGEFIXTURE_H

#include "settings_ui/CPropertyPage.h"
#include "tests/board/CBoardFixture.h"

#include <QTest>

#include <memory>

struct CPageFixture : CBoardFixture
{
    std::unique_ptr<CPropertyPage> Page;

    /// Loads a page and waits until it can be typed into.
    template<class Made> Made& Show(std::unique_ptr<Made> NewPage)
    {
        Made& page = *NewPage;
        Page = std::move(NewPage);
        page.Load();
        page.show();
        if (!QTest::qWaitForWindowActive(&page))
            QTest::qFail("the page did not become active", __FILE__, __LINE__);
        return page;
    }

    template<class Widget> Widget& Find(const QString& Name) { return *Page->findChild<Widget*>(Name); }

    /// Replaces what stands in a box by keys; the text is put in as an input method does it.
    void Type(const QString& Box, const QString& Text)
    {
        auto* box = Page->findChild<QWidget*>(Box);
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(box, Qt::Key_Backspace);
        QInputMethodEvent text;
        text.setCommitString(Text);
        QCoreApplication::sendEvent(box, &text);
    }

    /// Name of the widget with the focus.
    QString Focus() const { return Page->focusWidget() ? Page->focusWidget()->objectName() : QString(); }
};

#endif

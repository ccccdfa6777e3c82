// tests/settings_ui/CDialogFixture.h
// The settings dialog over a new database and a settings file with three web searches.

#ifndef TESTS_SETTINGS_UI_CDIALOGFIXTURE_H
#define TESTS_SETTINGS_UI_CDIALOGFIXTURE_H

#include "app/Application.h"
#include "board/CBBSProperty.h"
#include "platform/dao/Database.h"
#include "settings_ui/frmProperty.h"
#include "store/Store.h"
#include "tests/support/CScriptedDesktop.h"
#include "tests/support/Files.h"

#include <QCheckBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

/// Board 3 is in view and the one whose properties are shown.
struct CDialogFixture
{
    QTemporaryDir Folder;
    CScriptedDesktop Desk;
    Application App{Desk, Folder.path(), QStringLiteral("Tavora")};
    CBBSProperty Board{App};
    qint32 Tab = 1;
    frmProperty* Dialog = nullptr;

    CDialogFixture()
    {
        for (const QString& folder : {QStringLiteral("cache"), QStringLiteral("image"), QStringLiteral("other")})
            QDir(Folder.path()).mkdir(folder);
        App.SetLogDB(mdlStore::CreateNewDatabase(App.DatabaseFileName()));
        Restart();
        CIniFile& ini = App.SettingsIni();
        ini.SetNowSection(QStringLiteral("WebSearch"));
        for (const QString& name : {QStringLiteral("one(&1)"), QStringLiteral("two(&2)"), QStringLiteral("three(&3)")})
            ini.SetData(name, QStringLiteral("http://www.example.com/?q=%s"));
        ini.Save({});
        Board.GetProperty(3);
    }

    void Restart()
    {
        App.SettingsIni().Load(App.IniFileName());
        mdlSettings::ReadSettings(App);
    }

    /// Shows the dialog, does Work with it and cancels it if Work has not closed it.
    template<typename Function> bool Show(Function Work, bool IsOfBoard = false)
    {
        frmProperty dialog(App);
        Dialog = &dialog;
        QTimer::singleShot(0, &dialog, [&] {
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
            Work();
            if (dialog.isVisible())
                dialog.reject();
        });
        return IsOfBoard ? dialog.ShowProperty(Board, Tab) : dialog.ShowOption(Board, Tab);
    }

    template<typename Widget> Widget* Find(const QString& Name) const { return Dialog->findChild<Widget*>(Name); }
    QTabWidget& Tabs() const { return *Find<QTabWidget>(QStringLiteral("TabStrip")); }
    void GoTo(int Number) const { Tabs().setCurrentIndex(Number - 1); }
    void Press(const QString& Button) const { Find<QPushButton>(Button)->click(); }
    void Key(const QString& Name) const
    {
        const QKeyCombination key = QKeySequence(Name)[0];
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : Dialog, key.key(), key.keyboardModifiers());
    }
    Desktop::Icon LastIcon() const { return Desk.Boxes.empty() ? Desktop::Icon::None : Desk.Boxes.back().Icon; }

    /// Types Text over what a field holds ("@" is the folder), or turns a check box over.
    void Change(const QString& Name, QString Text = {}) const
    {
        auto* widget = Find<QWidget>(Name);
        if (auto* box = qobject_cast<QCheckBox*>(widget)) {
            QTest::keyClick(box, Qt::Key_Space);
            return;
        }
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(widget, Qt::Key_Delete);
        if (auto* line = qobject_cast<QLineEdit*>(widget))
            line->insert(Text.replace(u'@', Folder.path()));
        else
            QTest::keyClicks(widget, Text);
    }

    QStringList Section(const QString& Name)
    {
        CIniFile& ini = App.SettingsIni();
        ini.SetNowSection(Name);
        QStringList lines;
        for (const QString& key : ini.Keys())
            lines << key + u'=' + ini.Data(key);
        return lines;
    }
    QStringList Options()
    {
        mdlSettings::WriteSettings(App);
        return Section(QStringLiteral("Option"));
    }
    /// All that the dialog could change.
    QString State()
    {
        QStringList state = Options() + Section(QStringLiteral("WebSearch"));
        state << QString::fromLatin1(mdlFiles::Read(App.IniFileName()))
              << QString::fromLatin1(mdlFiles::Read(App.CookieFileName())) << Board.URL << Board.PostName();
        const auto rows =
            App.LogDB()->OpenRecordset(QStringLiteral("SELECT BBS_ID, ListOrder, VisitLoad FROM BBS ORDER BY BBS_ID"));
        for (; !rows->Eof(); rows->MoveNext())
            state << rows->Get(0).ToText() + u' ' + rows->Get(1).ToText() + u' ' + rows->Get(2).ToText();
        return state.join(u'\n');
    }
};

#endif

// settings_ui/PageParts.cpp
// What the pages of the options and board dialogs are put together from.

#include "settings_ui/PageParts.h"

#include "app/Application.h"
#include "controls/uSpinButton.h"
#include "platform/desktop/WindowServices.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace mdlPage
{

QLabel* AddField(QGridLayout& Form, const QString& Caption, QWidget* Field, QWidget* Behind)
{
    const int row = Form.rowCount();
    auto* label = new QLabel(Caption, Field->parentWidget());
    label->setBuddy(Field->focusProxy() ? Field->focusProxy() : Field); // one that takes no focus itself is no buddy
    Form.addWidget(label, row, 0);
    Form.addWidget(Field, row, 1);
    if (Behind)
        Form.addWidget(Behind, row, 2);
    return label;
}

QLabel* Note(const QString& Text, QWidget* Page)
{
    auto* note = new QLabel(Text, Page);
    note->setTextFormat(Qt::PlainText);
    return note;
}

QLabel* LongNote(const QString& Text, QWidget* Page)
{
    QLabel* note = Note(Text, Page);
    note->setWordWrap(true);
    return note;
}

void ShowNumber(uSpinButton& Spin, qint32 Value, qint32 Least, qint32 Most)
{
    Spin.setRange(qMin(Least, Value), qMax(Most, Value));
    Spin.SetValue(Value);
}

bool Refuse(Application& App, QWidget* Field, const QString& Text, Desktop::Icon BoxIcon)
{
    App.Shell.MessageBox(Text, App.AppTitle(), BoxIcon);
    Field->setFocus();
    mdlWindow::SelectAllText(Field);
    return false;
}

bool CanBeKept(Application& App, QLineEdit* Field)
{
    return App.SettingsIni().CanHold(Field->text()) ||
           Refuse(App, Field, u"「"_s + Field->text() + u"」には、設定ファイルに保存できない文字があります。"_s);
}

} // namespace mdlPage

// query/frmSQL.cpp
// The dialog in which the user writes a statement, with the database's tables beside it and the saved queries above.

#include "query/frmSQL.h"

#include "query/CStatementBox.h"
#include "query/mdlCondition.h"
#include "app/Application.h"
#include "app/WindowPlace.h"
#include "controls/CElidedLabel.h"
#include "controls/uSeparator.h"
#include "platform/dao/Database.h"
#include "platform/desktop/CFocusRim.h"
#include "platform/desktop/Geometry.h"
#include "platform/desktop/WindowServices.h"
#include "platform/desktop/desktop.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <iterator>

using namespace Qt::StringLiterals;

namespace
{

constexpr QSize DesignedSize(640, 420); // pixels at 100 %
constexpr double StatementPercent = 70; // of the width, until the user moves the bar
// Pixels that the bar leaves on either side. In a box narrower than its scroll bar the toolkit lays out without end.
constexpr int LeastPane = 80;

QString Section() { return u"SQLDialogPosition"_s; }

QString SeparatorKey() { return u"Separator"_s; }

template<typename Widget> Widget* Named(Widget* Made, const QString& Name)
{
    Made->setObjectName(Name);
    return Made;
}

} // namespace

frmSQL::frmSQL(Application& App, QWidget* Parent)
    : QDialog(Parent, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                          Qt::WindowMinMaxButtonsHint)
    , m_app(App)
    , m_queries(App)
{
    setObjectName(u"frmSQL"_s);
    setModal(true);
    BuildQueries();
    BuildTables();
    BuildButtons();
    BuildLayout();
    resize(DesignedSize);
}

frmSQL::~frmSQL() = default;

// Building

void frmSQL::BuildQueries()
{
    m_cmbQuery = Named(new QComboBox(this), u"cmbQuery"_s);
    m_cmbQuery->setAccessibleName(u"クエリー名"_s);
    m_cmbQuery->setEditable(true);
    m_cmbQuery->setInsertPolicy(QComboBox::NoInsert);
    m_cmbQuery->setCompleter(nullptr); // it would make an old name of the beginning of a new one
    m_cmdSave = Named(new QPushButton(u"保存(&S)"_s, this), u"cmdSave"_s);
    m_cmdDelete = Named(new QPushButton(u"削除(&D)"_s, this), u"cmdDelete"_s);
    m_txtSQL = Named(new CStatementBox(this), u"txtSQL"_s);
    m_txtSQL->setAccessibleName(u"SQL"_s);
    new CFocusRim(*m_txtSQL);
    connect(m_cmbQuery, &QComboBox::activated, this, &frmSQL::OnQueryChosen);
    connect(m_cmbQuery, &QComboBox::editTextChanged, this,
            [this](const QString& Text) { m_cmdDelete->setEnabled(!Text.isEmpty()); });
    connect(m_cmdSave, &QPushButton::clicked, this, &frmSQL::OnSave);
    connect(m_cmdDelete, &QPushButton::clicked, this, &frmSQL::OnDelete);
    auto* save = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), m_txtSQL, nullptr, nullptr, Qt::WidgetShortcut);
    connect(save, &QShortcut::activated, m_cmdSave, &QPushButton::click);
    // Not every desktop has this key for it.
    auto* redo = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Y), m_txtSQL, nullptr, nullptr, Qt::WidgetShortcut);
    connect(redo, &QShortcut::activated, m_txtSQL, &QPlainTextEdit::redo);
}

void frmSQL::BuildTables()
{
    m_picList = Named(new QWidget(this), u"picList"_s);
    m_cmbTable = Named(new QComboBox(m_picList), u"cmbTable"_s);
    m_cmbTable->setAccessibleName(u"テーブル"_s);
    m_lstField = Named(new QListWidget(m_picList), u"lstField"_s);
    m_lstField->setAccessibleName(u"フィールド"_s);
    m_lstField->installEventFilter(this);
    new CFocusRim(*m_lstField);
    m_lblInfo = Named(new CElidedLabel(this), u"lblInfo"_s);
    m_lblInfo->setTextFormat(Qt::PlainText);
    m_lblInfo->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    connect(m_cmbTable, &QComboBox::currentIndexChanged, this, &frmSQL::FillFields);
    connect(m_lstField, &QListWidget::currentRowChanged, this, &frmSQL::ShowDescription);
    connect(m_lstField, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* Item) { InsertCondition(m_lstField->row(Item)); });
}

void frmSQL::BuildButtons()
{
    m_cmdExec = Named(new QPushButton(u"実行(F5)"_s, this), u"cmdExec"_s);
    m_cmdCancel = Named(new QPushButton(u"キャンセル"_s, this), u"cmdCancel"_s);
    connect(m_cmdExec, &QPushButton::clicked, this, &frmSQL::Execute);
    connect(m_cmdCancel, &QPushButton::clicked, this, &frmSQL::reject);
    connect(new QShortcut(QKeySequence(Qt::Key_F5), this), &QShortcut::activated, m_cmdExec, &QPushButton::click);
    for (QPushButton* button : {m_cmdSave, m_cmdDelete, m_cmdExec, m_cmdCancel})
        button->setAutoDefault(false); // Enter in the box of names must not run the statement
}

void frmSQL::BuildLayout()
{
    auto* buttons = Named(new QWidget(this), u"picButtons"_s);
    auto* buttonRow = new QHBoxLayout(buttons);
    buttonRow->setContentsMargins(0, 0, 0, 0);
    buttonRow->addWidget(m_cmdSave);
    buttonRow->addWidget(m_cmdDelete);
    auto* top = new QHBoxLayout;
    top->addWidget(m_cmbQuery, 1);
    top->addWidget(buttons);

    m_client = new QWidget(this);
    m_separator = Named(new uSeparator(m_client), u"sep"_s);
    m_separator->SetSideMin(mdlGeometry::ToTwips(LeastPane));
    m_txtSQL->setParent(m_client);
    m_picList->setParent(m_client);
    auto* tables = new QVBoxLayout(m_picList);
    tables->setContentsMargins(0, 0, 0, 0);
    tables->addWidget(m_cmbTable);
    tables->addWidget(m_lstField, 1);
    auto* panes = new QVBoxLayout(m_client); // the bar fills the area; the panes follow the bar
    panes->setContentsMargins(0, 0, 0, 0);
    panes->addWidget(m_separator);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_lblInfo, 1);
    bottom->addWidget(m_cmdExec);
    bottom->addWidget(m_cmdCancel);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(m_client, 1);
    all->addLayout(bottom);
    QWidget* const order[] = {m_txtSQL,    m_separator, m_cmbTable, m_lstField, m_cmdExec,
                              m_cmdCancel, m_cmbQuery,  m_cmdSave,  m_cmdDelete};
    for (std::size_t place = 1; place < std::size(order); ++place)
        setTabOrder(order[place - 1], order[place]);
}

// Showing

QString frmSQL::ShowSQL(const QString& SQLString, QWidget* Owner, int ErrorOffset)
{
    Prepare(SQLString, Owner, ErrorOffset);
    exec();
    return m_result;
}

void frmSQL::Prepare(const QString& SQLString, const QWidget* Owner, int ErrorOffset)
{
    m_result.clear();
    setWindowTitle(u"クエリー検索 - "_s + m_app.AppTitle());
    if (Owner)
        setWindowIcon(Owner->windowIcon());
    if (ErrorOffset < 0 || m_txtSQL->Statement() != SQLString)
        m_txtSQL->SetStatement(SQLString); // else it was run in vain, and what was written can still be undone
    m_txtSQL->setFocus();
    if (ErrorOffset >= 0)
        ShowError(ErrorOffset);
    FillQueries();
    m_cmbQuery->setCurrentIndex(-1);
    m_cmdDelete->setEnabled(false);
    FillTables();
    m_separator->Initialize(m_txtSQL, m_picList);
    m_txtSQL->document()->setModified(false);
    PlaceWindow();
}

/// What was never stored, or is no number, is the designed size in the middle of the screen.
void frmSQL::PlaceWindow()
{
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(Section());
    if (!m_app.Option().SaveSQLDialogPosition)
        ini.Clear();
    setGeometry(mdlGeometry::Restored(mdlWindowPlace::Read(ini), mdlGeometry::Centred(DesignedSize)));
    layout()->activate(); // the bar's place is a part of the width that it now has
    m_separator->SetParsent(StatementPercent);
    if (const auto offset = mdlWindowPlace::Twips(ini, SeparatorKey()))
        m_separator->SetOffset(qMax(*offset, m_separator->SideMin()));
}

void frmSQL::SavePlace()
{
    if (!m_app.Option().SaveSQLDialogPosition)
        return;
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(Section());
    mdlWindowPlace::Store(ini, mdlGeometry::ToPlace(mdlWindow::GetNormalWindowRect(this)));
    mdlWindowPlace::SetTwips(ini, SeparatorKey(), m_separator->Offset());
    ini.Save(Section());
}

/// Every way out of the dialog leads through here.
void frmSQL::done(int Result)
{
    if (isVisible())
        SavePlace();
    QDialog::done(Result);
}

void frmSQL::Execute()
{
    m_result = m_txtSQL->Statement();
    accept();
}

// Saved queries

void frmSQL::FillQueries()
{
    const QString text = m_cmbQuery->currentText();
    m_cmbQuery->clear();
    m_cmbQuery->addItems(m_queries.Names());
    m_cmbQuery->setCurrentIndex(-1);
    m_cmbQuery->setEditText(text);
    mdlWindow::AdjustComboDropDown(m_cmbQuery, 0);
}

void frmSQL::OnQueryChosen(int Index)
{
    const QString name = m_cmbQuery->itemText(Index);
    if (m_txtSQL->document()->isModified() && !MayLeaveStatement())
        return;
    m_cmbQuery->setEditText(name);
    if (const auto sql = m_queries.Statement(name)) {
        m_txtSQL->ReplaceStatement(*sql);
        m_txtSQL->document()->setModified(false);
    }
}

/// The user has saved the statement in the box or does not want to keep it.
bool frmSQL::MayLeaveStatement()
{
    const auto answer =
        m_app.Shell.MessageBox(u"現在編集中のSQLを保存しますか？"_s, m_app.AppTitle(), Desktop::Icon::Question,
                               Desktop::Buttons::YesNoCancel, Desktop::Answer::Yes);
    if (answer == Desktop::Answer::Yes)
        return SaveAs(m_queries.AskName());
    return answer == Desktop::Answer::No;
}

bool frmSQL::SaveAs(const QString& Name)
{
    const bool isSaved = m_queries.Save(Name, m_txtSQL->Statement());
    if (isSaved)
        m_txtSQL->document()->setModified(false);
    else if (m_queries.ErrorOffset() >= 0)
        ShowError(m_queries.ErrorOffset());
    FillQueries();
    return isSaved;
}

/// Where the caret blinks the user goes on writing.
void frmSQL::ShowError(int Offset)
{
    m_txtSQL->SetCaret(Offset);
    m_txtSQL->setFocus();
}

void frmSQL::OnSave()
{
    QString name = m_cmbQuery->currentText().trimmed();
    if (name.isEmpty())
        name = m_queries.AskName();
    m_cmbQuery->setEditText(name);
    if (SaveAs(name) || name.isEmpty() || m_queries.ErrorOffset() >= 0)
        return;
    m_cmbQuery->setFocus(); // another name is the way on
    m_cmbQuery->lineEdit()->selectAll();
}

void frmSQL::OnDelete()
{
    const QString name = m_cmbQuery->currentText().trimmed();
    if (name.isEmpty() || !m_queries.AskDelete(name))
        return;
    if (m_cmbQuery->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0) {
        m_queries.Tell(u"クエリー"_s + name + u"は存在しませんでした。"_s);
        return;
    }
    m_queries.Delete(name);
    m_cmbQuery->clearEditText();
    FillQueries();
}

// Tables and fields

/// Read once for each showing; what cannot be read leaves the lists empty.
void frmSQL::FillTables()
{
    m_tables.clear();
    try {
        if (m_app.LogDB())
            m_tables = m_app.LogDB()->TableDefs();
    } catch (const dao::Error&) {
        // The statement can be written without the lists, and running it tells what is wrong with the file.
    }
    std::erase_if(m_tables, [](const dao::TableDef& Table) { return Table.Attributes != 0; });
    const QSignalBlocker quiet(m_cmbTable);
    m_cmbTable->clear();
    for (const dao::TableDef& table : m_tables)
        m_cmbTable->addItem(table.Name);
    mdlWindow::AdjustComboDropDown(m_cmbTable, 0);
    m_cmbTable->setCurrentIndex(m_cmbTable->findText(u"Message"_s));
    FillFields();
}

const std::vector<dao::FieldDef>& frmSQL::Fields() const
{
    static const std::vector<dao::FieldDef> none;
    const int table = m_cmbTable->currentIndex();
    return table >= 0 && std::size_t(table) < m_tables.size() ? m_tables[std::size_t(table)].Fields : none;
}

void frmSQL::FillFields()
{
    m_lstField->clear();
    m_lblInfo->clear();
    for (const dao::FieldDef& field : Fields()) {
        auto* item = new QListWidgetItem(field.Name, m_lstField);
        item->setToolTip(field.Description);
        item->setData(Qt::AccessibleDescriptionRole, field.Description);
    }
}

const dao::FieldDef* frmSQL::Field(int Row) const
{
    return Row >= 0 && std::size_t(Row) < Fields().size() ? &Fields()[std::size_t(Row)] : nullptr;
}

void frmSQL::ShowDescription(int Row)
{
    const dao::FieldDef* field = Field(Row);
    m_lblInfo->setText(field ? field->Description : QString());
    m_lblInfo->setToolTip(m_lblInfo->text()); // it may be longer than the dialog is wide
}

void frmSQL::InsertCondition(int Row)
{
    const dao::FieldDef* field = Field(Row);
    if (!field)
        return;
    const mdlCondition::Condition condition = mdlCondition::On(field->Name, field->Type);
    m_txtSQL->Insert(condition.Text, condition.Caret);
    m_txtSQL->setFocus();
}

/// Enter on a field is the keyboard's double click.
bool frmSQL::eventFilter(QObject* Watched, QEvent* Event)
{
    if (Watched == m_lstField && Event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(Event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            InsertCondition(m_lstField->currentRow());
            return true;
        }
    }
    return QDialog::eventFilter(Watched, Event);
}

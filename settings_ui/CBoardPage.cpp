// settings_ui/CBoardPage.cpp
// The page "全般" of the board dialog: what the database knows about a board.

#include "settings_ui/CBoardPage.h"

#include "app/Application.h"
#include "board/CBBSProperty.h"
#include "controls/uSpinButton.h"
#include "platform/dao/Database.h"
#include "settings_ui/COptionArray.h"
#include "settings_ui/PageParts.h"
#include "settings_ui/mdlBoardCheck.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>

using namespace Qt::StringLiterals;
using mdlPage::Named;

namespace
{

/// A text column: its box, what stands before it, and what the user is told when it is blank (empty: it may be).
struct CTextColumn
{
    QString Column;
    QString CBBSProperty::*Value;
    QString Box;
    QString Caption;
    QString Blank;
    QString (*Problem)(const QString&) = nullptr; ///< what else is wrong with a new text, as a sentence
    bool IsAddress = false;
};

const CTextColumn Columns[] = {
    {u"BBS_Name"_s, &CBBSProperty::Name, u"txtName"_s, u"掲示板の名前(&N):"_s, u"掲示板の名前が入っていません。"_s},
    {u"ShortName"_s, &CBBSProperty::ShortName, u"txtShortName"_s, u"掲示板の短縮名(&S):"_s,
     u"掲示板の短縮名が入っていません。"_s},
    {u"URL"_s, &CBBSProperty::URL, u"txtURL"_s, u"URL(&U):"_s, u"URLが入っていません。"_s,
     &mdlBoardCheck::AddressProblem, true},
    {u"HowtouseURL"_s, &CBBSProperty::HowtouseURL, u"txtHowtouseURL"_s, u"掲示板の使い方URL(&R):"_s,
     u"掲示板の使い方URLが入っていません。"_s, nullptr, true},
    {u"Identifier"_s, &CBBSProperty::Identifier, u"txtIdentifier"_s, u"識別子(I):"_s, QString(),
     &mdlBoardCheck::IdentifierProblem},
    {u"DefaultLogFile"_s, &CBBSProperty::DefaultLogFile, u"txtDefaultLogFile"_s, u"ログファイルの形式(&D):"_s,
     QString()},
};

/// Most UTF-16 units that a column takes.
int SizeOf(dao::Database& LogDB, const QString& Column)
{
    constexpr int Usual = 255;
    for (const dao::TableDef& table : LogDB.TableDefs()) {
        if (table.Name != u"BBS")
            continue;
        const dao::FieldDef* const field = table.FindField(Column);
        return field && field->Size > 0 ? field->Size : Usual;
    }
    return Usual;
}

} // namespace

CBoardPage::CBoardPage(Application& App, CBBSProperty& Board, QWidget* Parent)
    : CPropertyPage(Parent)
    , m_app(App)
    , m_board(Board)
{
    auto* form = new QFormLayout(this);
    BuildTexts(*form);
    m_uspnMaxCount = Named(new uSpinButton(this), u"uspnMaxCount"_s);
    m_uspnMaxCount->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    form->addRow(u"ログ保存数(&M):"_s, m_uspnMaxCount);
    m_chkVisitLoad = Named(new QCheckBox(u"巡回受信の対象にする(&V)"_s, this), u"chkVisitLoad"_s);
    form->addRow(m_chkVisitLoad);
    connect(m_chkVisitLoad, &QCheckBox::clicked, this, &CBoardPage::VisitToggled);
    m_optHitokoto = new COptionArray(u"Hitokoto"_s, u"ひとこと掲示板かどうか(&H)"_s,
                                     {u"ひとこと掲示板ではない(&1)"_s, u"左ひとこと(&2)"_s, u"右ひとこと(&3)"_s}, this);
    form->addRow(m_optHitokoto);
}

void CBoardPage::BuildTexts(QFormLayout& Form)
{
    for (const CTextColumn& column : Columns) {
        auto* box = Named(new QLineEdit(this), column.Box);
        Form.addRow(column.Caption, box);
        m_texts << box;
    }
}

void CBoardPage::Load()
{
    for (qsizetype column = 0; column < m_texts.size(); ++column) {
        if (m_app.LogDB())
            m_texts[column]->setMaxLength(SizeOf(*m_app.LogDB(), Columns[column].Column));
        m_texts[column]->setText(m_board.*Columns[column].Value);
        m_texts[column]->setCursorPosition(0);
    }
    mdlPage::ShowNumber(*m_uspnMaxCount, m_board.MaxCount, 1, MostMessages);
    SetVisit(m_board.VisitLoad);
    m_optHitokoto->Choose(m_board.Hitokoto > 1 ? -1 : m_board.Hitokoto + 1);
}

bool CBoardPage::IsChanged(qsizetype Column) const { return m_texts[Column]->text() != m_board.*Columns[Column].Value; }

/// The text to keep: a line end that was pasted along is a blank, and around an address there is none. A long text is
/// cut by units, but no half of a character is left.
QString CBoardPage::Entered(qsizetype Column) const
{
    QString text = m_texts[Column]->text();
    if (!IsChanged(Column))
        return text;
    if (!text.isEmpty() && text.back().isHighSurrogate())
        text.chop(1);
    for (QChar& unit : text) {
        if (unit.category() == QChar::Other_Control)
            unit = u' ';
    }
    return Columns[Column].IsAddress ? text.trimmed() : text;
}

/// What is wrong with a text, as a sentence; empty when it can be kept.
QString CBoardPage::Problem(qsizetype Column) const
{
    const CTextColumn& column = Columns[Column];
    const QString text = Entered(Column);
    if (!column.Blank.isEmpty() && text.trimmed().isEmpty())
        return column.Blank;
    return column.Problem && IsChanged(Column) ? column.Problem(text) : QString();
}

bool CBoardPage::Validate()
{
    for (qsizetype column = 0; column < m_texts.size(); ++column) {
        const QString problem = Problem(column);
        if (!problem.isEmpty())
            return mdlPage::Refuse(m_app, m_texts[column], problem);
    }
    return true;
}

void CBoardPage::Apply()
{
    for (qsizetype column = 0; column < m_texts.size(); ++column)
        m_board.*Columns[column].Value = Entered(column);
    m_board.MaxCount = m_uspnMaxCount->Value();
    m_board.VisitLoad = m_chkVisitLoad->isChecked();
    if (const int kind = m_optHitokoto->Chosen(); kind >= 0)
        m_board.Hitokoto = kind - 1;
}

void CBoardPage::SetVisit(bool IsOn) { m_chkVisitLoad->setChecked(IsOn); }

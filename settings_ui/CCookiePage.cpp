// settings_ui/CCookiePage.cpp
// The page "クッキーの情報": what a visitor tells a board, and how the board's pages are shown to him.

#include "settings_ui/CCookiePage.h"

#include "app/Application.h"
#include "controls/uSpinButton.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"
#include "settings_ui/COptionArray.h"
#include "settings_ui/PageParts.h"
#include "store/Recovery.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;
using mdlPage::Named;

namespace
{

struct CPersonal
{
    QString CVisitor::*Value;
    bool (CBBSProperty::*Set)(const QString&);
    QString Box;
    QString Caption;
    QString Word; ///< in sentences
    bool IsSecret = false;
};

const std::array<CPersonal, 4> Personal = {{
    {&CVisitor::PostName, &CBBSProperty::SetPostName, u"txtPostName"_s, u"名前(&N):"_s, u"名前"_s},
    {&CVisitor::Mail, &CBBSProperty::SetMail, u"txtMail"_s, u"メール(&M):"_s, u"メール"_s},
    {&CVisitor::Password, &CBBSProperty::SetPassword, u"txtPassword"_s, u"パスワード(&W):"_s, u"パスワード"_s, true},
    {&CVisitor::HomePage, &CBBSProperty::SetHomePage, u"txtHomePage"_s, u"自分のホームページ(&H):"_s,
     u"自分のホームページ"_s},
}};

/// Whether Text would lose characters to "?", which is what boards know instead of them.
bool Loses(const QString& Text) { return CBBSProperty::StoredText(Text).count(u'?') > Text.count(u'?'); }

/// How Text will stand in the cookie; empty when it stays as it is.
QString Preview(const QString& Text)
{
    const QString stored = CBBSProperty::StoredText(Text);
    return stored == Text ? QString() : u"「"_s + stored + u"」と保存されます。"_s;
}

} // namespace

CCookiePage::CCookiePage(Application& App, CBBSProperty& Board, QWidget* Parent)
    : CPropertyPage(Parent)
    , m_app(App)
    , m_board(Board)
{
    auto* form = new QFormLayout(this);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->addRow(BuildPersonal());
    m_uspnViewCount = Named(new uSpinButton(this), u"uspnViewCount"_s);
    form->addRow(u"1ページあたりの表示記事数(&V):"_s, m_uspnViewCount);
    m_uspnDownloadCount = Named(new uSpinButton(this), u"uspnDownloadCount"_s);
    form->addRow(u"一度にダウンロードするログの記事数(&D):"_s, m_uspnDownloadCount);
    m_optViewOrder =
        new COptionArray(u"ViewOrder"_s, u"表示順(&O)"_s, {u"新しい → 古い(&1)"_s, u"古い → 新しい(&2)"_s}, this);
    m_optNoReadView =
        new COptionArray(u"NoReadView"_s, u"未読読み(&R)"_s, {u"設定する(&3)"_s, u"設定しない(&4)"_s}, this);
    auto* options = new QHBoxLayout;
    options->addWidget(m_optViewOrder);
    options->addWidget(m_optNoReadView);
    form->addRow(options);
}

QGroupBox* CCookiePage::BuildPersonal()
{
    auto* personal = Named(new QGroupBox(u"個人情報(&P)"_s, this), u"fraParsonal"_s);
    auto* form = new QFormLayout(personal);
    for (std::size_t text = 0; text < TextCount; ++text) {
        m_texts[text] = Named(new QLineEdit(personal), Personal[text].Box);
        m_texts[text]->setEchoMode(Personal[text].IsSecret ? QLineEdit::Password : QLineEdit::Normal);
        form->addRow(Personal[text].Caption, m_texts[text]);
        connect(m_texts[text], &QLineEdit::textChanged, this, &CCookiePage::OnTextChanged);
    }
    m_lblNote = Named(new QLabel(personal), u"lblNote"_s);
    m_lblNote->setTextFormat(Qt::PlainText);
    m_lblNote->setWordWrap(true);
    m_lblNote->setMinimumHeight(2 * m_lblNote->fontMetrics().lineSpacing()); // nothing moves when a note appears
    m_cmdAllBBS = Named(new QPushButton(u"全ての掲示板に適応する(&S)"_s, personal), u"cmdAllBBS"_s);
    connect(m_cmdAllBBS, &QPushButton::clicked, this, &CCookiePage::ApplyToAll);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_lblNote, 1);
    bottom->addWidget(m_cmdAllBBS);
    form->addRow(bottom);
    return personal;
}

void CCookiePage::Load()
{
    ShowVisitor(m_board.Visitor());
    mdlPage::ShowNumber(*m_uspnViewCount, m_viewCount = m_board.ViewCount(), 1, MostMessages);
    mdlPage::ShowNumber(*m_uspnDownloadCount, m_downloadCount = m_board.DownloadCount(), 1, MostMessages);
    m_optViewOrder->Choose(m_board.ViewOrder());
    m_optNoReadView->Choose(m_board.NoReadView());
    m_viewOrder = m_optViewOrder->Chosen();
    m_noReadView = m_optNoReadView->Chosen();
}

void CCookiePage::ShowVisitor(const CVisitor& Visitor)
{
    m_visitor = Visitor;
    for (std::size_t text = 0; text < TextCount; ++text) {
        const QString& value = m_visitor.*Personal[text].Value;
        m_texts[text]->setMaxLength(std::max(MaxText, int(value.size())));
        m_texts[text]->setText(value);
        m_texts[text]->setCursorPosition(0);
    }
    m_cmdAllBBS->setEnabled(false);
}

void CCookiePage::OnTextChanged()
{
    m_cmdAllBBS->setEnabled(true);
    bool isWidened = false;
    bool isLossy = false;
    for (std::size_t text = 0; text < TextCount; ++text) {
        const QString typed = m_texts[text]->text();
        m_texts[text]->setToolTip(IsChanged(text) && !Personal[text].IsSecret ? Preview(typed) : QString());
        isWidened |= IsChanged(text) && typed.contains(QRegularExpression(u"[,;%]"_s));
        isLossy |= IsChanged(text) && Loses(typed);
    }
    QStringList notes;
    if (isWidened)
        notes << u"「,」「;」「%」は全角で保存されます。"_s;
    if (isLossy)
        notes << u"掲示板で使えない文字は「?」になります。"_s;
    m_lblNote->setText(notes.join(u'\n'));
}

bool CCookiePage::IsChanged(std::size_t Text) const { return m_texts[Text]->text() != m_visitor.*Personal[Text].Value; }

bool CCookiePage::Validate()
{
    for (std::size_t text = 0; text < TextCount; ++text) {
        if (IsChanged(text) && !MayLose(text)) {
            m_texts[text]->setFocus();
            return false;
        }
    }
    return true;
}

/// True when nothing of the text would be lost, or the user does not mind. He is asked once: the box then holds what is
/// left of it.
bool CCookiePage::MayLose(std::size_t Text)
{
    const QString typed = m_texts[Text]->text();
    if (!Loses(typed))
        return true;
    const auto answer = m_app.Shell.MessageBox(
        Personal[Text].Word + u"に掲示板で使えない文字があります。\r\n「?」に置き換えて保存してもよろしいですか？"_s,
        m_app.AppTitle(), Desktop::Icon::Exclamation, Desktop::Buttons::OkCancel, Desktop::Answer::Cancel);
    if (answer != Desktop::Answer::Ok)
        return false;
    m_texts[Text]->setText(CBBSProperty::StoredText(typed));
    return true;
}

/// The texts in the forms in which cookies give them back.
CVisitor CCookiePage::Entered() const
{
    CVisitor visitor;
    for (std::size_t text = 0; text < TextCount; ++text)
        visitor.*Personal[text].Value = CBBSProperty::StoredText(m_texts[text]->text());
    return visitor;
}

void CCookiePage::Apply()
{
    bool isKept = true;
    for (std::size_t text = 0; text < TextCount; ++text) {
        if (IsChanged(text))
            isKept = (m_board.*Personal[text].Set)(m_texts[text]->text()) && isKept;
    }
    if (m_uspnViewCount->Value() != m_viewCount)
        isKept = m_board.SetViewCount(m_uspnViewCount->Value()) && isKept;
    if (m_uspnDownloadCount->Value() != m_downloadCount)
        isKept = m_board.SetDownloadCount(m_uspnDownloadCount->Value()) && isKept;
    if (m_optViewOrder->Chosen() != m_viewOrder)
        isKept = m_board.SetViewOrder(m_optViewOrder->Chosen()) && isKept;
    if (m_optNoReadView->Chosen() != m_noReadView)
        isKept = m_board.SetNoReadView(m_optNoReadView->Chosen()) && isKept;
    if (!isKept)
        Warn(u"クッキーを保存できませんでした。"_s);
}

/// Takes effect at once: what Cancel of the dialog leaves is what stands there from now on.
void CCookiePage::ApplyToAll()
{
    if (!Validate())
        return;
    try {
        const CVisitor visitor = Entered();
        const QStringList failed = StoreEverywhere(visitor);
        ShowVisitor(visitor);
        m_lblNote->setText(failed.isEmpty() ? u"全ての掲示板に適応しました。"_s : QString());
        if (!failed.isEmpty())
            Warn(u"次の掲示板には適応できませんでした。\r\n"_s + failed.join(u"\r\n"_s));
    } catch (const dao::Error& error) {
        Warn(mdlStore::RefusalText(error));
    }
}

/// Stores the texts for every board that has an address, hidden ones too. The names of those where that failed.
QStringList CCookiePage::StoreEverywhere(const CVisitor& Visitor)
{
    QStringList failed;
    if (!m_app.LogDB())
        return failed;
    const auto rows = m_app.LogDB()->OpenRecordset(u"SELECT BBS_ID FROM BBS"_s);
    for (; !rows->Eof(); rows->MoveNext()) {
        CBBSProperty board(m_app);
        if (board.GetProperty(rows->Long(0)) && !board.URL.isEmpty() && !board.SetVisitor(Visitor))
            failed << board.Name;
    }
    return failed;
}

void CCookiePage::Warn(const QString& Text)
{
    m_app.Shell.MessageBox(Text, m_app.AppTitle(), Desktop::Icon::Exclamation);
}

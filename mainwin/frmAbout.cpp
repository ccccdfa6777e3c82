// mainwin/frmAbout.cpp
// The version window: icon, name, version, credits and the links to the community.

#include "mainwin/frmAbout.h"

#include "app/Version.h"
#include "controls/uClickableLabel.h"
#include "mainwin/CIconSet.h"
#include "mainwin/mdlProduct.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace
{

constexpr int IconSide = 64; // pixels at 100 %

} // namespace

frmAbout::frmAbout(Desktop& Shell, QWidget* Owner)
    : QDialog(Owner)
{
    setObjectName(u"frmAbout"_s);
    setWindowTitle(u"バージョン情報 - "_s + mdlVersion::ProductName());
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(20, 20, 20, 16);
    grid->setHorizontalSpacing(16);
    grid->setColumnStretch(2, 1);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    AddTitle(*grid);
    AddLink(Shell, *grid, u"uclSupport"_s, u"サポート："_s, mdlProduct::SupportPage());
    AddLink(Shell, *grid, u"uclCommunity"_s, u"入門者ひろば："_s, mdlProduct::CommunityPage());
    AddButton(*grid);
}

void frmAbout::ShowVersionInfo(Desktop& Shell, QWidget* Owner) { frmAbout(Shell, Owner).exec(); }

QLabel* frmAbout::MakeLabel(const QString& Name, const QString& Text)
{
    auto* label = new QLabel(Text, this);
    label->setObjectName(Name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

void frmAbout::AddTitle(QGridLayout& Grid)
{
    QLabel* icon = MakeLabel(u"imgIcon"_s, {});
    icon->setPixmap(CIconSet::Picture(u"MAINICON"_s).pixmap(QSize(IconSide, IconSide), devicePixelRatio()));
    QLabel* title = MakeLabel(u"lblTitle"_s, mdlVersion::ProductName());
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.8);
    font.setBold(true);
    title->setFont(font);
    Grid.addWidget(icon, 0, 0, 4, 1, Qt::AlignTop);
    Grid.addWidget(title, 0, 1, 1, 2);
    Grid.addWidget(MakeLabel(u"lblVersion"_s, VersionString(true)), 1, 1, 1, 2);
    Grid.addWidget(MakeLabel(u"lblFullName"_s, mdlProduct::Description()), 2, 1, 1, 2);
    Grid.addWidget(MakeLabel(u"lblLegal"_s, mdlProduct::LegalNotice()), 3, 1, 1, 2);
    Grid.addWidget(MakeLabel(u"lblCredits"_s, u"掲示板に書き込み、見守ってきた入門者ひろばのみなさんに感謝します。\n"
                                              "Qt、SQLite、ICU、PCRE2、lhasa を利用しています。"_s),
                   4, 1, 1, 2);
    Grid.setRowMinimumHeight(5, 8);
}

void frmAbout::AddLink(Desktop& Shell, QGridLayout& Grid, const QString& Name, const QString& Title,
                       const QString& Address)
{
    auto* link = new uClickableLabel(Shell, this);
    link->setObjectName(Name);
    link->SetCaption(Address);
    const int row = Grid.rowCount();
    Grid.addWidget(MakeLabel(u"lbl"_s + Name, Title), row, 1);
    Grid.addWidget(link, row, 2);
}

void frmAbout::AddButton(QGridLayout& Grid)
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(u"cmdOK"_s);
    buttons->button(QDialogButtonBox::Ok)->setText(u"OK"_s); // some desktops underline a letter of it
    buttons->button(QDialogButtonBox::Ok)->setIcon({});      // no other button of the program has one
    buttons->button(QDialogButtonBox::Ok)->setFocus();
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    const int row = Grid.rowCount();
    Grid.setRowMinimumHeight(row, 12);
    Grid.addWidget(buttons, row + 1, 0, 1, 3);
}

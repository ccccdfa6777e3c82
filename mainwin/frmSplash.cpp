// mainwin/frmSplash.cpp
// The picture that stands on the screen while the program starts.

#include "mainwin/frmSplash.h"

#include "app/Version.h"
#include "mainwin/CIconSet.h"
#include "mainwin/mdlProduct.h"
#include "platform/desktop/Geometry.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

constexpr int IconSide = 72; // pixels at 100 %
constexpr int Border = 28;

} // namespace

frmSplash::frmSplash()
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(u"frmSplash"_s);
    setWindowTitle(mdlVersion::ProductName());
    auto* icon = new QLabel(this);
    icon->setObjectName(u"imgIcon"_s);
    icon->setPixmap(CIconSet::Picture(u"MAINICON"_s).pixmap(QSize(IconSide, IconSide), devicePixelRatio()));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Border, Border, Border, Border);
    layout->setSpacing(Border);
    layout->addWidget(icon, 0, Qt::AlignTop);
    layout->addWidget(BuildTexts());
    setGeometry(mdlGeometry::Centred(sizeHint()));
}

QLabel* frmSplash::AddLabel(const QString& Name, const QString& Text, double FontScale)
{
    auto* label = new QLabel(Text, this);
    label->setObjectName(Name);
    label->setTextFormat(Qt::PlainText);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * FontScale);
    font.setBold(FontScale > 1.5);
    label->setFont(font);
    return label;
}

QWidget* frmSplash::BuildTexts()
{
    auto* texts = new QWidget(this);
    auto* column = new QVBoxLayout(texts);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(AddLabel(u"lblTitle"_s, mdlVersion::ProductName(), 2.4));
    column->addWidget(AddLabel(u"lblFullName"_s, mdlProduct::Description(), 1.1));
    auto* version = new QHBoxLayout;
    version->setSpacing(0);
    version->addWidget(AddLabel(u"lblVersion"_s, VersionString(false) + u'.', 1.0));
    version->addWidget(AddLabel(u"lblVerRevision"_s, mdlVersion::RevisionText(), 1.0));
    version->addStretch();
    column->addLayout(version);
    column->addSpacing(12);
    column->addWidget(AddLabel(u"lblLegal"_s, mdlProduct::LegalNotice(), 0.85));
    return texts;
}

void frmSplash::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

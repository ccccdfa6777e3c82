// controls/AccessibleControls.cpp
// What screen readers are told about the controls that the toolkit does not know.

#include "controls/AccessibleControls.h"

#include "controls/uClickableLabel.h"
#include "controls/uSeparator.h"
#include "controls/uSeparatorBar.h"

#include <QAccessibleWidget>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace mdlAccessibleControls
{
namespace
{
class CLinkInterface : public QAccessibleWidget
{
public:
    explicit CLinkInterface(uClickableLabel* Label)
        : QAccessibleWidget(Label, QAccessible::Link)
    {}

    QString text(QAccessible::Text Kind) const override
    {
        if (Kind == QAccessible::Name)
            return Link().Caption();
        if (Kind == QAccessible::Description)
            return Link().Label()->toolTip(); // what a click does
        return QAccessibleWidget::text(Kind);
    }
    int childCount() const override { return 0; } // the inner label says nothing more
    QStringList actionNames() const override { return QAccessibleWidget::actionNames() << pressAction(); }
    void doAction(const QString& Action) override
    {
        if (Action == pressAction())
            Link().Activate();
        else
            QAccessibleWidget::doAction(Action);
    }

private:
    uClickableLabel& Link() const { return *static_cast<uClickableLabel*>(widget()); }
};

class CBarInterface : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit CBarInterface(uSeparatorBar* Bar)
        : QAccessibleWidget(Bar, QAccessible::Splitter)
    {}

    void* interface_cast(QAccessible::InterfaceType Type) override
    {
        if (Type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(Type);
    }
    QVariant currentValue() const override { return Separator().Parsent(); }
    void setCurrentValue(const QVariant& Value) override { Separator().SetParsent(Value.toDouble()); }
    QVariant minimumValue() const override { return 0.0; }
    QVariant maximumValue() const override { return 100.0; }
    QVariant minimumStepSize() const override { return 1.0; }

private:
    uSeparator& Separator() const { return static_cast<uSeparatorBar*>(widget())->Separator(); }
};

QAccessibleInterface* Make(const QString& ClassName, QObject* Object)
{
    if (ClassName == u"uClickableLabel")
        return new CLinkInterface(static_cast<uClickableLabel*>(Object));
    if (ClassName == u"uSeparatorBar")
        return new CBarInterface(static_cast<uSeparatorBar*>(Object));
    return nullptr;
}
} // namespace

void Install()
{
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(Make);
        return true;
    }();
}
} // namespace mdlAccessibleControls

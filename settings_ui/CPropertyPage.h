// settings_ui/CPropertyPage.h
// What the eight pages of the options and board dialogs have in common.

#ifndef SETTINGS_UI_CPROPERTYPAGE_H
#define SETTINGS_UI_CPROPERTYPAGE_H

#include <QWidget>

/// One page of frmProperty, which owns it. Load is called once, before the dialog is shown.
///
/// What the database refuses reaches the dialog as dao::Error.
class CPropertyPage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Fills the controls from settings, board or database.
    virtual void Load() = 0;

    /// Whether what stands in the controls can be applied. Where not, the user has been told, and the faulty field has
    /// the focus.
    virtual bool Validate() { return true; }

    /// Whether Apply would write anything else than what Load read. A page that cannot tell says yes.
    virtual bool HasChanges() const { return true; }

    /// Copies the controls back to where Load read them.
    virtual void Apply() = 0;
};

#endif

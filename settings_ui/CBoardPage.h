// settings_ui/CBoardPage.h
// The page "全般" of the board dialog: what the database knows about a board.

#ifndef SETTINGS_UI_CBOARDPAGE_H
#define SETTINGS_UI_CBOARDPAGE_H

#include "settings_ui/CPropertyPage.h"

#include <QList>

class Application;
class CBBSProperty;
class COptionArray;
class QCheckBox;
class QFormLayout;
class QLineEdit;
class uSpinButton;

/// Edits the fields of a board; the caller stores them. What the user leaves alone stays as it was, odd as it may be.
class CBoardPage : public CPropertyPage
{
    Q_OBJECT

public:
    /// Most messages that a board is believed to keep. A larger number that stands there already can be kept.
    static constexpr qint32 MostMessages = 999'999;

    /// Board must outlive the page.
    CBoardPage(Application& App, CBBSProperty& Board, QWidget* Parent);

    void Load() override;
    bool Validate() override;
    void Apply() override;

    /// Ticks or clears the visit flag, without VisitToggled.
    void SetVisit(bool IsOn);

Q_SIGNALS:
    /// The user ticked or cleared the visit flag.
    void VisitToggled(bool IsOn);

private:
    void BuildTexts(QFormLayout& Form);
    bool IsChanged(qsizetype Column) const;
    QString Entered(qsizetype Column) const;
    QString Problem(qsizetype Column) const;

    Application& m_app;
    CBBSProperty& m_board;
    QList<QLineEdit*> m_texts; // one for each text column
    uSpinButton* m_uspnMaxCount = nullptr;
    QCheckBox* m_chkVisitLoad = nullptr;
    COptionArray* m_optHitokoto = nullptr;
};

#endif

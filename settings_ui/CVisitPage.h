// settings_ui/CVisitPage.h
// The page "巡回受信": which of the shown boards are received in one go.

#ifndef SETTINGS_UI_CVISITPAGE_H
#define SETTINGS_UI_CVISITPAGE_H

#include "settings_ui/CPropertyPage.h"

class Application;
class QListWidget;
class QListWidgetItem;

/// One check box for each shown board. A click on its name or Space turns it over; no click changes another one.
class CVisitPage : public CPropertyPage
{
    Q_OBJECT

public:
    CVisitPage(Application& App, QWidget* Parent);

    void Load() override;
    bool HasChanges() const override { return Chosen() != m_loaded; }
    /// Writes the flags of all boards, hidden ones off.
    void Apply() override;

    /// A board has become a shown one: it joins with the flag that stands in the database, and VisitToggled tells it.
    void AddBoard(qint32 BBS_ID, const QString& Name);
    void RemoveBoard(qint32 BBS_ID);
    /// Ticks or clears a board that is listed, without VisitToggled.
    void SetVisit(qint32 BBS_ID, bool IsOn);

Q_SIGNALS:
    void VisitToggled(qint32 BBS_ID, bool IsOn);

private:
    void ToggleByName(QListWidgetItem* Item);
    QString Chosen() const;
    bool StoredVisit(qint32 BBS_ID) const;

    Application& m_app;
    QListWidget* m_lstVisitLoad = nullptr;
    QString m_loaded;        // who took part at first
    bool m_isTurned = false; // a box, since the mouse button went down
};

#endif

// settings_ui/COrderPage.h
// The page "表示順": which boards are shown, in which order, and where lines divide them.

#ifndef SETTINGS_UI_CORDERPAGE_H
#define SETTINGS_UI_CORDERPAGE_H

#include "settings_ui/CPropertyPage.h"

#include <QList>

class Application;
class CBBSProperty;
class QListWidget;
class QListWidgetItem;
class QPushButton;

/// A board is in one of the two lists, the shown ones in their order or the hidden ones by number. A place that no
/// board holds is a separator in the menus; the hidden list offers any number of them.
class COrderPage : public CPropertyPage
{
    Q_OBJECT

public:
    /// Most separators that one run of free places is shown as, just as the menus draw it: a stray place such as
    /// 2,000,000,000 must not make a list of that length.
    static constexpr int MaxSeparators = 10;

    /// InView is the board that the main window shows: it cannot be hidden. It must outlive the page.
    COrderPage(Application& App, const CBBSProperty& InView, QWidget* Parent);

    void Load() override;
    bool Validate() override;
    bool HasChanges() const override { return Places() != m_loaded; }
    /// Writes the places of all boards and takes hidden ones out of the visit list.
    void Apply() override;

    bool eventFilter(QObject* Watched, QEvent* Event) override;

Q_SIGNALS:
    /// A hidden board has become a shown one in this dialog, or the other way round.
    void BoardAdded(qint32 BBS_ID, const QString& Name);
    void BoardRemoved(qint32 BBS_ID);

private:
    void BuildLists();
    void BuildButtons();
    void BuildLayout();
    void FillOrder();
    void FillAll();
    QList<qint32> Places() const;
    void Add();
    void Delete();
    void MoveSelected(int Rows);
    void UpdateOrderButtons();

    Application& m_app;
    const CBBSProperty& m_inView;
    QListWidget* m_lstOrder = nullptr;
    QListWidget* m_lstAll = nullptr;
    QPushButton* m_cmdAdd = nullptr;
    QPushButton* m_cmdDelete = nullptr;
    QPushButton* m_cmdUp = nullptr;
    QPushButton* m_cmdDown = nullptr;
    QList<qint32> m_loaded; // the places as they came
};

#endif

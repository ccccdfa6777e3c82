// settings_ui/CWebSearchPage.h
// The options page for the web searches that the menu of the selected text offers.

#ifndef SETTINGS_UI_CWEBSEARCHPAGE_H
#define SETTINGS_UI_CWEBSEARCHPAGE_H

#include "settings_ui/CPropertyPage.h"

class Application;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

/// Apply writes the section at once and tells the user when the file could not be written; the searches are then known
/// for this run all the same.
class CWebSearchPage : public CPropertyPage
{
    Q_OBJECT

public:
    CWebSearchPage(Application& App, QWidget* Parent);

    void Load() override;
    void Apply() override;

    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    void BuildList();
    void BuildFields();
    void BuildLayout();
    void OnSelected();
    void OnAddSearch();
    void OnDelSearch();
    void ShowUrlNote();
    bool MayReplace(const QTreeWidgetItem& Entry) const;
    bool HasNewEntry() const;
    QTreeWidgetItem* Find(const QString& Name) const;
    QTreeWidgetItem* Selected() const;
    QString EnteredName() const;
    QString EnteredUrl() const;

    Application& m_app;
    QTreeWidget* m_lsvWebSearch = nullptr;
    QLineEdit* m_txtWebSearchName = nullptr;
    QLineEdit* m_txtWebSearchURL = nullptr;
    QLabel* m_lblUrlNote = nullptr; // says what will be wrong with the address when it is used
    QPushButton* m_cmdAddSearch = nullptr;
    QPushButton* m_cmdDelSearch = nullptr;
};

#endif

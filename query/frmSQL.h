// query/frmSQL.h
// The dialog in which the user writes a statement, with the database's tables beside it and the saved queries above.

#ifndef QUERY_FRMSQL_H
#define QUERY_FRMSQL_H

#include "platform/dao/TableDef.h"
#include "query/CSavedQueries.h"

#include <QDialog>

#include <vector>

class Application;
class CStatementBox;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class uSeparator;

/// Modal; edits and hands back a statement and runs none. Made once and shown anew for each query: the lists are read
/// from the database each time.
class frmSQL : public QDialog
{
    Q_OBJECT

public:
    explicit frmSQL(Application& App, QWidget* Parent = nullptr);
    ~frmSQL() override;

    /// Shows the dialog over Owner until it is closed. The statement to run; empty when the user gave up.
    ///
    /// SQLString stands in the box, all of it selected; with an ErrorOffset (UTF-16 units) the caret stands there
    /// instead, which is where the engine did not understand it.
    QString ShowSQL(const QString& SQLString, QWidget* Owner, int ErrorOffset = -1);

    void done(int Result) override;
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    void BuildQueries();
    void BuildTables();
    void BuildButtons();
    void BuildLayout();
    void Prepare(const QString& SQLString, const QWidget* Owner, int ErrorOffset);
    void PlaceWindow();
    void SavePlace();
    void FillQueries();
    void FillTables();
    void FillFields();
    const std::vector<dao::FieldDef>& Fields() const;
    const dao::FieldDef* Field(int Row) const;

    void OnQueryChosen(int Index);
    bool MayLeaveStatement();
    void OnSave();
    void OnDelete();
    bool SaveAs(const QString& Name);
    void ShowError(int Offset);
    void ShowDescription(int Row);
    void InsertCondition(int Row);
    void Execute();

    Application& m_app;
    CSavedQueries m_queries;
    QComboBox* m_cmbQuery = nullptr;
    QPushButton* m_cmdSave = nullptr;
    QPushButton* m_cmdDelete = nullptr;
    QWidget* m_client = nullptr; // what the bar divides
    uSeparator* m_separator = nullptr;
    QWidget* m_picList = nullptr;
    QComboBox* m_cmbTable = nullptr;
    QListWidget* m_lstField = nullptr;
    CStatementBox* m_txtSQL = nullptr;
    QLabel* m_lblInfo = nullptr;
    QPushButton* m_cmdExec = nullptr;
    QPushButton* m_cmdCancel = nullptr;
    std::vector<dao::TableDef> m_tables; // those of the list, in its order
    QString m_result;
};

#endif // QUERY_FRMSQL_H

// settings_ui/CFolderField.h
// Entry of a data folder: a text box and the button that lets one be chosen.

#ifndef SETTINGS_UI_CFOLDERFIELD_H
#define SETTINGS_UI_CFOLDERFIELD_H

#include <QWidget>

class Application;
class QLineEdit;

/// The text box has the object name that was given, and is what has the focus.
class CFolderField : public QWidget
{
    Q_OBJECT

public:
    /// Label is the folder's name in questions and for screen readers.
    CFolderField(Application& App, const QString& Name, const QString& Label, QWidget* Parent);

    QString Folder() const;
    void SetFolder(const QString& Folder);

    /// Whether there is something in the box that can be kept. Where not, the user has been told and the box has the
    /// focus.
    bool Validate();

private:
    void Choose();

    Application& m_app;
    QString m_label;
    QLineEdit* m_box;
};

#endif

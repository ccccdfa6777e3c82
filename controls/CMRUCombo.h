// controls/CMRUCombo.h
// Turns an editable combo box into a box that remembers and completes.

#ifndef CONTROLS_CMRUCOMBO_H
#define CONTROLS_CMRUCOMBO_H

#include "platform/desktop/CComposing.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

class QComboBox;
class QLineEdit;

/// A most-recently-used list of texts over a combo box, mirrored in its drop-down, with completion while typing.
///
/// Attach the box first and set Max afterwards. The list holds a text once, letter case aside; the drop-down's items
/// are compared exactly and are not cut to Max.
class CMRUCombo : public QObject
{
    Q_OBJECT

public:
    explicit CMRUCombo(QObject* Parent = nullptr);

    /// Attaches the box (borrowed; made editable) with an empty list and sets Max to 0. Null detaches.
    void SetComboBox(QComboBox* NewComboBox);
    QComboBox* ComboBox() const;

    /// Most entries kept; -1 any number, 0 none, 10 at the start. Setting it cuts the list at once.
    qint16 Max() const;
    void SetMax(qint16 NewMax);

    /// Most recent first when texts are added at the top.
    QStringList MRUList() const;

    /// Puts Text at the top or at the end of the list and of the drop-down; elsewhere it goes.
    void AddMRU(const QString& Text, bool AtTop);
    /// The same with the box's own text.
    void AddMRU(bool AtTop);
    /// As AddMRU, but only in the drop-down.
    void AddMRUTemp(const QString& Text, bool AtTop);
    void AddMRUTemp(bool AtTop);

    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    void OnTextEdited(const QString& Text);
    QStringList MatchingItems(const QString& Text) const;
    void Complete(const QString& Typed, const QStringList& Matches);
    void AcceptCompletion();
    void CutToMax();
    int Caret() const;

    QPointer<QComboBox> m_combo;
    QPointer<QLineEdit> m_edit;
    QStringList m_list;
    qint16 m_max = 10;
    QString m_lastSeen;
    int m_caretBefore = 0;
    CComposing m_composing;
};

#endif

// settings_ui/COptionArray.h
// A row of option buttons in a frame, one of which is chosen.

#ifndef SETTINGS_UI_COPTIONARRAY_H
#define SETTINGS_UI_COPTIONARRAY_H

#include <QGroupBox>
#include <QStringList>

class QButtonGroup;

/// The frame; its name is "fra" and Name, those of its buttons "opt", Name and the index from 0. Nothing is chosen at
/// the start.
class COptionArray : public QGroupBox
{
    Q_OBJECT

public:
    COptionArray(const QString& Name, const QString& Title, const QStringList& Captions, QWidget* Parent);

    /// Chooses a button; none when there is no such one, as for a number that came from elsewhere.
    void Choose(int Index);
    /// The index of the chosen button; -1 when it is none.
    int Chosen() const;

private:
    QButtonGroup* m_options = nullptr;
};

#endif

// settings_ui/CCookiePage.h
// The page "クッキーの情報": what a visitor tells a board, and how the board's pages are shown to him.

#ifndef SETTINGS_UI_CCOOKIEPAGE_H
#define SETTINGS_UI_CCOOKIEPAGE_H

#include "settings_ui/CPropertyPage.h"

#include "board/CBBSProperty.h"

#include <QStringList>

#include <array>

class Application;
class COptionArray;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class uSpinButton;

/// Edits the settings in a board's cookie. Only what was changed is written, so that what the board's own pages put
/// there is safe. What the cookie cannot hold as it was typed is shown while it is typed.
class CCookiePage : public CPropertyPage
{
    Q_OBJECT

public:
    /// Longest personal text in UTF-16 units, as long as what messages show of it. Four of them fit a cookie.
    static constexpr int MaxText = 255;
    /// Most messages that a web page or log page can be asked for. A larger number that stands there can be kept.
    static constexpr qint32 MostMessages = 9'999;

    /// Board must outlive the page.
    CCookiePage(Application& App, CBBSProperty& Board, QWidget* Parent);

    void Load() override;
    /// Asks before a new text loses characters that boards do not know.
    bool Validate() override;
    void Apply() override;

private:
    static constexpr std::size_t TextCount = 4;

    QGroupBox* BuildPersonal();
    void ShowVisitor(const CVisitor& Visitor);
    void OnTextChanged();
    bool IsChanged(std::size_t Text) const;
    bool MayLose(std::size_t Text);
    CVisitor Entered() const;
    void ApplyToAll();
    QStringList StoreEverywhere(const CVisitor& Visitor);
    void Warn(const QString& Text);

    Application& m_app;
    CBBSProperty& m_board;
    std::array<QLineEdit*, TextCount> m_texts{};
    QPushButton* m_cmdAllBBS = nullptr;
    QLabel* m_lblNote = nullptr;
    uSpinButton* m_uspnViewCount = nullptr;
    uSpinButton* m_uspnDownloadCount = nullptr;
    COptionArray* m_optViewOrder = nullptr;
    COptionArray* m_optNoReadView = nullptr;

    // as they were loaded; -1: neither option
    CVisitor m_visitor;
    qint32 m_viewCount = 0;
    qint32 m_downloadCount = 0;
    int m_viewOrder = -1;
    int m_noReadView = -1;
};

#endif

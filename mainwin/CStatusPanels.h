// mainwin/CStatusPanels.h
// The status bar: its panels, the two links over them and the editor of the unread position.

#ifndef MAINWIN_CSTATUSPANELS_H
#define MAINWIN_CSTATUSPANELS_H

#include <QHash>
#include <QLabel>
#include <QStatusBar>

class Desktop;
class uClickableLabel;
class uSpinButton;

/// A panel: one line of text, cut with an ellipsis where it does not fit.
class CPanel : public QLabel
{
    Q_OBJECT

public:
    /// Columns: width in digits of the font; 0 gives and takes whatever the bar has.
    explicit CPanel(int Columns, QWidget* Parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void Clicked();

protected:
    void paintEvent(QPaintEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;

private:
    int m_columns;
};

/// Named "StatusBar"; each panel is named "StatusBar" + its key. The links uclMailto and uclHomepage lie over the
/// panels "Mail" and "HomePage", uspnNoReadPoint over "NoReadPoint" while it is open.
class CStatusPanels : public QStatusBar
{
    Q_OBJECT

public:
    /// Shell opens the links; it must outlive the bar.
    CStatusPanels(Desktop& Shell, QWidget* Parent);

    /// Key is one of the table of panels.
    void SetText(QStringView Key, const QString& Text);
    QString Text(QStringView Key) const;

    /// 0: the panels of a message. 1: the status panel in their place, the links hidden.
    void SetStyle(int Style);
    int Style() const { return m_style; }

    /// Caption of the link over the panel; empty hides it.
    void ShowMail(const QString& Caption);
    void ShowHomePage(const QString& Caption);

    /// Opens the editor over the panel, with the keyboard focus.
    void OpenNoReadPoint(qint32 Value);
    void CloseNoReadPoint();
    bool IsNoReadPointOpen() const;

    /// What the Tab key reaches in the bar while it is shown, in its order.
    QList<QWidget*> TabStops() const;

Q_SIGNALS:
    void NoReadPointClicked();
    /// Enter in the editor, which is closed by then.
    void NoReadPointEntered(qint32 Value);
    /// The editor was closed, with or without a value, while it had the keyboard focus.
    void NoReadPointLeft();
    /// A link was hidden while it had the keyboard focus.
    void LinkLeft();

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    /// Highest unread position that can be entered: message numbers have six digits.
    static constexpr qint32 MaxNoReadPoint = 999999;

    CPanel* Panel(QStringView Key) const { return m_panels.value(Key); }
    uClickableLabel* MakeLink(Desktop& Shell, QStringView Key, const QString& Name, int Mode);
    void MakeEditor();
    void ShowLink(uClickableLabel* Link, const QString& Caption);
    void Reveal(uClickableLabel* Link);
    void PlaceOverPanels();
    void OnEditorKey(int Character);

    QHash<QStringView, CPanel*> m_panels;
    uClickableLabel* m_mail = nullptr;
    uClickableLabel* m_homePage = nullptr;
    uSpinButton* m_editor = nullptr;
    int m_style = 0;
};

#endif

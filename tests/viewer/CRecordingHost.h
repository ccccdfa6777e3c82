// tests/viewer/CRecordingHost.h
// A window that only remembers what the viewer told it.

#ifndef TESTS_VIEWER_CRECORDINGHOST_H
#define TESTS_VIEWER_CRECORDINGHOST_H

#include "viewer/viewer_host.h"

#include <QStringList>

#include <map>

class CRecordingHost : public ViewerHost
{
public:
    void ShowBody(const std::vector<BodyLine>& Lines) override
    {
        Body.clear();
        for (const BodyLine& line : Lines)
            Body.append(line.Text);
        Selected = {};
    }
    void ShowMail(const QString& Caption) override { Mail = Caption; }
    void ShowHomePage(const QString& Caption) override { HomePage = Caption; }
    void ChangeStatusBarStyle(int NewStyle) override { Style = NewStyle; }
    void SetCountText(const QString& Text) override
    {
        Count = Text;
        ++CountUpdates;
    }
    void SetNoReadPointText(const QString& Text) override { NoReadPoint = Text; }
    void ClearStatus() override { ++StatusClears; }
    void BeginListUpdate(int) override { ++Held; }
    void EndListUpdate(int) override { --Held; }
    void ListShown(int List) override { Shown = List; }
    void EnsureVisible(int, int Row) override { VisibleRow = Row; }
    void SelectionChanged(int) override {}
    void HeadersChanged(int List) override { ++HeaderChanges[List]; }
    void StartReadTimer(int Ms) override { TimerMs = Ms; }
    void StopReadTimer() override { TimerMs = 0; }
    void ViewMenuChanged() override { ++MenuChanges; }
    void BoardCountChanged(qint32 BBS_ID, int UnreadCount) override { Boards[BBS_ID] = UnreadCount; }
    void MarksChanged() override { ++MarkChanges; }
    void DataDefinitionChanged() override { ++DataChanges; }
    void Progress(int Done, int Of) override { Steps.append(QString::number(Done) + u'/' + QString::number(Of)); }
    bool PagePane(bool) override { return PagesLeft-- > 0; }
    BodyRange PaneSelection() const override { return Selected; }
    void SelectInPane(BodyRange Range) override
    {
        Selected = Range;
        ++PaneSelections;
    }

    QStringList Body;
    BodyRange Selected; // in the text pane
    QString Mail;
    QString HomePage;
    QString Count;
    QString NoReadPoint;
    QStringList Steps;
    std::map<qint32, int> Boards;
    std::map<int, int> HeaderChanges;
    int Style = -1;
    int Shown = -1;
    int VisibleRow = -1;
    int TimerMs = 0; // 0: stopped
    int Held = 0;
    int CountUpdates = 0;
    int StatusClears = 0;
    int MenuChanges = 0;
    int MarkChanges = 0;
    int DataChanges = 0;
    int PagesLeft = 0;
    int PaneSelections = 0;
};

#endif // TESTS_VIEWER_CRECORDINGHOST_H

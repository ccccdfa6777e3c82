// bench/support/CNoWindow.h
// A window that shows nothing: what is measured is the list, not the painting of its thirty visible rows.

#ifndef BENCH_SUPPORT_CNOWINDOW_H
#define BENCH_SUPPORT_CNOWINDOW_H

#include "viewer/viewer_host.h"

class CNoWindow : public ViewerHost
{
public:
    void ShowBody(const std::vector<BodyLine>&) override {}
    void ShowMail(const QString&) override {}
    void ShowHomePage(const QString&) override {}
    void ChangeStatusBarStyle(int) override {}
    void SetCountText(const QString&) override {}
    void SetNoReadPointText(const QString&) override {}
    void ClearStatus() override {}
    void BeginListUpdate(int) override {}
    void EndListUpdate(int) override {}
    void ListShown(int) override {}
    void EnsureVisible(int, int) override {}
    void SelectionChanged(int) override {}
    void HeadersChanged(int) override {}
    void StartReadTimer(int) override {}
    void StopReadTimer() override {}
    void ViewMenuChanged() override {}
    void BoardCountChanged(qint32, int) override {}
    void MarksChanged() override {}
    void DataDefinitionChanged() override {}
    void Progress(int, int) override {}
    bool PagePane(bool) override { return false; }
    BodyRange PaneSelection() const override { return {}; }
    void SelectInPane(BodyRange) override {}
};

#endif

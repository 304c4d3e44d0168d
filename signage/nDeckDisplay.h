#pragma once
#include "signage/displayFrame.h"
#include "signage/nDeckLayout.h"
#include "signage/nDeckShow.h"
#include "support/container/chList.h"
#include "support/host/api.h"
#include "support/host/message.h"
#include <QElapsedTimer>
#include <vector>

#define NDECK_DEFAULT_PICTURE HX_THEME("misc/nDeck_Default.jpg")

// The running show: the layouts of the frame in force, and whose turn it is. One object.
// User-interface thread.
class nDeckDisplay : public chObjList_dynamic<nDeckLayout, 16>, public chMsgProcesser, public nDeckShow
{
public:
    nDeckDisplay();
    ~nDeckDisplay() override;

    // Starts the client. false when it is disabled or was started before.
    bool CreateDisplay();
    void InitDisplay() override;
    // Ends the client: nothing shows, nothing is fetched any more.
    void DestroyDisplay();
    void UpdateDisplay(DisplayFrame* frame) override;

    void SetCurrentLayout(iterator layout);
    iterator GetCurrentLayout() { return m_current; } // end() when there is none
    void LoadNextReadyLayout();
    int OnTimerLoadNextLayout(msgObject& msg);
    int GetLayoutsCount() const { return size(); }
    bool IsMettingCurrentLayout();
    bool IsStoredShown() const override { return m_bStoredShown; }
    void OnFrameStays() override;
    void OnFileCame(const chString& name) override;
    bool CanShowAny(const DisplayFrame& frame) override;
    DisplayFrame& GetDisplayFrame() override { return m_frame; }

    void SetShowLayout(int show) { m_bShow = show; }
    int IsShowLayout() const override { return m_bShow; }
    void PrepareAfter(const nDeckLayout& layout) override;

    // The switches, from the key file at each call.
    HX_MODULE_API bool IsNdeckEnable();
    HX_MODULE_API bool IsVoiceTalkEnable();
    HX_MODULE_API bool IsHoldEnable();
    HX_MODULE_API bool IsRingBackEnable();
    HX_MODULE_API bool IsScreenSaverEnable();
    HX_MODULE_API bool IsPlayVideoInTalk();

private:
    // A layout that was passed over, since a file is missing.
    struct tagAwaited
    {
        iterator layout;
        std::vector<chString> files;
        size_t nNext = 0; // the first one that is missing
    };
    void AppendLayout(const _nDeckLayoutNode& node);
    void ReadLateLayouts();
    iterator FindNextReady();
    iterator FindNextComplete();
    iterator RemovePassed(iterator layout);
    bool IsComplete(tagAwaited& awaited) const;
    bool TakeIfComplete(iterator layout);
    void BeginAwaited(iterator layout);
    void ReloadCurrent();
    bool IsTooQuick(iterator layout);
    void UnloadShown();
    void ChangeCurrent(iterator layout);
    void StartTimer(int duration, int shortest);

    iterator m_current;
    iterator m_drawn; // the one whose regions are loaded
    QElapsedTimer m_drawnSince;
    chThreadTimer m_timer;
    DisplayFrame m_frame;
    nDeckNameSet m_mediaNames; // of m_frame
    std::vector<tagAwaited> m_awaited;
    chTime m_lastPassed; // the latest end of the layouts that were removed since they were over
    bool m_bStoredShown = false;
    int m_bCreated = 0;
    int m_bShow = 0;
    unsigned int m_nChange = 0; // counts the changes of the layout, those under way included
};

HX_MODULE_API nDeckDisplay& GetNDeckDispaly();

// Start and end of the client.
void OnLaunchNDeck();
HX_MODULE_API void OnUnLaunchNDeck();

#pragma once
#include "signage/displayFrame.h"
#include "signage/nDeckLayout.h"
#include "signage/nDeckShow.h"
#include "support/container/chList.h"
#include "support/host/api.h"
#include "support/host/message.h"

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
    DisplayFrame& GetDisplayFrame() override { return m_frame; }

    void SetShowLayout(int show) { m_bShow = show; }
    int IsShowLayout() const override { return m_bShow; }

    // The switches, from the key file at each call.
    HX_MODULE_API bool IsNdeckEnable();
    HX_MODULE_API bool IsVoiceTalkEnable();
    HX_MODULE_API bool IsHoldEnable();
    HX_MODULE_API bool IsRingBackEnable();
    HX_MODULE_API bool IsScreenSaverEnable();
    HX_MODULE_API bool IsPlayVideoInTalk();

private:
    void AppendLayout(const _nDeckLayoutNode& node);
    iterator FindNextReady();
    void ReloadCurrent();
    void ChangeCurrent(iterator layout);
    void StartTimer(int duration, int shortest);

    iterator m_current;
    chThreadTimer m_timer;
    DisplayFrame m_frame;
    int m_bCreated = 0;
    int m_bShow = 0;
    unsigned int m_nChange = 0; // counts the changes of the layout, those under way included
};

HX_MODULE_API nDeckDisplay& GetNDeckDispaly();

// Start and end of the client.
void OnLaunchNDeck();
HX_MODULE_API void OnUnLaunchNDeck();

#pragma once
// The slide show of the pictures that "/phone/resource/screenview.xml" names. User-interface thread.
#include "media/DeviceAssistant.h"
#include "media/dlgDemo.h"
#include "media/photoAssistant.h"

class dlgImagePlay : public dlgDemo, public chMsgProcesser
{
    Q_OBJECT
public:
    enum : int { PLAY_MS = 3000, TIMER_OFF = -1 }; // of each picture

    dlgImagePlay();
    ~dlgImagePlay() override;
    // The one that lives; null when there is none.
    static dlgImagePlay* Instance() { return s_pInstance; }
    static void ForgetInstance() { s_pInstance = nullptr; }

    // Shows the first picture. False, and the user was told, when there is none.
    bool LoadImage();
    bool IsAutoPlaying() const { return m_nAutoTimer != TIMER_OFF; }
    int TryThreadMessage(msgObject& msg) override;

protected:
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void ResetAutoPlay();
    void SwitchAutoPlay();
    void StartAutoPlay();
    void StopAutoPlay();

    static dlgImagePlay* s_pInstance;
    DeviceAssistant m_devices;
    photoAssistant m_photos;
    int m_nAutoTimer = TIMER_OFF;
};

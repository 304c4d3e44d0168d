#pragma once
// The slide show of the pictures that "/phone/resource/screenview.xml" names. User-interface thread.
#include "media/dlgDemo.h"
#include "media/liveInstance.h"
#include "media/photoAssistant.h"
#include "media/playerStay.h"

class dlgImagePlay : public dlgDemo, public PlayerStay, public LiveInstance<dlgImagePlay>
{
    Q_OBJECT
public:
    enum : int { PLAY_MS = 3000, TIMER_OFF = -1 }; // of each picture

    dlgImagePlay();

    // Shows the first picture. False, and the user was told, when there is none.
    bool LoadImage();
    bool IsAutoPlaying() const { return m_nAutoTimer != TIMER_OFF; }

protected:
    void OnStorageGone() override;
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void ResetAutoPlay();
    void SwitchAutoPlay();
    void StartAutoPlay();
    void StopAutoPlay();

    photoAssistant m_photos;
    int m_nAutoTimer = TIMER_OFF;
};

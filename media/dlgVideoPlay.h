#pragma once
// The films that "/phone/resource/screenview.xml" names, over the whole screen. User-interface thread.
#include "media/DeviceAssistant.h"
#include "media/videoDialog.h"

class dlgVideoPlay : public VideoDialog, public chMsgProcesser
{
    Q_OBJECT
public:
    dlgVideoPlay();
    ~dlgVideoPlay() override;
    // The one that lives; null when there is none.
    static dlgVideoPlay* Instance() { return s_pInstance; }
    static void ForgetInstance() { s_pInstance = nullptr; }

    // Plays. False, and the user was told, when there is no film; false also when there is no player.
    bool LoadVideo();
    int TryThreadMessage(msgObject& msg) override;

protected:
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;

private:
    static dlgVideoPlay* s_pInstance;
    DeviceAssistant m_devices;
};

#pragma once
// One film over the whole screen. User-interface thread.
#include "media/DeviceAssistant.h"
#include "media/videoDialog.h"
#include <cstdint>

class dlgVideoPreview : public VideoDialog, public chMsgProcesser
{
    Q_OBJECT
public:
    dlgVideoPreview();
    ~dlgVideoPreview() override;
    // The one that lives; null when there is none.
    static dlgVideoPreview* Instance() { return s_pInstance; }

    // file: device path. False when there is no player.
    bool LoadVideoFile(const char* file);
    int TryThreadMessage(msgObject& msg) override;

protected:
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;

private:
    static dlgVideoPreview* s_pInstance;
    DeviceAssistant m_devices;
    int32_t m_bRemovable = 0; // the film lies on a disk that can be pulled
};

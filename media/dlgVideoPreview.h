#pragma once
// One film over the whole screen. User-interface thread.
#include "media/liveInstance.h"
#include "media/playerStay.h"
#include "media/videoDialog.h"
#include <cstdint>

class dlgVideoPreview : public VideoDialog, public PlayerStay, public LiveInstance<dlgVideoPreview>
{
    Q_OBJECT
public:
    dlgVideoPreview();

    // file: device path. False when there is no player.
    bool LoadVideoFile(const char* file);

protected:
    void OnStorageGone() override;
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;

private:
    int32_t m_bRemovable = 0; // the film lies on a disk that can be pulled
};

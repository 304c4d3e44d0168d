#pragma once
// The films that "/phone/resource/screenview.xml" names, over the whole screen. User-interface thread.
#include "media/liveInstance.h"
#include "media/playerStay.h"
#include "media/videoDialog.h"

class dlgVideoPlay : public VideoDialog, public PlayerStay, public LiveInstance<dlgVideoPlay>
{
    Q_OBJECT
public:
    dlgVideoPlay();

    // Plays. False, and the user was told, when there is no film; false also when there is no player.
    bool LoadVideo();

protected:
    void OnStorageGone() override;
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;
};

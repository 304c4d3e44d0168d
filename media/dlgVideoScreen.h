#pragma once
// The screen saver of films: those of "/phone/resource/screenview.xml". User-interface thread.
#include "media/liveInstance.h"
#include "media/videoDialog.h"

class dlgVideoScreen : public VideoDialog, public LiveInstance<dlgVideoScreen>
{
    Q_OBJECT
public:
    dlgVideoScreen();

    // Plays. False when there is no film, which the user is told with a message of non-zero, or no player.
    bool LoadVideo(int bMessage);

protected:
    void OnKeyDown(int key) override;
    void mousePressEvent(QMouseEvent* event) override;
};

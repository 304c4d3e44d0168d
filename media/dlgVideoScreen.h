#pragma once
// The screen saver of films: those of "/phone/resource/screenview.xml". User-interface thread.
#include "media/videoDialog.h"

class dlgVideoScreen : public VideoDialog
{
    Q_OBJECT
public:
    dlgVideoScreen();
    ~dlgVideoScreen() override;
    // The one that lives; null when there is none.
    static dlgVideoScreen* Instance() { return s_pInstance; }

    // Plays. False when there is no film, which the user is told with a message of non-zero, or no player.
    bool LoadVideo(int bMessage);

protected:
    void OnKeyDown(int key) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    static dlgVideoScreen* s_pInstance;
};

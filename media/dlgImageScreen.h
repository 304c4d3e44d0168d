#pragma once
// The screen saver of pictures: those of "/phone/resource/screenview.xml". User-interface thread.
#include "media/dlgDemo.h"
#include "media/liveInstance.h"
#include "media/photoAssistant.h"

class dlgImageScreen : public dlgDemo, public LiveInstance<dlgImageScreen>
{
    Q_OBJECT
public:
    enum : int { TIMER_OFF = -1 };

    dlgImageScreen();

    // Shows the first picture. False when there is none, which the user is told with a message of non-zero,
    // or none that can be shown. When that turns out later, the saver ends.
    bool LoadImage(int bMessage);

protected:
    void OnKeyDown(int key) override;
    void mousePressEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    photoAssistant m_photos;
    int m_nAutoTimer = TIMER_OFF;
};

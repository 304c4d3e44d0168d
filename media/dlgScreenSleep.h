#pragma once
// The black screen of a phone that sleeps. User-interface thread.
#include "media/fullScreenDialog.h"
#include "media/liveInstance.h"

class dlgScreenSleep : public FullScreenDialog, public LiveInstance<dlgScreenSleep>
{
    Q_OBJECT
public:
    dlgScreenSleep();

protected:
    void OnKeyDown(int key) override;
    void mousePressEvent(QMouseEvent* event) override;
};

#pragma once
// The black screen of a phone that sleeps. User-interface thread.
#include "media/fullScreenDialog.h"

class dlgScreenSleep : public FullScreenDialog
{
    Q_OBJECT
public:
    dlgScreenSleep();
    ~dlgScreenSleep() override;
    // The one that lives; null when there is none.
    static dlgScreenSleep* Instance() { return s_pInstance; }

protected:
    void OnKeyDown(int key) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    static dlgScreenSleep* s_pInstance;
};

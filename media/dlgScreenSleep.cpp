#include "media/dlgScreenSleep.h"
#include "support/host/trace.h"
#include <QMouseEvent>

dlgScreenSleep::dlgScreenSleep()
{
    setObjectName("dlgScreenSleep");
    setModal(true); // it lies upon a box, and does not answer it
}

void dlgScreenSleep::OnKeyDown(int key)
{
    if (key != Qt::Key_F12)
        close();
}

// The trace has always named the other window.
void dlgScreenSleep::mousePressEvent(QMouseEvent* event)
{
    nuxTrace(TRACE_DETAIL, "dlgVideoScreen::mousePressEvent");
    if (event->type() == QEvent::MouseButtonRelease)
        close();
}

#include "media/dlgScreenSleep.h"
#include "support/host/trace.h"
#include <QMouseEvent>

dlgScreenSleep::dlgScreenSleep()
{
    setObjectName("dlgScreenSleep");
    QPalette black = palette();
    black.setColor(QPalette::Window, QColor(0, 0, 0));
    setPalette(black);
    setAutoFillBackground(true);
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

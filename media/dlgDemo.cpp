#include "media/dlgDemo.h"

void dlgDemo::focusOutEvent(QFocusEvent* event)
{
    FullScreenDialog::focusOutEvent(event);
    close();
}

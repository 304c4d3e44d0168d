#include "frame/flushScreen.h"
#include <QCoreApplication>

void flushScreen()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
}

#include "tests/kit/phoneTest.h"
#include "tests/kit/windowTracker.h"
#include <QApplication>
#include <unistd.h>

kit::GuiHooks& kit::guiHooks()
{
    static GuiHooks hooks;
    return hooks;
}

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    setenv("QT_SCALE_FACTOR", "1", 1);
    setenv("XDG_RUNTIME_DIR", "/tmp", 0);
    if (kit::guiHooks().beforeApplication)
        kit::guiHooks().beforeApplication();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    application.installEventFilter(&kit::WindowTracker::instance());
    if (kit::guiHooks().afterApplication)
        kit::guiHooks().afterApplication();
    const int result = RUN_ALL_TESTS();
    // Cached pages and singletons of the phone live until the process ends, as on the phone.
    fflush(nullptr);
    _exit(result);
}

// tinyHost ROOT: shows one page of the module and names it, then the installed device image.
#include "frame/moduleEntries.h"
#include "host/look/look.h"
#include "support/file/deviceRoot.h"
#include <QApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    deviceSetRoot(argv[1]);
    hostPrepareFonts();
    QApplication application(argc, argv);
    hostApplyLook(application);
    hostSetModule(settingEntries());
    settingOpenPage("WAN", nullptr);
    QApplication::processEvents();
    const QWidget* page = QApplication::activeWindow();
    printf("%s\n%s\n", page ? page->metaObject()->className() : "nothing", ROOTFS);
    fflush(stdout);
    // Pages live as long as the process.
    _Exit(0);
}

#include "tests/frame/failingMenu.h"
#include "support/host/iconview.h"

namespace {
bool s_bFails = false;
}

FailingMenu::FailingMenu()
{
    s_bFails = true;
}

FailingMenu::~FailingMenu()
{
    s_bFails = false;
}

// qIconView::LoadMenuFileEx as the linker wraps it.
extern "C" int __real__ZN9qIconView14LoadMenuFileExEPKc(qIconView* view, const char* name);
extern "C" int __wrap__ZN9qIconView14LoadMenuFileExEPKc(qIconView* view, const char* name)
{
    return s_bFails ? 0 : __real__ZN9qIconView14LoadMenuFileExEPKc(view, name);
}

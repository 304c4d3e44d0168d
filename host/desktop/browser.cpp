#include "support/host/browser.h"
#include "host/desktop/dlgBrowser.h"

namespace {

dlgBrowser& theBrowser()
{
    static dlgBrowser* browser = new dlgBrowser;
    return *browser;
}

} // namespace

void browserLoad()
{
    theBrowser();
}

void browserShow(const char* url)
{
    theBrowser().openPage(QString::fromUtf8(url));
}

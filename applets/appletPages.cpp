#include "applets/appletPages.h"
#include "applets/dlgStock.h"
#include "frame/pageClass.h"

HX_PAGE(dlgStock);

void appletPages() {}

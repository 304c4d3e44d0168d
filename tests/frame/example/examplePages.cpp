#include "tests/frame/example/examplePages.h"
#include "frame/pageClass.h"
#include "tests/frame/example/dlgProxy.h"

HX_PAGE(dlgProxy);

void examplePages() {}

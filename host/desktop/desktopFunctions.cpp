#include "support/host/desktop.h"

void desktop_SetWallPaper(const char* path)
{
    frmDesktop::GetInstance()->SetWallPaper(path);
}

void desktop_ReLoadPicXmlFile()
{
    frmDesktop::GetInstance()->ReloadQuickKeys();
}

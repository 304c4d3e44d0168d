#include "media/mediaPages.h"
#include "frame/pageClass.h"
#include "frame/roomHooks.h"
#include "media/dlgMediaManager.h"

namespace {

// page: what PopupDialog made of the class.
void loadMediaManager(QDialog* page, const char* title, const char* icon, MEDIA_FAMILY family,
                      const char* section)
{
    dlgMediaManager* manager = static_cast<dlgMediaManager*>(page);
    manager->SetTitle(title, icon);
    if (family == MEDIA_FAMILY_IMAGE)
        manager->LoadImageMedia(section);
    else if (family == MEDIA_FAMILY_VIDEO)
        manager->LoadVideoMedia(section);
    else
        manager->LoadSoundMedia(section);
}

} // namespace

HX_PAGE(dlgMediaManager);
HX_ROOM_HOOK(loadMediaManager, loadMediaManager);

void mediaPages() {}

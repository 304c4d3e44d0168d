// Builds windows ahead of time while the loading screen is up.
#include "frame/flushScreen.h"
#include "frame/menuOpening.h"
#include "frame/modSetting.h"
#include "frame/popupDialog.h"
#include "frame/roomHooks.h"
#include "support/host/browser.h"
#include "support/host/desktop.h"
#include "support/host/dialogs.h"
#include "support/host/language.h"
#include "support/host/trace.h"

namespace {

void buildLocalPhonebook()
{
    PopupDialog<dlgPhoneBook>(nullptr, 1, 0, 0);
    PopupDialog<dlgContactEditor>(nullptr, 1, 0, 0);
}

void buildRemotePhonebook()
{
    PopupDialog<dlgRemotePhoneBook>(nullptr, 1, 0, 0);
}

void buildCallHistroy()
{
    PopupDialog<dlgCallHistroy>(nullptr, 1, 0, 0);
}

void buildSetting()
{
    PopupXMLIconView("setting.xml", 0);
}

void buildCallFeature()
{
    PopupXMLIconView("callfeature.xml", 0);
    if (roomHooks().speedDialPage)
        roomHooks().speedDialPage();
}

void buildApplication()
{
    PopupXMLIconView("application.xml", 0);
}

void buildMedia()
{
    PopupXMLIconView("media.xml", 0);
}

struct tagBootStep
{
    const char* szText;
    void (*work)();
};

const tagBootStep kSteps[] = {
    {HX_TR("Loading Local Phonebook Module"), buildLocalPhonebook},
    {HX_TR("Loading Remote Phonebook Module"), buildRemotePhonebook},
    {HX_TR("Loading CallHistroy Module"), buildCallHistroy},
    {HX_TR("Loading Setting Module"), buildSetting},
    {HX_TR("Loading Call Feature Module"), buildCallFeature},
    {HX_TR("Loading Application Module"), buildApplication},
    {HX_TR("Loading Media Module"), buildMedia},
    {HX_TR("Loading Browser Module"), browserLoad},
};
const int kStepCount = sizeof kSteps / sizeof kSteps[0];

void tellStep(const char* text)
{
    if (frmLoading* loading = frmDesktop::GetInstance()->m_pLoading)
        loading->setText(qTranslate(text));
    flushScreen();
}

int cacheAllWindows()
{
    int index = 0;
    while (settingCacheWindows(index))
        ++index;
    return 1;
}

} // namespace

int settingCacheWindows(int index)
{
    chTraceStack trace("settingCacheWindows(%d)", index);
    if (index < 0)
        return cacheAllWindows();
    if (index >= kStepCount)
        return 0;
    tellStep(kSteps[index].szText);
    kSteps[index].work();
    return 1;
}

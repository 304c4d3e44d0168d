#include "frame/pageTable.h"
#include "frame/configFiles.h"
#include "frame/menuOpening.h"
#include "frame/modSetting.h"
#include "frame/noteBox.h"
#include "frame/pageClass.h"
#include "frame/pageLists.h"
#include "frame/roomHooks.h"
#include "support/file/path.h"
#include "support/host/dialogs.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"
#include <cstring>

HX_PAGE(dlgPhoneBook);
HX_PAGE(dlgContactEditor);
HX_PAGE(dlgCallHistroy);
HX_PAGE(dlgRemotePhoneBook);
HX_PAGE(dlgLDAP);

namespace {

enum { NDECK_WINDOW_TYPE = 2, STOCK_NOTE_MS = 3000 };

int openPage(const tagPageRow& row, const tagPageCall& call)
{
    PageClass* page = PageClass::Find(row.szPageClass);
    if (!page)
        return 0;
    if (row.eInfo == PASSES_INFO && call.pInfo)
        page->OpenWithInfo(*call.pInfo);
    else
        page->Open(1, 1);
    return 1;
}

int openDirectory(const tagPageRow& row, const tagPageCall& call)
{
    if ((IsExsitRemoteDirectory() || IsExsitLDAP()) && settingOpenFrame("Directory"))
        return 1;
    return openPage(row, call);
}

struct tagMediaView
{
    const char* szPage;
    const char* szTitle;
    const char* szIcon;
    MEDIA_FAMILY eFamily;
    const char* szSection;
};

const tagMediaView kMediaViews[] = {
    {"Wallpaper Manager", HX_TR("Wallpaper Manager"), HX_THEME("menu/menu_screensaver.png"),
     MEDIA_FAMILY_IMAGE, "wallpaper"},
    {"Contact Picture Manage", HX_TR("Contact Picture Manage"), HX_THEME("menu/menu_contactimage.png"),
     MEDIA_FAMILY_IMAGE, "contact-image"},
    {"Photo Manager", HX_TR("Photo Manager"), HX_THEME("menu/menu_photomanage.png"), MEDIA_FAMILY_IMAGE,
     "ephoto"},
    {"Video Manager", HX_TR("Video Manager"), HX_THEME("menu/menu_videomanage.png"), MEDIA_FAMILY_VIDEO,
     "ad"},
    {"Sound Manager", HX_TR("Ringtone Manager"), HX_THEME("menu/menu_soundset.png"), MEDIA_FAMILY_SOUND,
     "sound"},
};

int openMediaManager(const tagPageRow& row, const tagPageCall&)
{
    PageClass* page = PageClass::Find(row.szPageClass);
    if (!page || !roomHooks().loadMediaManager)
        return 0;
    for (const tagMediaView& view : kMediaViews) {
        if (strcmp(view.szPage, row.szName) != 0)
            continue;
        if (QDialog* dialog = page->Open(1, 1))
            roomHooks().loadMediaManager(dialog, view.szTitle, view.szIcon, view.eFamily, view.szSection);
    }
    return 1;
}

// Overwrites the account's digit in the caller's own text. What other strings share stays as it is, and a
// name that ends before the digit stays whole.
void overwriteAccountDigit(const chString& name, int index)
{
    if (name.GetLength() <= index)
        return;
    chString& text = const_cast<chString&>(name);
    if (text.PrepareTextBuffer(-1))
        text[index] = '0';
}

// The number of the account is always the code of the digit: accounts are opened by index from their list.
int openAccount(const tagPageRow& row, const tagPageCall& call)
{
    if (!roomHooks().makeAccountPage)
        return 0;
    overwriteAccountDigit(call.strName, int(strlen(row.szName)));
    PopupAccountDialog('0', 1);
    return 1;
}

int openDoorPhone(const tagPageRow& row, const tagPageCall& call)
{
    if (!roomHooks().makeDoorPhonePage)
        return 0;
    int index = 0;
    fmtString("%c", call.strName.GetText()[strlen(row.szName)]) >> index;
    PopupDoorPhoneDialog(index, 1);
    return 1;
}

int openMessage(const tagPageRow& row, const tagPageCall& call)
{
    if (nuxGetRegistryInt(SYSTEM_INI, "Features", "bAutoCallOutMessage", 0) != 1)
        return openPage(row, call);
    if (!roomHooks().voiceMessageDialOut)
        return 0;
    roomHooks().voiceMessageDialOut();
    return 1;
}

int play(int (*start)(), QWidget* parent)
{
    if (!start)
        return 0;
    if (!start())
        noteBox(HX_TR("auto upgrading!"), parent);
    return 1;
}

int playPhotos(const tagPageRow&, const tagPageCall& call)
{
    return play(roomHooks().playImageFile, call.pParent);
}

int playVideos(const tagPageRow&, const tagPageCall& call)
{
    return play(roomHooks().playVideoFile, call.pParent);
}

int resetToFactory(const tagPageRow&, const tagPageCall& call)
{
    if (questionBox(HX_TR("Reset to factory?"), call.pParent) && sysCommand("/phone/scripts/factory.sh") != 0)
        noteBox(HX_TR("The phone could not be reset!"), call.pParent);
    return 1;
}

int rebootDevice(const tagPageRow&, const tagPageCall& call)
{
    if (questionBox(HX_TR("Reboot device?"), call.pParent))
        sysreboot(1);
    return 1;
}

bool stockDataLoads()
{
    xmlFile file(nullptr);
    return pathFileExist(STOCK_DATA_XML) && file.LoadFromFile(STOCK_DATA_XML, STOCK_DATA_LIMIT);
}

int openStock(const tagPageRow& row, const tagPageCall& call)
{
    if (!PageClass::Find(row.szPageClass))
        return 0;
    if (stockDataLoads())
        return openPage(row, call);
    noteBox(HX_TR("Fail to load xml file [/rundata/data/stockData.xml]"), call.pParent, STOCK_NOTE_MS);
    return 1;
}

// The one page that is made anew each time.
int openCalibration(const tagPageRow& row, const tagPageCall& call)
{
    PageClass* page = PageClass::Find(row.szPageClass);
    if (!page)
        return 0;
    if (questionBox(HX_TR("Touch screen calibration will begin."), call.pParent))
        page->Open(0, 1);
    return 1;
}

// With left-bar information the schedule is fetched at once, and the update timer begins anew.
int openNdeck(const tagPageRow&, const tagPageCall& call)
{
    const tagRoomHooks& hooks = roomHooks();
    if (!hooks.isNdeckEnable || !hooks.ndeckWindowDisplay)
        return 0;
    if (!hooks.isNdeckEnable())
        return 1;
    if (call.pInfo && hooks.ndeckSetAutoUpdateEnable && hooks.ndeckDownloadDisplayFrame) {
        hooks.ndeckSetAutoUpdateEnable(0);
        hooks.ndeckDownloadDisplayFrame();
        hooks.ndeckSetAutoUpdateEnable(1);
    }
    hooks.ndeckWindowDisplay(1, NDECK_WINDOW_TYPE, nullptr, QRect(QPoint(0, 0), QPoint(799, 479)));
    return 1;
}

int openUnknown(const tagPageRow&, const tagPageCall& call)
{
    pageNoteUnknown(call.pParent);
    return 1;
}

// clang-format off
const tagPageRow kRows[] = {
    {"Directory",              MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openDirectory,    "dlgPhoneBook"},
    {"Call Histroy",           MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openPage,         "dlgCallHistroy"},
    {"Wallpaper Manager",      MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openMediaManager, "dlgMediaManager"},
    {"Contact Picture Manage", MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openMediaManager, "dlgMediaManager"},
    {"Photo Manager",          MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openMediaManager, "dlgMediaManager"},
    {"Video Manager",          MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openMediaManager, "dlgMediaManager"},
    {"Sound Manager",          MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openMediaManager, "dlgMediaManager"},
    {"Personalize",            MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgPhone_Setting"},
    {"Screen Saver",           MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgScreenSaver"},
    {"Sound Set",              MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgSound"},
    {"Security",               MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgSecurity"},
    // Before the prefix that it begins with.
    {"Account Setting",        MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openPage,         "dlgAccount_Setting_Btn"},
    {"Account",                MATCH_PREFIX, BOTH_OVERLOADS, DROPS_INFO,  openAccount,      nullptr},
    {"WAN",                    MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgWan"},
    {"Forward",                MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgForward_Setting"},
    {"Auto Answer",            MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgAuto_Answer"},
    {"Voice Mail",             MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgVoice_Mail_Setting"},
    {"DSS Key",                MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openPage,         "dlgDssKeyList"},
    {"Key As Send",            MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgKey_As_Send"},
    {"Status",                 MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openPage,         "dlgStatus"},
    {"Date & Time",            MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgDateAndTime"},
    {"Call Waiting",           MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgCall_Waiting"},
    {"Message",                MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openMessage,      "dlgVoice_Mail_Setting"},
    {"Photo Play",             MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  playPhotos,       nullptr},
    {"Video Play",             MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  playVideos,       nullptr},
    {"Factory",                MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  resetToFactory,   nullptr},
    {"Reboot",                 MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  rebootDevice,     nullptr},
    {"Video Set",              MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgVideoSet"},
    {"Hotline",                MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgHotline"},
    {"Picture-dial Setting",   MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgPictureDialSetting"},
    {"TV Output",              MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgTvOutPut"},
    {"Anonymous Call",         MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgAnonymousCallDialog"},
    {"Door Phone",             MATCH_PREFIX, BOTH_OVERLOADS, DROPS_INFO,  openDoorPhone,    nullptr},
    {"Weather",                MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openPage,         "dlgWeather"},
    {"Stock",                  MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openStock,        "dlgStock"},
    {"LCD Adjusting",          MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openCalibration,  "dlgCalibration"},
    {"Ndeck",                  MATCH_WHOLE,  BOTH_OVERLOADS, DROPS_INFO,  openNdeck,        nullptr},
    {"Version Detail",         MATCH_WHOLE,  PLAIN_OVERLOAD, DROPS_INFO,  openPage,         "dlgVersion_Detail"},
    {"Auto Provision",         MATCH_WHOLE,  BOTH_OVERLOADS, PASSES_INFO, openPage,         "dlgAutoServer"},
    {"",                       MATCH_ANY,    BOTH_OVERLOADS, DROPS_INFO,  openUnknown,      nullptr},
};
// clang-format on
static_assert(sizeof kRows / sizeof kRows[0] == PAGE_ROW_COUNT, "the table is complete");

bool rowMatches(const tagPageRow& row, const tagPageCall& call)
{
    if (row.eOverloads == PLAIN_OVERLOAD && call.pInfo)
        return false;
    switch (row.eMatch) {
    case MATCH_WHOLE:
        return call.strName == row.szName;
    case MATCH_PREFIX:
        return strncmp(call.strName.GetText(), row.szName, strlen(row.szName)) == 0;
    default:
        return true;
    }
}

} // namespace

const tagPageRow* pageTable()
{
    return kRows;
}

void pageOpenByName(const tagPageCall& call)
{
    const tagPageRow* row = kRows;
    while (!rowMatches(*row, call))
        ++row;
    if (!row->open(*row, call))
        openUnknown(*row, call);
}

void pageNoteUnknown(QWidget* parent)
{
    noteBox(CheckKovarVersion() ? HX_TR("This feature is under construction.") : HX_TR("Unknow dialog type"),
            parent);
}

int CheckKovarVersion()
{
    enum { PHRASES = 3 };
    const chString version =
        NUX_SubClass::nuxGetRegistryString(VERSION_INI, "Version", "strRomVersion", "0.0.0.0");
    const char* cursor = version.GetText();
    chString signature;
    int index = 0;
    while (index < PHRASES && nuxPeekPhraseByCharToken(cursor, signature, '.') == 0)
        ++index;
    nuxTrace(TRACE_DETAIL, "strSignature = %s nIndex = %d", signature.GetText(), index);
    return index == PHRASES && signature == "42";
}

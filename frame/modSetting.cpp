#include "frame/modSetting.h"
#include "frame/menuOpening.h"
#include "frame/pageTable.h"
#include "frame/popupDialog.h"
#include "frame/roomHooks.h"
#include "support/host/dialogs.h"
#include "support/host/iconview.h"
#include "support/host/screen.h"
#include "support/host/trace.h"
#include <QString>

void settingOpenPage(const chString& name, QWidget* parent)
{
    chTraceStack trace("settingOpenPage(%s)", name.GetText());
    pageOpenByName({name, nullptr, parent});
}

void settingOpenPage(const chString& name, tagLeftBarInfo info, QWidget* parent)
{
    chTraceStack trace("settingOpenPage(%s)", name.GetText());
    pageOpenByName({name, &info, parent});
}

void settingOpenPage(int type, chString a, chString b, QWidget*)
{
    switch (type) {
    case DIRECTORY_LOCAL:
        PopupDialog<dlgPhoneBook>(nullptr, 1, 1, 0);
        break;
    case DIRECTORY_REMOTE:
        if (dlgRemotePhoneBook* book = PopupDialog<dlgRemotePhoneBook>(nullptr, 1, 1, 0))
            book->ShowUp(b, a);
        break;
    case DIRECTORY_LDAP:
        if (dlgLDAP* search = PopupDialog<dlgLDAP>(nullptr, 1, 0, 0)) {
            search->initData(a);
            screenBringUp(search);
        }
        break;
    default:
        break;
    }
}

void settingDialNum(qDialNumberItem* item, QWidget* parent)
{
    if (!roomHooks().makeDialNumberBox)
        return;
    if (QDialog* box = roomHooks().makeDialNumberBox(item, parent)) {
        box->setAttribute(Qt::WA_DeleteOnClose);
        screenBringUp(box);
    }
}

void settingIpCamera(IPCameraIconViewItem* item, QWidget* parent)
{
    if (!roomHooks().ipCameraPageOfItem)
        return;
    if (QDialog* page = roomHooks().ipCameraPageOfItem(parent, item))
        screenBringUp(page);
}

void settingIpCamera_DoorPhone(const QString& kind, const QString& title, QWidget*)
{
    if (!kind.startsWith("SettingIPCamera") || !roomHooks().ipCameraPageOfTitle)
        return;
    if (QDialog* page = roomHooks().ipCameraPageOfTitle(title))
        screenBringUp(page);
}

int settingPromptUserLevel(const QString& level, QWidget* parent)
{
    if (level != QLatin1String("admin"))
        return 1;
    const auto ask = roomHooks().askAdminPassword;
    if (!ask)
        pageNoteUnknown(parent);
    const bool given = ask && ask(parent);
    nuxTrace(TRACE_DETAIL, given ? "Complete input the password." : "Cancel input password!");
    return given;
}

void settingOpenXml(const chString& file)
{
    chTraceStack trace("settingOpenXml(%s)", file.GetText());
    PopupXMLIconView(file, 1);
}

int settingOpenFrame(const chString& name)
{
    chTraceStack trace("settingOpenFrame = %s", name.GetText());
    return PopupIconViewEx(name);
}

void RefreshOpenXml(const chString& file)
{
    chTraceStack trace("RefreshOpenXml(%s)", file.GetText());
    RefreshXMLIconView(file);
}

qIconView* getIconView()
{
    return g_pDlgIconviewForm ? g_pDlgIconviewForm->GetIconView() : nullptr;
}

void onRefreshIconView()
{
    if (qIconView* view = getIconView())
        view->refreshIconView();
}

void settingRequestWeather(chReferObject view, const chString& city)
{
    if (roomHooks().requestWeather)
        roomHooks().requestWeather(view, city);
}

chString settingWeatherCity()
{
    return roomHooks().weatherCity ? roomHooks().weatherCity() : chString();
}

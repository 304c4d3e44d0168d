#include "host/menu/iconAction.h"
#include "support/host/dialitem.h"
#include "support/host/managers.h"
#include "support/host/module.h"
#include "support/host/phone.h"
#include "support/host/screen.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <QDialog>

namespace {

void openPage(const IconMenuItem& item, QWidget* window)
{
    const tagModuleEntries& module = hostModule();
    if (NUX_ASSERT(module.openPageWithInfo != nullptr, "module.openPageWithInfo != NULL"))
        module.openPageWithInfo(fromQString(item.strTitle), {item.strIcon, item.strTitle}, window);
}

void openMenu(const IconMenuItem& item)
{
    const tagModuleEntries& module = hostModule();
    if (NUX_ASSERT(module.openMenu != nullptr, "module.openMenu != NULL"))
        module.openMenu(fromQString(item.strTarget));
}

void openDirectory(const IconMenuItem& item, QWidget* window)
{
    const tagModuleEntries& module = hostModule();
    if (!NUX_ASSERT(module.openDirectory != nullptr, "module.openDirectory != NULL"))
        return;
    const chString title = item.nDetail == 0 ? chString() : fromQString(item.strTitle);
    module.openDirectory(item.nDetail, title, fromQString(item.strTarget), window);
}

// Made with its first opening, and kept; the icon's record lives as long as the page.
void openDialPlan(const IconMenuItem& item)
{
    static tagLeftBarInfo info;
    static QDialog* page = nullptr;
    const tagModuleEntries& module = hostModule();
    if (!NUX_ASSERT(module.makeDialPlan != nullptr, "module.makeDialPlan != NULL"))
        return;
    info = {item.strIcon, item.strTitle};
    if (!page)
        page = module.makeDialPlan(&info);
    screenBringUp(page);
}

// Its page has the number of the door phone behind the name without a blank: "Door Phone1".
void editDoorPhone(const IconMenuItem& item, QWidget* window)
{
    static const QString name = QStringLiteral("Door Phone");
    IconMenuItem page = item;
    const tagModuleEntries& module = hostModule();
    if (page.strTitle.startsWith(name + ' '))
        page.strTitle.remove(name.size(), 1);
    if (NUX_ASSERT(module.openPageWithInfo != nullptr, "module.openPageWithInfo != NULL"))
        module.openPageWithInfo(fromQString(page.strTitle), {item.strIcon, item.strTitle}, window);
}

void editCamera(const IconMenuItem& item, QWidget* window)
{
    const tagModuleEntries& module = hostModule();
    if (!NUX_ASSERT(module.editCamera != nullptr, "module.editCamera != NULL"))
        return;
    for (IPCameraIconViewItem* camera : GetIPCameraIconViewManager()->GetItems()) {
        if (toQString(camera->m_strTitle).trimmed() == item.strTitle) {
            module.editCamera(camera, window);
            return;
        }
    }
}

void editDevice(const IconMenuItem& item, QWidget* window)
{
    if (item.eAction == IconMenuItem::CallCamera)
        editCamera(item, window);
    else
        editDoorPhone(item, window);
}

// One that nobody has set up yet is set up first.
void callDevice(const IconMenuItem& item, QWidget* window)
{
    const int account = item.nDetail < PHONE_ACCOUNT_COUNT ? qMax(item.nDetail, -1) : -1;
    if (item.strTarget.isEmpty())
        editDevice(item, window);
    else
        phone_CallNumber(item.strTarget.toUtf8().constData(), account, 0);
}

void setNumber(qDialNumberItem* number, QWidget* window)
{
    const tagModuleEntries& module = hostModule();
    if (NUX_ASSERT(module.setDialNumber != nullptr, "module.setDialNumber != NULL"))
        module.setDialNumber(number, window);
}

// Lives as long as the window that the icon is in: the box keeps hold of it.
qDialNumberItem* numberOf(const IconMenuItem& item, QWidget* window)
{
    const QString name = QStringLiteral("dial ") + item.strTarget;
    if (auto* known = window->findChild<qDialNumberItem*>(name, Qt::FindDirectChildrenOnly))
        return known;
    auto* number = new qDialNumberItem(fromQString(item.strTarget), window);
    number->setObjectName(name);
    return number;
}

void dial(const IconMenuItem& item, QWidget* window)
{
    qDialNumberItem* number = numberOf(item, window);
    if (number->PhoneNumber().IsEmpty())
        setNumber(number, window);
    else
        number->Call();
}

// A module that cannot ask lets nobody in.
bool isAllowed(const IconMenuItem& item, QWidget* window)
{
    if (item.strLevel.isEmpty())
        return true;
    const tagModuleEntries& module = hostModule();
    return NUX_ASSERT(module.promptUserLevel != nullptr, "module.promptUserLevel != NULL") &&
           module.promptUserLevel(item.strLevel, window) != 0;
}

} // namespace

bool canHoldIconMenuItem(const IconMenuItem& item)
{
    return item.eAction == IconMenuItem::DialItem || item.eAction == IconMenuItem::CallDoorPhone ||
           item.eAction == IconMenuItem::CallCamera;
}

bool holdIconMenuItem(const IconMenuItem& item, QWidget* window)
{
    if (!canHoldIconMenuItem(item))
        return false;
    if (!isAllowed(item, window))
        return true;
    if (item.eAction == IconMenuItem::DialItem)
        setNumber(numberOf(item, window), window);
    else
        editDevice(item, window);
    return true;
}

void openIconMenuItem(const IconMenuItem& item, QWidget* window)
{
    if (!isAllowed(item, window))
        return;
    switch (item.eAction) {
    case IconMenuItem::OpenPage:
        openPage(item, window);
        break;
    case IconMenuItem::OpenMenu:
        openMenu(item);
        break;
    case IconMenuItem::OpenDirectory:
        openDirectory(item, window);
        break;
    case IconMenuItem::OpenDialPlan:
        openDialPlan(item);
        break;
    case IconMenuItem::OpenSpeedDials:
        if (NUX_ASSERT(hostModule().openSpeedDials != nullptr, "module.openSpeedDials != NULL"))
            hostModule().openSpeedDials(0);
        break;
    case IconMenuItem::CallDoorPhone:
    case IconMenuItem::CallCamera:
        callDevice(item, window);
        break;
    case IconMenuItem::DialItem:
        dial(item, window);
        break;
    }
}

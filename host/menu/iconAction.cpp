#include "host/menu/iconAction.h"
#include "support/host/box.h"
#include "support/host/dialitem.h"
#include "support/host/language.h"
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

void call(const IconMenuItem& item, QWidget* window)
{
    const int account = item.nDetail < PHONE_ACCOUNT_COUNT ? qMax(item.nDetail, -1) : -1;
    if (item.strTarget.isEmpty())
        xMessageBox(Translate("Note"), Translate("The phone number is empty!"), BOX_NOTE, window, -1);
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

bool holdIconMenuItem(const IconMenuItem& item, QWidget* window)
{
    if (item.eAction != IconMenuItem::DialItem)
        return false;
    if (isAllowed(item, window))
        setNumber(numberOf(item, window), window);
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
    case IconMenuItem::CallNumber:
        call(item, window);
        break;
    case IconMenuItem::DialItem:
        dial(item, window);
        break;
    }
}

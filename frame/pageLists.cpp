#include "frame/pageLists.h"
#include "frame/namedList.h"
#include "frame/roomHooks.h"
#include "support/host/screen.h"
#include <QDialog>

namespace {

QDialog* popupIndexed(chNamedList<QDialog>& list, const chString& key, QDialog* (*make)(int), int index,
                      int bShow)
{
    QDialog* dialog = namedFind(list, key);
    if (!dialog) {
        if (!make)
            return nullptr;
        dialog = make(index);
        if (!dialog)
            return nullptr;
        list.append(tagNamed<QDialog>{key, dialog});
    }
    if (bShow)
        screenBringUp(dialog);
    return dialog;
}

} // namespace

QDialog* PopupAccountDialog(int index, int bShow)
{
    static chNamedList<QDialog> list;
    return popupIndexed(list, fmtString("Account%d", index), roomHooks().makeAccountPage, index, bShow);
}

QDialog* PopupDoorPhoneDialog(int index, int bShow)
{
    static chNamedList<QDialog> list;
    return popupIndexed(list, fmtString("DoorPhone%d", index), roomHooks().makeDoorPhonePage, index, bShow);
}

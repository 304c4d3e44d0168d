#pragma once
// The one cached instance of each page class.
#include "support/host/api.h"
#include "support/host/leftbar.h"
#include "support/host/screen.h"
#include <QDialog>
#include <new>

class dlgWeather;
class dlgStock;

// Shows the "Loading..." box until the page that is being built takes over.
void ShowLoadingTipBox();

// The view that a page class is tied to; null for all but these two.
template <class T>
inline constexpr const char* pageViewName = nullptr;
template <>
inline constexpr const char* pageViewName<dlgWeather> = "strWeatherUI";
template <>
inline constexpr const char* pageViewName<dlgStock> = "strStockUI";

template <class T>
T* pageMake(tagLeftBarInfo* info)
{
    if constexpr (pageViewName<T> != nullptr)
        return new (std::nothrow) T(nullptr, info, pageViewName<T>);
    else
        return new (std::nothrow) T(nullptr, info);
}

// Opens page class T and returns the page. info: kept by pointer, see tagLeftBarInfo; null for none.
// bCache 0: a page of its own, which ends when it is closed. bShow 0: the page is built, not shown, and
// its info stays. bTip: a page that has to be built first is announced by the "Loading..." box.
// User-interface thread. A cached page lives until the process ends.
template <class T>
HX_MODULE_API T* PopupDialog(tagLeftBarInfo* info, int bCache, int bShow, int bTip)
{
    static T* pCacheDialog = nullptr;
    T* dialog = nullptr;
    if (!bCache) {
        dialog = pageMake<T>(info);
        if (dialog)
            dialog->setAttribute(Qt::WA_DeleteOnClose);
    } else {
        if (!pCacheDialog) {
            if (bShow && bTip)
                ShowLoadingTipBox();
            pCacheDialog = pageMake<T>(info);
        }
        dialog = pCacheDialog;
    }
    if (!bShow || !dialog)
        return dialog;
    LeftBarOperation* leftBar = dialog;
    leftBar->m_pLeftBarInfo = info;
    leftBar->setLeftBar();
    screenBringUp(dialog);
    return dialog;
}

#pragma once
// How the frame opens pages of rooms that it does not know. A room names its page classes in one file,
// each with HX_PAGE; the page table finds them by their names.
#include "frame/popupDialog.h"
#include "support/host/api.h"

class PageClass
{
public:
    using Popup = QDialog* (*)(tagLeftBarInfo* info, int bCache, int bShow, int bTip);

    // name: lives as long as this object, which is a static one. Only enters the object in a list.
    PageClass(const char* name, Popup popup);
    PageClass(const PageClass&) = delete;
    PageClass& operator=(const PageClass&) = delete;

    // Null when no room brought a class of that name.
    static PageClass* Find(const char* name);
    // All classes, in no order.
    static PageClass* First();
    PageClass* Next() const { return m_pNext; }
    const char* Name() const { return m_szName; }

    // PopupDialog of the class.
    QDialog* Open(int bCache, int bShow) const { return m_popup(nullptr, bCache, bShow, 0); }
    // Opens the cached page with a copy of info, which lives as long as the page.
    QDialog* OpenWithInfo(const tagLeftBarInfo& info);

private:
    const char* m_szName;
    Popup m_popup;
    tagLeftBarInfo m_info;
    PageClass* m_pNext;
};

template <class T>
QDialog* pagePopup(tagLeftBarInfo* info, int bCache, int bShow, int bTip)
{
    return PopupDialog<T>(info, bCache, bShow, bTip);
}

// For another file that opens the page: what it would make of PopupDialog<T> itself hides that of the module.
#define HX_PAGE_OF_ANOTHER_FILE(T)                                                                           \
    extern template HX_MODULE_API T* PopupDialog<T>(tagLeftBarInfo*, int, int, int)

// Makes page class T known to the page table, and PopupDialog<T> an entry of the module.
#define HX_PAGE(T)                                                                                           \
    template HX_MODULE_API T* PopupDialog<T>(tagLeftBarInfo*, int, int, int);                                \
    static PageClass s_page_##T(#T, pagePopup<T>)

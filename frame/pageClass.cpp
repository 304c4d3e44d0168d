#include "frame/pageClass.h"
#include <cstring>

namespace {
// Null before any constructor runs, so classes may enter in any order.
PageClass* s_pFirst = nullptr;
} // namespace

PageClass::PageClass(const char* name, Popup popup) : m_szName(name), m_popup(popup), m_pNext(s_pFirst)
{
    s_pFirst = this;
}

PageClass* PageClass::Find(const char* name)
{
    for (PageClass* page = s_pFirst; page; page = page->m_pNext) {
        if (strcmp(page->m_szName, name) == 0)
            return page;
    }
    return nullptr;
}

PageClass* PageClass::First()
{
    return s_pFirst;
}

QDialog* PageClass::OpenWithInfo(const tagLeftBarInfo& info)
{
    m_info = info;
    return m_popup(&m_info, 1, 1, 0);
}

#include "frame/menuOpening.h"
#include "frame/configFiles.h"
#include "frame/shippedTable.h"
#include "frame/xmlUnderRoot.h"
#include "support/host/managers.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "support/host/trace.h"
#include <QPointer>
#include <new>

namespace {

const char kIpCameraMenu[] = "ipcameradata.xml";
const char kDoorPhoneMenu[] = "doorphonedata.xml";

// The generated menus are data, the others belong to the firmware.
chString menuPath(const chString& file)
{
    if (file == kIpCameraMenu || file == kDoorPhoneMenu)
        return "/rundata/data/" + file;
    return "/phone/resource/ui-config/" + file;
}

void refreshGeneratedMenu(const chString& file)
{
    if (file == kIpCameraMenu)
        GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    else if (file == kDoorPhoneMenu)
        GetDoorPhoneIconViewManager()->RefreshIconView();
}

// Of a name that was none: it takes the place of the next new one, or each such name would cost a form.
QPointer<dlgIconviewForm> s_pSpare;

dlgIconviewForm* makeForm()
{
    dlgIconviewForm* form = s_pSpare ? s_pSpare.data() : new (std::nothrow) dlgIconviewForm(nullptr);
    s_pSpare = nullptr;
    if (form)
        g_pDlgIconviewForm = form;
    nuxTrace(TRACE_DETAIL, "new dlgIconviewForm(%p)", static_cast<void*>(form));
    return form;
}

void traceFound(const dlgIconviewForm* form)
{
    nuxTrace(TRACE_DETAIL, "get dlgIconviewForm(%p)", static_cast<const void*>(form));
}

} // namespace

chNamedList<dlgIconviewForm>& GetListDial()
{
    static chNamedList<dlgIconviewForm> list;
    return list;
}

chNamedList<dlgIconviewForm>& GetListFrame()
{
    static chNamedList<dlgIconviewForm> list;
    return list;
}

void PopupXMLIconView(const chString& file, int bShow)
{
    chTraceStack trace("PopupXMLIconView(%s)", file.GetText());
    dlgIconviewForm* form = namedFind(GetListDial(), file);
    if (form) {
        refreshGeneratedMenu(file);
        traceFound(form);
    } else {
        form = makeForm();
        if (!form)
            return;
        form->LoadFile(menuPath(file));
        GetListDial().append(tagNamed<dlgIconviewForm>{file, form});
    }
    if (bShow)
        screenBringUp(form);
}

void RefreshXMLIconView(const chString& file)
{
    nuxTrace(TRACE_DETAIL, "RefreshXMLIconView(%s)", file.GetText());
    dlgIconviewForm* form = namedFind(GetListDial(), file);
    if (!form) {
        nuxTrace(TRACE_DETAIL, "No find (%s) dlgIconview", file.GetText());
        return;
    }
    nuxTrace(TRACE_DETAIL, "Refresh dlgIconviewForm(%p)", static_cast<void*>(form));
    form->LoadFile(menuPath(file));
}

int PopupIconViewEx(const chString& name)
{
    dlgIconviewForm* form = namedFind(GetListFrame(), name);
    const bool isNew = !form;
    if (form)
        traceFound(form);
    else
        form = makeForm();
    if (!form)
        return 0;
    if (!form->LoadFileEx(name)) {
        if (isNew)
            s_pSpare = form;
        return 0;
    }
    // A name that is opened again gets one more entry; the first one stays the one that is found.
    GetListFrame().append(tagNamed<dlgIconviewForm>{name, form});
    screenBringUp(form);
    return 1;
}

int IsExsitLDAP()
{
    return nuxGetRegistryInt(USER_INI, "LDAP", "bEnable", 0) != 0;
}

int IsExsitRemoteDirectory()
{
    xmlFile file(nullptr);
    if (!shippedTableLoad(file, REMOTE_BOOK_XML))
        return 0;
    xmlElement* book = xmlFindUnderRoot(file, "RemotePhoneBook");
    return book && book->FindChildElement("item") != nullptr;
}

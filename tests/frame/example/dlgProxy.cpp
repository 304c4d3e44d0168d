#include "tests/frame/example/dlgProxy.h"
#include "frame/configFiles.h"
#include "support/host/message.h"
#include "support/host/net.h"
#include "ui_dlgProxy.h"

namespace {
const tagChoice kModes[] = {{HX_TR("Disabled"), "0"}, {HX_TR("Auto"), "1"}};
} // namespace

dlgProxy::dlgProxy(QWidget* parent, tagLeftBarInfo* info) : ConfigPage(parent, info), ui(new Ui::dlgProxy)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Server"), KEYS_EDIT);
    const HREGISTRY proxy = registryOpen(USER_INI, "Proxy");
    Bind({
        {ui->chkEnable, proxy, "bEnable", "0"},
        {ui->cmbMode, proxy, "eMode", "", kModes},
        {ui->editServer, proxy, "strServer", "", "2aB,ABC,abc,123", "2aB", 99},
        {ui->editPort, proxy, "nPort", "", "123", "123", 5, DIGITS_ONLY},
    });
}

dlgProxy::~dlgProxy() = default;

QWidget* dlgProxy::FirstFocus()
{
    return ui->chkEnable;
}

int dlgProxy::save()
{
    return Check({
        {ui->editServer, CHECK_ENTRY, IsValidServerName, HX_TR("SIP proxy server is invalid!")},
        {ui->editPort, CHECK_ENTRY, IsValidPort, HX_TR("SIP proxy port is invalid!")},
    });
}

void dlgProxy::BroadcastChange()
{
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_PHONE, 0);
}

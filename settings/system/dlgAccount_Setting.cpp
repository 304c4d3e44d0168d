#include "settings/system/dlgAccount_Setting.h"
#include "frame/configFiles.h"
#include "support/host/message.h"
#include "support/host/net.h"
#include "ui_dlgAccount_Setting.h"
#include <QTimer>

namespace {

const char* const kTextIme = "2aB,ABC,abc,123";
const char* const kNumberFirstIme = "123,2aB,ABC,abc";
const char* const kNumberIme = "123";

} // namespace

dlgAccount_Setting::dlgAccount_Setting(QWidget* parent, int index)
    : ConfigPage(parent, nullptr), ui(new Ui::dlgAccount_Setting), m_nIndex(index)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Account Setting"), KEYS_EDIT);
    m_frame.SetLeftBar(HX_THEME("menu/menu_account.png"), HX_TR("Account Setting"));
    // The page is painted before its file is read.
    QTimer::singleShot(0, this, SLOT(InitData()));
}

dlgAccount_Setting::~dlgAccount_Setting() = default;

void dlgAccount_Setting::InitData()
{
    m_strFile.Format("%s%d.cfg", SIP_ACCOUNT_FILE, m_nIndex);
    const HREGISTRY account = registryOpen(m_strFile, "account");
    const HREGISTRY nat = registryOpen(m_strFile, "NAT");
    Bind({
        {ui->chkEnableLine, account, "Enable", ""},
        {ui->editDisplayName, account, "DisplayName", "", kTextIme, "2aB"},
        {ui->editRegisterName, account, "AuthName", "", kNumberFirstIme, "123"},
        {ui->editUserName, account, "UserName", "", kNumberFirstIme, "123"},
        {ui->editPassword, account, "password", "", kTextIme, "2aB"},
        {ui->editServer0, account, "SIPServerHost", "", kTextIme, "2aB"},
        {ui->editPort0, account, "SIPServerPort", "", kNumberIme, "123"},
        {ui->chkEnableStun, nat, "NATTraversal", ""},
        {ui->editServer1, nat, "STUNServer", "", kTextIme, "2aB"},
        {ui->editPort1, nat, "STUNPort", "", kNumberIme, "123"},
        {ui->chkEnableOutBound, account, "UseOutboundProxy", ""},
        {ui->editServer2, account, "OutboundHost", "", kTextIme, "2aB"},
        {ui->editPort2, account, "OutboundPort", "", kNumberIme, "123"},
    });
    if (registryGetInt(account, "bSIPServerHostReadOnly", 0) == 1)
        ui->editServer0->setEnabled(false);
}

QWidget* dlgAccount_Setting::FirstFocus()
{
    return ui->chkEnableLine;
}

// A group that is switched off is not checked at all.
int dlgAccount_Setting::save()
{
    if (ui->chkEnableLine->isChecked() && !checkLine())
        return 0;
    if (ui->chkEnableStun->isChecked() && !checkStun())
        return 0;
    if (ui->chkEnableOutBound->isChecked() && !checkOutbound())
        return 0;
    return 1;
}

int dlgAccount_Setting::checkLine()
{
    return Check({
        {ui->editDisplayName, CHECK_ENTRY, IsValidUserName, HX_TR("Display name is invalid!")},
        {ui->editRegisterName, CHECK_ENTRY, IsValidUserName, HX_TR("Register name is invalid!")},
        {ui->editUserName, CHECK_ENTRY, IsValidUserName, HX_TR("User name is invalid!")},
        {ui->editPassword, CHECK_CHANGED, IsValidPassword, HX_TR("Password is invalid!")},
        {ui->editServer0, CHECK_FILLED, nullptr, HX_TR("SIP proxy is invalid!")},
        {ui->editServer0, CHECK_CHANGED, IsValidServerName, HX_TR("SIP proxy server is invalid!")},
        {ui->editPort0, CHECK_ENTRY, IsValidPort, HX_TR("SIP proxy port is invalid!")},
    });
}

int dlgAccount_Setting::checkStun()
{
    return Check({
        {ui->editServer1, CHECK_ENTRY, IsValidServerName, HX_TR("STUN server is invalid!")},
        {ui->editPort1, CHECK_ENTRY, IsValidPort, HX_TR("STUN server port is invalid!")},
    });
}

int dlgAccount_Setting::checkOutbound()
{
    return Check({
        {ui->editServer2, CHECK_ENTRY, IsValidServerName, HX_TR("OutBound server is invalid!")},
        {ui->editPort2, CHECK_ENTRY, IsValidPort, HX_TR("OutBound server port is invalid!")},
    });
}

void dlgAccount_Setting::BroadcastChange()
{
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_ACCOUNT, unsigned(m_nIndex));
}

void dlgAccount_Setting::on_click_Save()
{
    if (save() && Store())
        reject();
}

#include "settings/system/dlgWan.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "frame/wgtHelper.h"
#include "support/host/net.h"
#include "support/host/text.h"
#include "ui_dlgWan.h"

namespace {

const char* const kNetwork = "Network";
const char* const kVlan = "VLAN";
const char* const kTextIme = "2aB,ABC,abc,123";
const char* const kAddressIme = "123_IP";
constexpr int kLongestEntry = 99;

} // namespace

dlgWan::dlgWan(QWidget* parent, tagLeftBarInfo* info) : ConfigPage(parent, info), ui(new Ui::dlgWan)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("WAN"), KEYS_EDIT);
    m_frame.SetLeftBar(nullptr, HX_TR("Account"));
    InitData();
}

dlgWan::~dlgWan() = default;

void dlgWan::InitData()
{
    setupPasswordEdit(ui->editPassword);
    const HREGISTRY network = registryOpen(SYSTEM_INI, kNetwork);
    Bind({
        {{{ui->radBtnDHCP, "0"}, {ui->radBtnPPPoE, "1"}, {ui->radBtnStaticIp, "2"}},
         network,
         "eWANType",
         "0"},
        {ui->editUserName, network, "strPPPoEUser", "", kTextIme, "2aB", kLongestEntry},
        {ui->editPassword, network, "strPPPoEPin", "", kTextIme, "2aB"},
        {ui->editIPAddress, network, "strWanIP", "", kAddressIme, "123_IP", kLongestEntry},
        {ui->editMASK, network, "strWanMask", "", kAddressIme, "123_IP", kLongestEntry},
        {ui->editGateway, network, "strWanGateway", "", kAddressIme, "123_IP", kLongestEntry},
        {ui->editDNS1, network, "strWanPrimaryDNS", "", kAddressIme, "123_IP", kLongestEntry},
        {ui->editDNS2, network, "strWanSecondaryDNS", "", kAddressIme, "123_IP", kLongestEntry},
    });
    setTabOrder(ui->editUserName, ui->editPassword);
    setTabOrder(ui->editPassword, ui->radBtnStaticIp);
}

QWidget* dlgWan::FirstFocus()
{
    return ui->radBtnDHCP;
}

void dlgWan::RefreshData()
{
    const bool isAutomatic = !ui->radBtnStaticIp->isChecked();
    if (isAutomatic && nuxGetRegistryInt(SYSTEM_INI, kNetwork, "bAutoWriteWanIp", 0) == 1) {
        DisplayData();
        SaveConfigsToRegistry();
    }
}

void dlgWan::DisplayData()
{
    ui->editIPAddress->setText(toQString(addr2String(netGetLocalIPv4())));
    ui->editMASK->setText(toQString(addr2String(netGetWanNetmask())));
    ui->editGateway->setText(toQString(addr2String(netGetWanGateway())));
    ui->editDNS1->setText(toQString(addr2String(netGetWanPrimaryDNS())));
    ui->editDNS2->setText(toQString(addr2String(netGetWanSecondaryDNS())));
}

int dlgWan::save()
{
    if (ui->radBtnPPPoE->isChecked())
        return checkPPPoE();
    if (ui->radBtnStaticIp->isChecked())
        return checkStaticIp();
    return 1;
}

int dlgWan::checkPPPoE()
{
    const int isGood = Check({
        {ui->editUserName, CHECK_FILLED, nullptr, HX_TR("User name is invalid!")},
        {ui->editPassword, CHECK_VALUE, IsValidPassword, HX_TR("Password is invalid!")},
        {ui->editUserName, CHECK_CHANGED, IsValidUserName, HX_TR("User name is invalid!")},
        {ui->editPassword, CHECK_CHANGED, IsValidPassword, HX_TR("Password is invalid!")},
    });
    return isGood && noteUnlessSaved(switchVlanOff(), this);
}

// PPPoE does not go together with VLAN.
int dlgWan::switchVlanOff()
{
    const bool isOn = nuxGetRegistryInt(SYSTEM_INI, kVlan, "bEnable", 1) != 0;
    return !isOn || nuxSetRegistryInt(SYSTEM_INI, kVlan, "bEnable", 0);
}

int dlgWan::checkStaticIp()
{
    if (!Check({{ui->editIPAddress, CHECK_ENTRY, IsValidIPv4, HX_TR("IP address is invalid!")}}))
        return 0;
    // Another host may have taken an address that was free when it was stored.
    if (netIsIPUsed(GetWidgetValue(ui->editIPAddress)))
        return Refuse(ui->editIPAddress, HX_TR("Ip Address is used!"));
    return Check({
        {ui->editMASK, CHECK_ENTRY, IsValidNetMask, HX_TR("Subnet mask is invalid!")},
        {ui->editGateway, CHECK_ENTRY, IsValidIPv4, HX_TR("Gateway is invalid!")},
        {ui->editDNS1, CHECK_ENTRY, IsValidIPv4, HX_TR("DNS1 is invalid!")},
        {ui->editDNS2, CHECK_ENTRY, IsValidIPv4, HX_TR("DNS2 is invalid!")},
    });
}

void dlgWan::on_click_Save()
{
    if (!save() || !Store())
        return;
    if (questionBox(HX_TR("Network configuration has changed, reboot system?"), this, HX_TR("Warning")))
        sysreboot(1);
    if (netGetNetworkSta() != NET_UP)
        netFlushNetworkConfig();
    accept();
}
